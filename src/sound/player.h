// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <functional>
#include <memory>

namespace tessaly {

/// What becomes of files that are played.
struct SoundReport {
    enum class What {
        Plays,     ///< a file is under way: once when it begins, then every second
        Failed,    ///< a file could not be heard, or not to its end; the next one follows
        NoDevice,  ///< nothing can be heard on this machine: nothing more comes
        Ended,     ///< the last file was heard or has failed: nothing more comes
    };

    What what = What::Ended;
    int file = 0;      ///< which one of the files, from 0; what it says is of this one
    int seconds = 0;   ///< of it that were heard
    int length = 0;    ///< in seconds; 0 while it is not known
    QString why = {};  ///< Failed, NoDevice: the reason, which may follow a colon

    bool operator==(const SoundReport&) const = default;
};

/// Plays MP3 files aloud.
class SoundPlayer {
 public:
    using Report = std::function<void(const SoundReport&)>;

    virtual ~SoundPlayer() = default;

    /// Plays files one after the other, in place of what is playing. `report` is called later, from
    /// the event loop of the thread that the player belongs to, and may call the player.
    virtual void play(const QStringList& files, const Report& report) = 0;

    /// Falls silent at once, within a tenth of a second. Nothing more is reported. May be called
    /// when nothing plays.
    virtual void stop() = 0;
};

/// Plays them through this machine's sound output, on a thread of its own. Nothing is opened before
/// the first file is played.
///
/// A file may hold anything: it is read once from its beginning to its end, a piece at a time, and
/// no longer than it is played or stopped; memory does not grow with it.
class LocalSoundPlayer : public SoundPlayer {
 public:
    /// Another output than the one that people hear: the name of a driver of libout123 and, for
    /// those that write files, the file.
    explicit LocalSoundPlayer(const QString& driver = {}, const QString& device = {});
    ~LocalSoundPlayer() override;

    void play(const QStringList& files, const Report& report) override;
    void stop() override;

 private:
    class Wish;

    const QString driver_, device_;
    QObject here_;  ///< lives in the owner's thread, and reports come through it
    std::shared_ptr<Wish> wish_;
    std::unique_ptr<QThreadPool> thread_;
};

}  // namespace tessaly
