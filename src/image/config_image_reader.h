// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include "model/project.h"

namespace tessaly {

/// The item that a 16-bit reference names.
struct DecodedReference {
    enum class Kind { None, SpeechTitle, ContinuousMix, WholeList, Track, Invalid };

    quint16 value = 0xFFFF;
    Kind kind = Kind::None;
    int list = 0;   ///< from 1
    int track = 0;  ///< from 0
    int title = 0;  ///< from 1

    bool operator==(const DecodedReference&) const = default;
};

/// A track or speech word taken apart.
struct DecodedWord {
    quint16 value = 0xFFFF;
    bool hasFile = false;  ///< false for 0xFFFF; the rest then means nothing
    int fileNumber = 0;    ///< the low 12 bits
    bool endlessLoop = false;
    bool isSpeech = false;
    bool cancelOnInterrupt = false;
    bool loudVolume = false;

    bool operator==(const DecodedWord&) const = default;
};

struct DecodedTrack {
    QString name;
    DecodedWord word;
};

struct DecodedList {
    QString name;
    QList<DecodedTrack> tracks;
};

/// An image as lists, titles, languages, references and texts. Blanks at the end of a text are
/// padding and left out.
struct DecodedImage {
    quint16 identifier = 0;
    quint16 defaultLanguageMask = 0;
    QString cardTitle1, cardTitle2;  ///< empty where the image holds the mark for an empty line
    DecodedReference powerUp;
    quint8 chimeOptions = 0;
    QList<quint16> sectionPointers;  ///< sections 1 to 5 and 7
    QList<quint16> languagePointers;
    QStringList languages;
    QStringList titles;
    QList<DecodedList> lists;
    QList<QList<DecodedWord>> speech;  ///< by language, then by title
    QStringList displayTexts;          ///< system texts 1 to 17
    QList<DecodedReference> triggers;
};

DecodedReference decodeReference(quint16 value);
DecodedWord decodeWord(quint16 value);

/// Takes an image apart. Throws error 553 that says where when its pointers, counts or length do
/// not fit together. Any bytes will do.
DecodedImage decodeConfigImage(QByteArrayView bytes);

/// Gives the music lists of `project`, read from a card's project file, the lines that they have in
/// the card's image. The file holds the tracks with an MP3 file alone, and numbers equal names anew
/// when it is read; the image has every line, its name cut to 16 characters. A line whose name and
/// word are those of a track gets that track's whole name, as long as they come in the file's
/// order. Every other line of the image gets a name that no track has, and a track that the image
/// lacks gets a line at the end: an image that is composed of the result equals `image` exactly
/// when both say the same.
void takeLinesFromImage(Project& project, const DecodedImage& image);

}  // namespace tessaly
