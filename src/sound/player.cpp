// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/player.h"

#include <QMutex>
#include <QWaitCondition>
#include <algorithm>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "sound/mp3_decoder.h"
#include "sound/sound_device.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// A driver may hang with its device, which must not keep the program from ending.
constexpr int LongestEndMs = 2000;

}  // namespace

/// What the owner wants to hear now, as both threads know it. Every wish has a number of its own.
class LocalSoundPlayer::Wish {
 public:
    explicit Wish(QObject& owner) : owner_(&owner) {}

    /// A new wish; what was wished before counts no more.
    quint64 renew() {
        const QMutexLocker lock(&mutex_);
        changed_.wakeAll();
        return ++number_;
    }

    bool isStill(quint64 number) {
        const QMutexLocker lock(&mutex_);
        return number == number_;
    }

    /// Lets time pass, but no longer than the wish stands; returns whether it does.
    bool isStillAfter(quint64 number, int ms) {
        QMutexLocker lock(&mutex_);
        if (number == number_ && ms > 0)
            changed_.wait(&mutex_, QDeadlineTimer(ms, Qt::PreciseTimer));
        return number == number_;
    }

    /// Reports in the owner's thread, unless by then something else is wished.
    void report(quint64 number, const Report& report, const SoundReport& what) {
        const QMutexLocker lock(&mutex_);
        if (number != number_)
            return;
        // What is still on its way when the owner goes, goes with it.
        QMetaObject::invokeMethod(
            owner_,
            [this, number, report, what] {
                if (isStill(number))
                    report(what);
            },
            Qt::QueuedConnection);
    }

 private:
    QMutex mutex_;
    QWaitCondition changed_;
    quint64 number_ = 0;
    QObject* const owner_;  // is there as long as a wish of it stands
};

namespace {

/// Plays files, as seen from the thread that does it.
class Playing {
 public:
    Playing(const QString& driver, const QString& device, std::function<bool(int)> waits,
            SoundPlayer::Report report)
        : waits_(std::move(waits)), report_(std::move(report)), device_(driver, device, waits_) {}

    void play(const QStringList& files) {
        for (state_.file = 0; state_.file < int(files.size()) && waits_(0); ++state_.file) {
            if (device_.formats().isEmpty())
                return say(What::NoDevice, u"there is no sound device"_s);
            if (!playFile(files[state_.file]))
                return say(What::NoDevice, u"the sound device has failed"_s);
        }
        device_.finish();
        report_({.what = What::Ended});
    }

 private:
    using What = SoundReport::What;

    // False when the device takes nothing more.
    bool playFile(const QString& path) {
        state_.seconds = state_.length = 0;
        say(What::Plays);
        if (!LocalFileSystem().fileSize(path)) {
            say(What::Failed, u"the file was not found"_s);
            return true;
        }
        try {
            Mp3Decoder decoder(path, device_.formats(), [this] { return waits_(0); });
            for (auto samples = decoder.next(); !samples.isEmpty(); samples = decoder.next()) {
                if (!device_.write(samples, decoder.format()))
                    return false;
                showTime(decoder);
            }
            if (!decoder.problem().isEmpty())
                say(What::Failed, decoder.problem());
        } catch (const TessalyError& error) {
            say(What::Failed, error.description);
        }
        return true;
    }

    void showTime(const Mp3Decoder& decoder) {
        // A file may claim any length.
        const auto whole = [](double seconds) { return int(std::min(seconds, 100 * 3600.0)); };
        const int seconds = whole(decoder.seconds()), length = whole(decoder.length() + 0.5);
        if (seconds == state_.seconds && (state_.length > 0 || length == 0))
            return;
        state_.seconds = seconds;
        state_.length = length;
        say(What::Plays);
    }

    void say(What what, const QString& why = {}) {
        state_.what = what;
        state_.why = why;
        report_(state_);
    }

    const std::function<bool(int)> waits_;
    const SoundPlayer::Report report_;
    SoundDevice device_;
    SoundReport state_;
};

}  // namespace

LocalSoundPlayer::LocalSoundPlayer(const QString& driver, const QString& device)
    : driver_(driver),
      device_(device),
      wish_(std::make_shared<Wish>(here_)),
      thread_(std::make_unique<QThreadPool>()) {
    thread_->setMaxThreadCount(1);
}

LocalSoundPlayer::~LocalSoundPlayer() {
    stop();
    if (!thread_->waitForDone(LongestEndMs))
        static_cast<void>(thread_.release());  // ends with the program
}

void LocalSoundPlayer::play(const QStringList& files, const Report& report) {
    const quint64 number = wish_->renew();
    thread_->start([=, wish = wish_, driver = driver_, device = device_] {
        if (!wish->isStill(number))
            return;
        Playing(
            driver, device, [=](int ms) { return wish->isStillAfter(number, ms); },
            [=](const SoundReport& what) { wish->report(number, report, what); })
            .play(files);
    });
}

void LocalSoundPlayer::stop() {
    wish_->renew();
}

}  // namespace tessaly
