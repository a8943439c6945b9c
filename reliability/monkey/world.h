// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QStringList>
#include <functional>

#include "dice.h"
#include "support/window_bench.h"

namespace tessaly::monkey {

/// What happened during an event that the checks after it want to know.
struct Happenings {
    bool sessionChanged = false;  ///< New, Open, Save As, Recover or a new start were under way
    bool keepCopyBeforeDiscard = false;  ///< the project that was open was given up
    bool undone = false;                 ///< an edit was undone or redone
    bool ranCard = false;                ///< a card was written, or tried to be
};

/// The surroundings of the monkey: the window's bench with folders full of things to open, a card
/// that vanishes, a file system that fails at times, and an operator who answers at random.
class World {
 public:
    World();

    test::WindowBench bench;
    Dice* dice = nullptr;  ///< of the event that is going on
    Happenings happenings;
    std::function<void()> onRunOperation = [] {};  ///< at file operations while a card is written

    /// Makes a window and starts it, after an end or, at times, after a crash.
    void restart();

    bool isRunning() const;

    /// Something outside the program changes; returns what, in words.
    QString change();

    /// What people type, paste and answer, of all kinds.
    QString text();

    /// What people drag in together from the desktop: files, folders, playlists, speech.
    QStringList droppedPaths();

    bool faulty() const { return failOneIn_ > 0; }

    /// Files that nobody may change, with their content: sources, playlists, the program's own
    /// files, projects to be opened.
    QMap<QString, QByteArray> untouchables() const;
    /// The names at the top of the scratch folder.
    QStringList places() const;

 private:
    void makeFiles();
    void answer(const QString& what);
    QString pathFor(const QString& what);
    void setCardPresent(bool present);

    int failOneIn_ = 0;
    bool cardPresent_ = true;
    QStringList mp3s_, folders_, playlists_, projects_, targets_;
};

}  // namespace tessaly::monkey
