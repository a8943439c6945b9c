// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

#include "platform/mp3_tags.h"

namespace tessaly {

/// How long MP3 files play. They are read one after the other on a thread of their own, when
/// somebody asks for them, so that the window never waits for a file.
class TrackLengths : public QObject {
    Q_OBJECT

 public:
    explicit TrackLengths(const Mp3Tags& tags, QObject* parent = nullptr);
    ~TrackLengths() override;

    /// "3:45", empty while it is not known, or for good if the file does not say. `bytes` is the
    /// file's size: another size is another file.
    QString of(const QString& path, qint64 bytes);

 signals:
    /// More is known.
    void learned();

 private:
    using File = std::pair<QString, qint64>;
    void learn(const File& file, int seconds);

    const Mp3Tags& tags_;
    QHash<File, int> seconds_;
    QSet<File> asked_;
    QThreadPool reader_;
};

}  // namespace tessaly
