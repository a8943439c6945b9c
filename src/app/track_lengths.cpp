// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/track_lengths.h"

#include "model/numbers.h"

namespace tessaly {

namespace {

constexpr qsizetype MostKnown = 50'000;  // of a few projects

}  // namespace

TrackLengths::TrackLengths(const Mp3Tags& tags, QObject* parent) : QObject(parent), tags_(tags) {
    reader_.setMaxThreadCount(1);
}

TrackLengths::~TrackLengths() {
    reader_.clear();
    reader_.waitForDone();
}

QString TrackLengths::of(const QString& path, qint64 bytes) {
    const File file(path, bytes);
    if (const auto known = seconds_.constFind(file); known != seconds_.constEnd())
        return *known > 0 ? inMinutes(*known) : QString();
    if (asked_.contains(file))
        return {};
    asked_.insert(file);
    reader_.start([this, file] {
        const int seconds = tags_.seconds(file.first);
        QMetaObject::invokeMethod(
            this, [this, file, seconds] { learn(file, seconds); }, Qt::QueuedConnection);
    });
    return {};
}

void TrackLengths::learn(const File& file, int seconds) {
    if (seconds_.size() >= MostKnown)
        seconds_.clear();
    seconds_.insert(file, seconds);
    asked_.remove(file);
    emit learned();
}

}  // namespace tessaly
