#include "card/run_estimate.h"

namespace tessaly {

qint64 RunEstimate::bytesPerSecond(qint64 done) const {
    const qint64 elapsed = timer_.isValid() ? timer_.elapsed() : 0;
    return elapsed > 0 ? qint64(double(done) * 1000.0 / double(elapsed)) : 0;
}

qint64 RunEstimate::millisecondsLeft(qint64 done, qint64 total) const {
    const qint64 rate = bytesPerSecond(done);
    return rate > 0 ? qint64(double(total - done) * 1000.0 / double(rate)) : -1;
}

QString durationText(qint64 milliseconds) {
    const qint64 seconds = milliseconds / 1000;
    if (seconds < 60)
        return QString::number(double(milliseconds) / 1000.0, 'f', 1) + " s";
    return QString("%1:%2 min").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0'));
}

}  // namespace tessaly
