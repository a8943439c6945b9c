// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound_watch.h"

#include <QElapsedTimer>
#include <QMutexLocker>
#include <utility>

namespace tessaly {

SoundWatch::SoundWatch(SoundBook& book, QObject* parent) : QObject(parent), book_(book) {
    worker_.setMaxThreadCount(1);
}

SoundWatch::~SoundWatch() {
    isEnding_ = true;
    worker_.waitForDone();
}

std::optional<KnownSound> SoundWatch::of(const QString& path, const FileStamp& stamp) {
    auto sound = book_.known(path, stamp);
    if (!sound)
        ask(path, stamp);
    return sound;
}

ItemSound SoundWatch::of(const TrackRecord& record, const QString& path,
                         const std::optional<FileStamp>& stamp) {
    return soundOf(record, path, stamp.has_value(), stamp ? of(path, *stamp) : std::nullopt,
                   medians_);
}

ItemSound SoundWatch::remembered(const TrackRecord& record) const {
    const QString path = record.sourcePath.text();
    const auto last = book_.remembered(path);
    return soundOf(record, path, true, last ? std::optional(last->sound) : std::nullopt, medians_);
}

void SoundWatch::lookAtAll(const Project& project, const SourceFiles& sources) {
    medians_ = LoudnessMedians(project, sources, book_);
    if (sources == last_)
        return;
    last_ = sources;
    for (const SourceFile& source : sources.all())
        if (source.size)
            of(source.path, {*source.size, source.modified});
}

void SoundWatch::ask(const QString& path, const FileStamp& stamp) {
    const QMutexLocker lock(&mutex_);
    if (queued_.contains(path))
        return;
    queued_.insert(path);
    queue_.append({path, stamp});
    if (!std::exchange(isWorking_, true))
        worker_.start([this] { work(); });
}

void SoundWatch::work() {
    constexpr qint64 TellEveryMs = 250;  // a list is painted anew each time
    QElapsedTimer told;
    told.start();
    while (!isEnding_) {
        File file;
        {
            const QMutexLocker lock(&mutex_);
            if (queue_.isEmpty()) {
                isWorking_ = false;
                break;
            }
            file = queue_.takeLast();  // what was asked for last is what is seen now
            queued_.remove(file.path);
        }
        book_.quick(file.path, file.stamp);
        if (told.hasExpired(TellEveryMs)) {
            tellSoon();
            told.restart();
        }
    }
    tellSoon();
}

void SoundWatch::tellSoon() {
    if (isTold_.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isTold_ = false;
            emit learned();
        },
        Qt::QueuedConnection);
}

void SoundWatch::finish() {
    worker_.waitForDone();
    if (isTold_.exchange(false))
        emit learned();
}

}  // namespace tessaly
