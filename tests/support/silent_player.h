// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileInfo>
#include <functional>

#include "sound/player.h"

namespace tessaly::test {

/// A player that nobody hears: it tells what it is asked for, and reports what a test wants.
class SilentPlayer : public SoundPlayer {
 public:
    std::function<void(const QString& what)> onAsked = [](const QString&) {};

    bool isPlaying() const { return report_ != nullptr; }
    qsizetype count() const { return files_.size(); }

    void play(const QStringList& files, const Report& report) override {
        files_ = files;
        report_ = report;
        onAsked("plays " + files.join(" | "));
    }
    void stop() override {
        if (std::exchange(report_, nullptr))
            onAsked("falls silent");
    }

    /// As if it had come to that; nothing when it is silent.
    void report(const SoundReport& what) {
        using What = SoundReport::What;
        const bool isLast = what.what == What::Ended || what.what == What::NoDevice;
        if (const Report to = isLast ? std::exchange(report_, nullptr) : report_)
            to(what);
    }

 private:
    QStringList files_;
    Report report_;
};

}  // namespace tessaly::test
