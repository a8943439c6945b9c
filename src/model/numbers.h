// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>

namespace tessaly {

/// A number as people read it: 65,527.
inline QString grouped(qint64 number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

/// How many there are of what `one` names: "1 track", "2 tracks", "0 entries". `many` is needed
/// only where an "s" would not do.
inline QString counted(qint64 number, const QString& one, const QString& many = {}) {
    return QString::number(number) + u' ' +
           (number == 1       ? one
            : !many.isEmpty() ? many
                              : one + u's');
}

/// Bytes as megabytes of 1,000,000, one digit behind the point: "123.5 MB".
inline QString megabytes(qint64 bytes) {
    const qint64 tenths = (bytes + 50000) / 100000;
    return QStringLiteral("%1.%2 MB").arg(tenths / 10).arg(tenths % 10);
}

/// Seconds as minutes and seconds: "3:05".
inline QString inMinutes(int seconds) {
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
}

}  // namespace tessaly
