// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/sound_device.h"

#include <mpg123.h>
#include <out123.h>

#include <algorithm>

namespace tessaly {

namespace {

// Those of each system that know whether there is a device. Others take seconds to find out, start
// servers, or play to nobody.
constexpr const char* AudibleDrivers = "win32_wasapi,win32,pulse,alsa";

constexpr double MostAheadSeconds = 0.3;  // bridges what else the machine does
constexpr int TickMs = 10;

}  // namespace

void SoundDevice::Close::operator()(out123_struct* handle) const {
    out123_drop(handle);  // else closing waits for what was not heard yet
    out123_del(handle);
}

SoundDevice::SoundDevice(const QString& driver, const QString& device,
                         std::function<bool(int)> waits)
    : waits_(std::move(waits)), handle_(out123_new()) {
    out123_handle* const handle = handle_.get();
    if (!handle)
        return;
    out123_param_int(handle, OUT123_ADD_FLAGS, OUT123_QUIET);
    out123_param_float(handle, OUT123_DEVICEBUFFER, MostAheadSeconds);
    const QByteArray name = driver.isEmpty() ? QByteArray(AudibleDrivers) : driver.toUtf8();
    const QByteArray place = device.toUtf8();
    if (out123_open(handle, name.constData(), device.isEmpty() ? nullptr : place.constData()) != 0)
        return;
    long properties = 0;
    out123_getparam_int(handle, OUT123_PROPFLAGS, &properties);
    isLive_ = properties & OUT123_PROP_LIVE;
    const long* rates = nullptr;
    size_t count = 0;
    mpg123_rates(&rates, &count);
    for (size_t i = 0; i < count; ++i)
        for (const int channels : {1, 2})
            if (const int encodings = out123_encodings(handle, rates[i], channels); encodings > 0)
                formats_.append({.rate = rates[i], .channels = channels, .encoding = encodings});
}

SoundDevice::~SoundDevice() = default;

bool SoundDevice::start(const SampleFormat& format) {
    finish();
    if (out123_start(handle_.get(), format.rate, format.channels, format.encoding) != 0)
        return false;
    format_ = format;
    bytesASecond_ = double(format.rate) * format.channels * out123_encsize(format.encoding);
    written_ = 0;
    clock_.start();
    return true;
}

bool SoundDevice::write(QByteArrayView samples, const SampleFormat& format) {
    if (format != format_ && !start(format))
        return false;
    waitUntilAhead(MostAheadSeconds);
    if (!waits_(0))
        return true;
    // What came too late was heard as silence, and is not caught up with.
    written_ = std::max(written_, double(clock_.elapsed()) / 1000);
    // The library may swap bytes in place; the decoder's buffer is there for that.
    auto* bytes = const_cast<char*>(samples.data());
    if (out123_play(handle_.get(), bytes, size_t(samples.size())) != size_t(samples.size()))
        return false;
    written_ += double(samples.size()) / bytesASecond_;
    return true;
}

// Waits until no more than so much of what was written is still to be heard.
void SoundDevice::waitUntilAhead(double seconds) {
    while (isLive_ && written_ - double(clock_.elapsed()) / 1000 > seconds && waits_(TickMs)) {
    }
}

void SoundDevice::finish() {
    if (bytesASecond_ <= 0)
        return;
    waitUntilAhead(0);
    if (waits_(0))
        out123_drain(handle_.get());
}

}  // namespace tessaly
