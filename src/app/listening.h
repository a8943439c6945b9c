// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>
#include <QTimer>

#include "app/prompts.h"
#include "editor/file_display.h"
#include "sound/player.h"

class QAction;

namespace tessaly {

/// The button "Listen" beside a file. While anything plays, it is called "Stop" and stops that.
class ListenButton : public QPushButton {
    Q_OBJECT

 public:
    explicit ListenButton(QWidget* parent = nullptr);

    /// What it plays when it is pressed; nothing disables it.
    void offer(const QList<Sound>& sounds);

    void showPlaying(bool isPlaying);

    /// A command of a context menu that says and does the same.
    void addCommand(QAction* command);

    /// Wide enough for both of its names.
    QSize sizeHint() const override;

 signals:
    void listenChosen(const QList<Sound>& sounds);
    void stopChosen();

 private:
    void renew();

    QList<Sound> sounds_;
    QList<QAction*> commands_;
    bool isPlaying_ = false;
};

/// What the operator listens to now. It goes on, whatever is selected or edited meanwhile, until it
/// is stopped or something else is to be heard.
class Listening : public QObject {
    Q_OBJECT

 public:
    /// Where the player finds no device, `prompts` opens the file elsewhere.
    Listening(SoundPlayer& player, Prompts& prompts, QObject* parent = nullptr);
    ~Listening() override;

    /// Plays these, one after the other, in place of what plays.
    void play(const QList<Sound>& sounds);

    /// Also takes back what words() said of something that could not be heard.
    void stop();

    bool isPlaying() const { return !sounds_.isEmpty(); }

    /// "Playing Harbour, 0:03 of 0:16", or for a while why something could not be heard. Empty when
    /// there is nothing to say.
    QString words() const;

 signals:
    /// isPlaying() or words() changed.
    void changed();

 private:
    void take(const SoundReport& report);
    void openElsewhere(const QString& why);
    void end();

    SoundPlayer& player_;
    Prompts& prompts_;
    QList<Sound> sounds_;  // that play
    SoundReport now_;
    QString problem_;  // the first one, in words
    int moreProblems_ = 0;
    QTimer forgetting_;
};

}  // namespace tessaly
