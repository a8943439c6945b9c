// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>
#include <atomic>
#include <optional>

#include "card/sound_checks.h"
#include "sound/sound_book.h"

namespace tessaly {

/// Looks at MP3 files on a thread of its own, when somebody asks for them, so that the window never
/// waits for a file: what is not known yet comes later.
class SoundWatch : public QObject {
    Q_OBJECT

 public:
    explicit SoundWatch(SoundBook& book, QObject* parent = nullptr);
    ~SoundWatch() override;

    SoundBook& book() { return book_; }

    /// What is known of a file; a look at one that is not known follows soon.
    std::optional<KnownSound> of(const QString& path, const FileStamp& stamp);

    /// The same for all files of a project, of which it then knows how loud they are on average,
    /// too. Cheap when they are those of the last time.
    void lookAtAll(const Project& project, const SourceFiles& sources);

    /// What is known of one record's file, compared with the others of lookAtAll().
    ItemSound of(const TrackRecord& record, const QString& path,
                 const std::optional<FileStamp>& stamp);

    /// The same of the file that stood there when somebody looked last, without a look at it.
    ItemSound remembered(const TrackRecord& record) const;

    /// Waits until every file that was asked for was looked at, and tells it.
    void finish();

 signals:
    /// More is known.
    void learned();

 private:
    struct File {
        QString path;
        FileStamp stamp;
    };

    void ask(const QString& path, const FileStamp& stamp);
    void work();
    void tellSoon();

    SoundBook& book_;
    SourceFiles last_;
    LoudnessMedians medians_;
    QMutex mutex_;
    QList<File> queue_;
    QSet<QString> queued_;
    bool isWorking_ = false;
    std::atomic<bool> isEnding_ = false;
    std::atomic<bool> isTold_ = false;
    QThreadPool worker_;
};

}  // namespace tessaly
