// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace tessaly {

/// Characters of a portable name, without its ending and without a number: with them it takes less
/// than the 255 bytes that file systems offer, and leaves room for folders before it.
constexpr qsizetype PortableNameLength = 60;

/// `text` as people would write it in a name that Windows, Linux and macOS all take and that a
/// project file can hold: composed, without control characters and those that Windows forbids,
/// neither a dot nor a blank at its ends, and of letters outside Windows-1252 those that they are
/// made of. What cannot be shown so is "_". Empty when nothing readable is left.
QString portableName(const QString& text);

/// Names of files or folders for one folder. No two are equal where case does not count.
class PortableNames {
 public:
    /// A new name: of `texts` the first of which portableName() leaves something, then `ending`. A
    /// name that is taken gets a number behind it, as in "Rock (2).mp3"; one that is a device's on
    /// Windows, such as CON, a "_" in front.
    QString add(const QStringList& texts, const QString& ending = {});

 private:
    QSet<QString> taken_;
    QHash<QString, int> next_;  // so that a thousand equal names stay cheap
};

/// The ending of a file's name with its dot, ".mp3"; empty when there is none of at most five
/// letters or digits.
QString endingOf(const QString& name);

}  // namespace tessaly
