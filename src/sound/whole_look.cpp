// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/whole_look.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

#include "platform/seekable_file.h"
#include "sound/extent.h"
#include "sound/mpeg_frames.h"

namespace tessaly {

namespace {

constexpr float Audible = 0.001F;  // -60 dB of full scale

// Loudness and peak of what it is given, which may change its rate or channels under way.
class Meter {
 public:
    void add(std::span<const float> samples, int hz, int channels) {
        if (!state_)
            // Of however long a file, a histogram of its loudness is enough.
            state_.reset(
                ebur128_init(unsigned(channels), unsigned(hz),
                             EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK | EBUR128_MODE_HISTOGRAM));
        else if (hz != hz_ || channels != channels_) {
            keepPeak();
            ebur128_change_parameters(state_.get(), unsigned(channels), unsigned(hz));
        }
        if (!state_)
            return;
        hz_ = hz;
        channels_ = channels;
        ebur128_add_frames_float(state_.get(), samples.data(), samples.size() / size_t(channels));
    }

    double loudness() const {
        double lufs = 0;
        const bool isKnown =
            state_ && ebur128_loudness_global(state_.get(), &lufs) == EBUR128_SUCCESS;
        return isKnown && std::isfinite(lufs) ? lufs : WholeLook::Silent;
    }

    double truePeak() {
        keepPeak();
        return peak_ > 0 ? 20 * std::log10(peak_) : WholeLook::Silent;
    }

 private:
    struct Free {
        void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
    };

    void keepPeak() {
        for (int channel = 0; state_ && channel < channels_; ++channel)
            if (double peak = 0;
                ebur128_true_peak(state_.get(), unsigned(channel), &peak) == EBUR128_SUCCESS)
                peak_ = std::max(peak_, peak);
    }

    std::unique_ptr<ebur128_state, Free> state_;
    int hz_ = 0, channels_ = 0;
    double peak_ = 0;
};

}  // namespace

WholeLook wholeLook(const QString& path, const std::function<bool(double)>& keepGoing) {
    constexpr int FramesAtOnce = 256;
    WholeLook look;
    SeekableFile file(path);
    const Extent extent = extentOf(file);
    MpegFrames frames(
        [&](char* to, qint64 from, qint64 bytes) {
            return file.readInto(to, extent.from + from, std::min(bytes, extent.bytes() - from));
        },
        extent.bytes());
    Meter meter;
    double seconds = 0, audibleFrom = -1, audibleTo = 0;
    qint64 end = 0;
    const auto note = [&](qint64 bytes) {
        if (++look.breakCount <= WholeLook::MostBreaks)
            look.breaks.append({qint64(seconds * 1000), bytes});
    };
    for (int count = 0; const auto frame = frames.next(); ++count) {
        if (count % FramesAtOnce == 0 &&
            !keepGoing(double(frame->position) / double(extent.bytes())))
            break;
        if (frame->position > end && count > 0)
            note(frame->position - end);
        end = frame->position + frame->bytes;
        if (count == 0 &&
            encoderHeaderIn(file.read(extent.from + frame->position, frame->bytes)).isThere)
            continue;
        const std::span<const float> samples = frames.decode();
        if (samples.empty())
            continue;
        const double second = 1.0 / (double(frame->hz) * frame->channels);
        const auto isAudible = [](float sample) { return std::abs(sample) > Audible; };
        const auto first = std::find_if(samples.begin(), samples.end(), isAudible);
        if (first != samples.end()) {
            if (audibleFrom < 0)
                audibleFrom = seconds + double(first - samples.begin()) * second;
            const auto last = std::find_if(samples.rbegin(), samples.rend(), isAudible);
            audibleTo = seconds + double(last.base() - samples.begin()) * second;
        }
        meter.add(samples, frame->hz, frame->channels);
        seconds += double(samples.size()) * second;
    }
    constexpr qint64 Padding = 4;  // less than the header of a frame
    if (end > 0 && extent.bytes() - end >= Padding)
        note(extent.bytes() - end);
    look.milliseconds = qint64(seconds * 1000);
    look.silenceAtStart = audibleFrom < 0 ? look.milliseconds : qint64(audibleFrom * 1000);
    look.silenceAtEnd = audibleFrom < 0 ? 0 : qint64((seconds - audibleTo) * 1000);
    look.loudness = meter.loudness();
    look.truePeak = meter.truePeak();
    return look;
}

}  // namespace tessaly
