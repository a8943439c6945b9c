// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// The player's configuration image, byte for byte. Numbers are 16-bit big-endian unless said
// otherwise; texts are Windows-1252, cut or padded with blanks; bytes that nothing writes are 0.

namespace tessaly::image_layout {

// Header
constexpr int Identifier = 0;           ///< a random number from 1 to 65535
constexpr int DefaultLanguageMask = 2;  ///< sum of 2^i for each default language at position i
constexpr int CardTitle1 = 4;           ///< 16 characters; empty: 0xFF and 15 blanks
constexpr int CardTitle2 = 20;          ///< as above
constexpr int PowerUpItem = 36;         ///< item reference
constexpr int ChimeOptions = 38;        ///< 1 byte

// Section pointers: where in the image each section begins
constexpr int LanguageTable = 64;       ///< 8 characters each, "Invalid " first
constexpr int TitleTable = 66;          ///< 16 characters each, "Invalid Data    " first
constexpr int ListTable = 68;           ///< 16 characters each, "Invalid Data    " first
constexpr int TrackSections = 70;       ///< a list: track count, then 18-byte entries
constexpr int SpeechPlaceholders = 72;  ///< title count + 1 words 0xFFFF
constexpr int LanguageColumns = 74;     ///< 16 pointers to columns of title count + 1 words
constexpr int LanguageCount = 106;      ///< 1 byte
constexpr int TitleCount = 107;
constexpr int ListCount = 109;     ///< 1 byte
constexpr int DisplayTexts = 110;  ///< 17 texts of 16 characters, then 7 trigger words
constexpr int FirstSection = 144;

// Sizes
constexpr int TitleWidth = 16;
constexpr int LanguageWidth = 8;
constexpr int TrackEntryBytes = 18;     ///< 16 characters and the track word
constexpr int LeadingTrackEntries = 2;  ///< "Invalid Data    " and the whole list
constexpr int FirstDisplayText = 1;     ///< slot 0 of the system texts is not in the image
constexpr int LastDisplayText = 17;

// Chime options
constexpr quint8 ChimeAlways = 0x80;
constexpr quint8 ChimeInternal = 0x40;
constexpr quint8 ChimeDisabled = 0x20;

// Track and speech words: the file number plus
constexpr quint16 WordEndlessLoop = 0x1000;
constexpr quint16 WordSpeech = 0x2000;
constexpr quint16 WordCancelOnInterrupt = 0x4000;
constexpr quint16 WordLoudVolume = 0x8000;
constexpr quint16 WordNumberMask = 0x0FFF;

// Item references
constexpr quint16 NoItem = 0xFFFF;
constexpr quint16 SpeechReference = 0xFE00;  ///< + position of the title, from 1
constexpr quint16 ContinuousMix = 0x0000;
constexpr quint16 ListReferenceStep = 512;  ///< x position of the list, from 1
constexpr quint16 WholeListEntry = 1;
constexpr quint16 FirstTrackEntry = 2;  ///< + position of the track, from 0

}  // namespace tessaly::image_layout
