// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/quick_look.h"
#include "sound/sound_words.h"
#include "sound/whole_look.h"
#include "targets.h"

namespace tessaly::fuzz {

void fuzzSound(QByteArrayView bytes) {
    using Finding = QuickLook::Finding;
    // At 8 kbit/s, the least there is, a byte is a millisecond; free format goes below.
    const qint64 longest = 100 + bytes.size() * 100;
    const QString path = fileOf(bytes);
    const QuickLook quick = quickLook(path);
    require((quick.finding == Finding::Empty) == bytes.isEmpty(), "an empty file is called so");
    require(quick.finding != Finding::Missing, "a file that is there is not missing");
    require(quick.hasSound() == !formatInWords(quick).isEmpty(), "sound has a format");
    require((quick.finding == Finding::Good) == problemInWords(quick).isEmpty(),
            "what is wrong is said");
    require(quick.there >= 0 && quick.there <= longest, "what is there has its time");
    require(quick.milliseconds >= quick.there, "no more is there than it says");
    const WholeLook whole = wholeLook(path, [](double done) {
        require(done >= 0 && done <= 1, "what is done is a share");
        return true;
    });
    require(whole.milliseconds >= 0 && whole.milliseconds <= longest, "sound has its time");
    require(whole.breaks.size() == std::min(whole.breakCount, qint64(WholeLook::MostBreaks)),
            "the first breaks are kept");
    require(whole.silenceAtStart + whole.silenceAtEnd <= whole.milliseconds + 1,
            "silence is part of the sound");
    require(whole.loudness >= WholeLook::Silent && whole.loudness < 200, "loudness is a number");
}

}  // namespace tessaly::fuzz
