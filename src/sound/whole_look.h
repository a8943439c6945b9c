// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <functional>

namespace tessaly {

/// What every frame of an MP3 file, decoded, shows. Times are milliseconds.
struct WholeLook {
    /// Bytes between two frames, or behind the last one, that are no frame, or a frame that nobody
    /// can decode.
    struct Break {
        qint64 at = 0;
        qint64 bytes = 0;
        bool operator==(const Break&) const = default;
    };
    static constexpr qsizetype MostBreaks = 100;

    qint64 milliseconds = 0;
    QList<Break> breaks;        ///< the first of them
    qint64 breakCount = 0;      ///< all of them
    qint64 changeAt = -1;       ///< where sample rate or channels first change; -1 when never
    qint64 silenceAtStart = 0;  ///< below -60 dB; all of it when the file is silent
    qint64 silenceAtEnd = 0;    ///< 0 when the file is silent
    double loudness = Silent;   ///< integrated, in LUFS, by EBU R 128
    double truePeak = Silent;   ///< in dBTP, of the louder channel

    static constexpr double Silent = -200;  ///< instead of no number
    bool isSilent() const { return milliseconds > 0 && silenceAtStart >= milliseconds; }
    bool operator==(const WholeLook&) const = default;
};

/// Decodes the whole file. `keepGoing` is asked now and then with the share that is done, 0 to 1;
/// false ends it with what there is by then. Never throws; a file without sound has 0 milliseconds.
/// May be called from any thread.
WholeLook wholeLook(const QString& path, const std::function<bool(double done)>& keepGoing);

}  // namespace tessaly
