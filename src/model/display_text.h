// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QList>
#include <QString>
#include <QStringList>

#include "model/format_limits.h"

// Texts for the player's display and the entry fields that hold them. A character is what takes one
// cell of the display, also where it is two units of a QString.

namespace tessaly {

/// Number of cells that `text` wants; a line of the display has limits::DisplayText.
int displayLength(QStringView text);

/// The length beside its limit: "12 / 16".
QString displayLengthText(QStringView text);

/// One cell of a line of the display.
struct DisplayCell {
    quint8 byte = ' ';       ///< the character in the display's code page
    bool isLacking = false;  ///< the code page lacks the character; `byte` is the "?" in its place

    bool operator==(const DisplayCell&) const = default;
};

/// The cells of `text`, one a character, cut at limits::DisplayText.
QList<DisplayCell> displayCells(QStringView text);

/// The characters among the cells of `text` that the display lacks, each once.
QStringList charactersDisplayLacks(QStringView text);

/// The first `limit` characters of a name that came from a file, composed (e and accent become
/// one); never half a surrogate pair.
QString firstCharacters(const QString& text, int limit);

/// Whether a field that holds `text` discards a typed key, with a beep: it is full, and the key is
/// not Backspace. Only the length counts, whatever is selected. Ask for keys that type a character.
bool refusesKey(QStringView text, QChar key, int limit = limits::DisplayText);

/// What goes into a field when a text is pasted.
struct Paste {
    QString text;        ///< may be empty; the field then stays as it is
    bool isCut = false;  ///< not all of it fits
};

/// The part of `pasted` that may replace the selected part of a field's text. Accents become one
/// character with their letter, control characters blanks. A field that is too long already, as
/// from a file, takes nothing until there is room.
Paste pasteInto(QStringView text, QStringView selected, const QString& pasted,
                int limit = limits::DisplayText);

}  // namespace tessaly
