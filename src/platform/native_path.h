#pragma once

#include <QByteArray>
#include <QString>

namespace tessaly {

/// The bytes by which Linux knows `path`: UTF-8, and for names that came from fromNativePath()
/// their very own bytes.
QByteArray toNativePath(const QString& path);

/// The text of a name that Linux reports. A name that is no UTF-8 keeps each of its bytes above
/// 0x7F as the lone low surrogate U+DC00 + byte, so that toNativePath() finds the file again.
QString fromNativePath(const QByteArray& name);

}  // namespace tessaly
