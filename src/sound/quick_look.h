// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tessaly {

/// What a short look at an MP3 file shows.
struct QuickLook {
    enum class Finding : quint8 {
        Good,
        Missing,     ///< there is no such file, or it cannot be read
        Empty,       ///< it has no byte
        NoSound,     ///< no MPEG sound begins there
        OtherLayer,  ///< MPEG sound, but not of layer III
        EndsEarly,   ///< it says that it has more than there is
        EndsInFrame  ///< its last frame is not whole
    };
    Finding finding = Finding::Missing;
    QString looksLike;  ///< NoSound: "HTML", "WAV"; empty when it looks like nothing known
    int layer = 0;
    int kbps = 0;  ///< on average
    int hz = 0;
    int channels = 0;
    bool isVariable = false;  ///< its bit rate changes
    qint64 milliseconds = 0;  ///< that it says it plays
    qint64 there = 0;         ///< EndsEarly: milliseconds that are there

    bool hasSound() const { return finding == Finding::Good || finding >= Finding::OtherLayer; }
    bool operator==(const QuickLook&) const = default;
};

/// Reads at most 256 KiB at the beginning of the sound, behind tags, and as much at the end. Never
/// throws. May be called from any thread.
QuickLook quickLook(const QString& path);

}  // namespace tessaly
