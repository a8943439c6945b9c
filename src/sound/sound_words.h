// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

#include "sound/quick_look.h"
#include "sound/whole_look.h"

// What the looks at a file say in words.

namespace tessaly {

/// Stands in front of what warns in a list, with a blank behind it.
inline const QString WarningSign = QStringLiteral("\u26A0 ");

/// "3:45", of 65 minutes "65:00". Less than a second counts as none.
QString inMinutes(qint64 milliseconds);

/// "-12.3", with a plus before what is not below 0 if `isSigned`; "-" instead of no number.
QString inDecibels(double value, bool isSigned = false);

/// "44.1 kHz, stereo, 128 kbit/s", with "about" where the bit rate changes; empty without sound.
QString formatInWords(const QuickLook& look);

/// What is wrong with a file: "no MPEG sound: this looks like HTML", "ends at 0:02 of 0:16". Empty
/// when nothing is; also when it is missing, which is said elsewhere.
QString problemInWords(const QuickLook& look);

/// What decoding it found to be wrong: "broken at 0:12, and in 3 more places", "silent from its
/// beginning to its end", "clipped: its peaks reach +1.2 dBTP". Empty when nothing is.
QString problemInWords(const WholeLook& look);

/// "7 dB quieter than the others", by how much a loudness lies above `median`.
QString loudnessInWords(double difference);

}  // namespace tessaly
