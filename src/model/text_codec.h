// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

// Windows-1252, the code page of the project file, the image and the player's display. Its five
// undefined bytes 81, 8D, 8F, 90 and 9D stand for the control characters of the same number, so
// that every byte survives a round trip.

namespace tessaly {

/// `text` in the code page, one byte a character; a character that it lacks becomes "?".
QByteArray toCodePage(QStringView text);

/// The text that `bytes` stand for. toCodePage(fromCodePage(b)) == b for any bytes.
QString fromCodePage(QByteArrayView bytes);

/// Whether toCodePage() loses nothing of `text`.
bool fitsCodePage(QStringView text);

/// `text` in the code page, cut or padded with blanks to exactly `width` bytes.
QByteArray fixedWidthText(QStringView text, int width);

}  // namespace tessaly
