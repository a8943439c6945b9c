#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

namespace tessaly {

/// The text of a playlist file. A byte-order mark says UTF-8 or UTF-16 of either order; without one
/// it is UTF-8 where it is valid, else Windows-1252. Any bytes give a text.
QString decodePlaylist(QByteArrayView bytes);

/// The lines of a text, without their ends: CR LF, LF, or CR alone. An end behind the last line
/// begins no further one. At most `most` lines are looked for.
QList<QStringView> linesOf(QStringView text, qsizetype most);

}  // namespace tessaly
