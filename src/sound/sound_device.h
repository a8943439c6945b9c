// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <functional>
#include <memory>

#include "sound/mp3_decoder.h"

struct out123_struct;

namespace tessaly {

/// What makes samples heard. Used from one thread.
///
/// Drivers hold back what they were given for up to seconds, some without ever letting the caller
/// wait. So no more than a moment goes to them in advance: what was written is what was heard, and
/// silence comes at once.
class SoundDevice {
 public:
    /// Opens the output that people hear, or a driver of libout123 by its name. `waits` lets time
    /// pass, in milliseconds, and is false when nothing more is to be heard.
    SoundDevice(const QString& driver, const QString& device, std::function<bool(int)> waits);
    ~SoundDevice();

    /// What it can play; empty when there is no device.
    const QList<SampleFormat>& formats() const { return formats_; }

    /// Hands samples of `format` over and waits until the device has room for more. False when it
    /// does not take them.
    bool write(QByteArrayView samples, const SampleFormat& format);

    /// Waits until everything was heard.
    void finish();

 private:
    struct Close {
        void operator()(out123_struct* handle) const;
    };
    bool start(const SampleFormat& format);
    void waitUntilAhead(double seconds);

    const std::function<bool(int)> waits_;
    std::unique_ptr<out123_struct, Close> handle_;
    QList<SampleFormat> formats_;
    SampleFormat format_;
    bool isLive_ = false;  // somebody hears it, in the time that it takes
    QElapsedTimer clock_;  // since the device was started
    double written_ = 0;   // seconds of sound since then
    double bytesASecond_ = 0;
};

}  // namespace tessaly
