// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// What the card's formats and the player can hold. The checks look here, and nowhere else.

namespace tessaly::limits {

// Configuration image
constexpr qsizetype ImageBytes = 65527;  ///< most that the HEX header's three digits can count
constexpr int Languages = 16;            ///< language pointers in the image
constexpr int MusicLists = 255;          ///< one byte counts them
constexpr int TrackFiles = 9995;         ///< four digits, less the card's fixed file names
constexpr int FlagFreeNumber = 4095;     ///< higher file numbers run into a word's flag bits

// Positions that an item reference (power-up item, trigger) can name, counted from 1
constexpr int ReferenceList = 126;   ///< 127 x 512 would read as a speech title
constexpr int ReferenceTrack = 510;  ///< nine bits, less the entries 0 and 1
constexpr int ReferenceTitle = 510;  ///< 0xFE00 + 511 would read as "nothing"

// Files of a card: FAT counts their bytes with 32 bits
constexpr qint64 CardFileBytes = 4'294'967'295;

// Texts
constexpr int DisplayText = 16;  ///< characters of the player's display
constexpr int LanguageName = 8;

// Project file
constexpr qsizetype TextBytes = 65535;  ///< a text's length is a 16-bit number
constexpr qint64 ProjectFileBytes = qint64(256) * 1024 * 1024;  ///< beyond this it is no project
constexpr qsizetype ProjectRecords = 250'000;                   ///< likewise
constexpr qsizetype NumberedNames = 100'000'000;  ///< characters of names that had to be numbered
constexpr qint64 HexFileBytes = qint64(16) * 1024 * 1024;  ///< beyond this it is no HEX file

}  // namespace tessaly::limits
