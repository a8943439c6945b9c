// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/whole_look.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "platform/seekable_file.h"
#include "sound/extent.h"
#include "sound/mpeg_frames.h"

namespace tessaly {

namespace {

constexpr float Audible = 0.001F;  // -60 dB of full scale

// Loudness and peak of what it is given, which may change its rate or channels under way.
class Meter {
 public:
    // Of hours of sound a histogram of its loudness takes less room, and is less exact.
    explicit Meter(qint64 bytes)
        : mode_(EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK |
                (bytes > MostBytesExact ? EBUR128_MODE_HISTOGRAM : 0)) {}

    void add(std::span<const float> samples, int hz, int channels) {
        if (!state_)
            state_.reset(ebur128_init(unsigned(channels), unsigned(hz), mode_));
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

    static constexpr qint64 MostBytesExact = qint64(500) * 1000 * 1000;

    const int mode_;
    std::unique_ptr<ebur128_state, Free> state_;
    int hz_ = 0, channels_ = 0;
    double peak_ = 0;
};

// Where the sound of a file begins and ends being heard.
class Silence {
 public:
    void add(std::span<const float> samples, double seconds, double second) {
        const auto isAudible = [](float sample) { return std::abs(sample) > Audible; };
        const auto first = std::find_if(samples.begin(), samples.end(), isAudible);
        if (first == samples.end())
            return;
        if (from_ < 0)
            from_ = seconds + double(first - samples.begin()) * second;
        const auto last = std::find_if(samples.rbegin(), samples.rend(), isAudible);
        to_ = seconds + double(last.base() - samples.begin()) * second;
    }

    void noteIn(WholeLook& look, double seconds) const {
        look.silenceAtStart = from_ < 0 ? look.milliseconds : qint64(from_ * 1000);
        look.silenceAtEnd = from_ < 0 ? 0 : qint64((seconds - to_) * 1000);
    }

 private:
    double from_ = -1, to_ = 0;  // seconds
};

// The decoder gives zeros for a frame that it cannot decode. After sound that was just heard, no
// frame that it can decode is all zeros, as each reaches into the next.
class Dropouts {
 public:
    bool isOne(std::span<const float> samples) {
        constexpr size_t LastOnes = 64;
        const bool isZero =
            std::all_of(samples.begin(), samples.end(), [](float sample) { return sample == 0; });
        const auto end = samples.last(std::min(LastOnes, samples.size()));
        return std::exchange(wasHeard_, std::any_of(end.begin(), end.end(),
                                                    [](float sample) {
                                                        return std::abs(sample) > Audible;
                                                    })) &&
               isZero;
    }

 private:
    bool wasHeard_ = false;
};

}  // namespace

WholeLook wholeLook(const QString& path, const std::function<bool(double)>& keepGoing) {
    constexpr int FramesAtOnce = 256;
    constexpr qint64 HeaderBytes = 4;
    WholeLook look;
    SeekableFile file(path);
    const Extent extent = extentOf(file);
    MpegFrames frames(
        [&](char* to, qint64 from, qint64 bytes) {
            return file.readInto(to, extent.from + from, std::min(bytes, extent.bytes() - from));
        },
        extent.bytes());
    Meter meter(extent.bytes());
    Silence silence;
    Dropouts dropouts;
    double seconds = 0;
    size_t delay = 0;  // samples still to be skipped
    std::optional<MpegFrame> last;
    const auto note = [&](qint64 bytes) {
        if (++look.breakCount <= WholeLook::MostBreaks)
            look.breaks.append({qint64(seconds * 1000), bytes});
    };
    for (int count = 0; const auto frame = frames.next(); ++count) {
        if (count % FramesAtOnce == 0 &&
            !keepGoing(double(frame->position) / double(extent.bytes())))
            break;
        if (last && frame->position > last->position + last->bytes)
            note(frame->position - last->position - last->bytes);
        if (last && look.changeAt < 0 &&
            (frame->hz != last->hz || frame->channels != last->channels))
            look.changeAt = qint64(seconds * 1000);
        last = frame;
        if (count == 0) {
            const EncoderHeader header =
                encoderHeaderIn(file.read(extent.from + frame->position, frame->bytes));
            delay = size_t(header.delay) * size_t(frame->channels);
            if (header.isThere)
                continue;
        }
        std::span<const float> samples = frames.decode();
        const size_t skipped = std::min(delay, samples.size());
        delay -= skipped;
        samples = samples.subspan(skipped);
        if (samples.empty())
            continue;
        if (dropouts.isOne(samples))
            note(frame->bytes);
        const double second = 1.0 / (double(frame->hz) * frame->channels);
        silence.add(samples, seconds, second);
        meter.add(samples, frame->hz, frame->channels);
        seconds += double(samples.size()) * second;
    }
    if (last && extent.bytes() - last->position - last->bytes >= HeaderBytes)
        note(extent.bytes() - last->position - last->bytes);
    look.milliseconds = qint64(seconds * 1000);
    silence.noteIn(look, seconds);
    look.loudness = meter.loudness();
    look.truePeak = meter.truePeak();
    return look;
}

}  // namespace tessaly
