#pragma once

#include <QElapsedTimer>
#include <QString>

namespace tessaly {

/// How fast a phase of a run goes, and how long it will go on.
class RunEstimate {
 public:
    void start() { timer_.start(); }

    /// Bytes a second so far; 0 while nothing is known.
    qint64 bytesPerSecond(qint64 done) const;

    /// Milliseconds until `total` bytes are done; -1 while nothing is known.
    qint64 millisecondsLeft(qint64 done, qint64 total) const;

 private:
    QElapsedTimer timer_;
};

/// Milliseconds as "0.4 s" or "3:12 min".
QString durationText(qint64 milliseconds);

}  // namespace tessaly
