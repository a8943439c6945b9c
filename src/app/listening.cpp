// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/listening.h"

#include <QAction>
#include <QStyleOptionButton>
#include <algorithm>

#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int ProblemShownMs = 30 * 1000;

const QString Listen = u"Listen"_s, Stop = u"Stop"_s, Key = u"Ctrl+Space"_s;

}  // namespace

// ---- the button --------------------------------------------------------------------------------

ListenButton::ListenButton(QWidget* parent) : QPushButton(parent) {
    renew();
    connect(this, &QPushButton::clicked, this, [this] {
        if (isPlaying_)
            emit stopChosen();
        else
            emit listenChosen(sounds_);
    });
}

void ListenButton::offer(const QList<Sound>& sounds) {
    sounds_ = sounds;
    renew();
}

void ListenButton::showPlaying(bool isPlaying) {
    isPlaying_ = isPlaying;
    renew();
}

void ListenButton::addCommand(QAction* command) {
    commands_.append(command);
    connect(command, &QAction::triggered, this, &QPushButton::click);
    renew();
}

void ListenButton::renew() {
    const QString& name = isPlaying_ ? Stop : Listen;
    setText(name);
    setToolTip((isPlaying_ ? u"Stop what plays ("_s : u"Listen to this file ("_s) +
               QKeySequence(Key).toString(QKeySequence::NativeText) + u')');
    setEnabled(isPlaying_ || !sounds_.isEmpty());
    for (QAction* command : commands_) {
        command->setText(name + u'\t' + Key);
        command->setEnabled(isEnabled());
    }
}

QSize ListenButton::sizeHint() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    QSize size;
    for (const QString& name : {Listen, Stop}) {
        option.text = name;
        const QSize text = fontMetrics().size(Qt::TextShowMnemonic, name);
        size =
            size.expandedTo(style()->sizeFromContents(QStyle::CT_PushButton, &option, text, this));
    }
    return size;
}

// ---- what plays --------------------------------------------------------------------------------

Listening::Listening(SoundPlayer& player, Prompts& prompts, QObject* parent)
    : QObject(parent), player_(player), prompts_(prompts) {
    forgetting_.setSingleShot(true);
    forgetting_.setInterval(ProblemShownMs);
    connect(&forgetting_, &QTimer::timeout, this, &Listening::stop);
}

Listening::~Listening() {
    player_.stop();
}

void Listening::play(const QList<Sound>& sounds) {
    if (sounds.isEmpty())
        return;
    forgetting_.stop();
    sounds_ = sounds;
    now_ = {};
    problem_.clear();
    moreProblems_ = 0;
    QStringList files;
    for (const Sound& sound : sounds)
        files.append(sound.path);
    player_.play(files, [this](const SoundReport& report) { take(report); });
    emit changed();
}

void Listening::stop() {
    player_.stop();
    forgetting_.stop();
    problem_.clear();
    end();
}

void Listening::end() {
    sounds_.clear();
    if (!problem_.isEmpty())
        forgetting_.start();
    emit changed();
}

void Listening::take(const SoundReport& report) {
    now_ = report;
    switch (report.what) {
        case SoundReport::What::Plays:
            return emit changed();
        case SoundReport::What::Failed:
            if (!problem_.isEmpty())
                ++moreProblems_;
            else
                problem_ =
                    (report.seconds > 0
                         ? u"Cannot play %1 beyond %2: %3."_s.arg(
                               sounds_[report.file].what, inMinutes(qint64(1000) * report.seconds),
                               report.why)
                         : u"Cannot play %1: %2."_s.arg(sounds_[report.file].what, report.why));
            return;
        case SoundReport::What::NoDevice:
            openElsewhere(report.why);
            return end();
        case SoundReport::What::Ended:
            return end();
    }
}

// The system's player takes one file: rather the announcement than the chime before it.
void Listening::openElsewhere(const QString& why) {
    const auto sound = std::find_if(sounds_.cbegin() + now_.file, sounds_.cend() - 1,
                                    [](const Sound& one) { return !one.isChime; });
    problem_ = prompts_.openDocument(sound->path)
                   ? u"The system's player opens %1: %2."_s.arg(sound->what, why)
                   : u"Cannot play %1: %2. No other program was found."_s.arg(sound->what, why);
}

QString Listening::words() const {
    if (isPlaying()) {
        QString text = u"Playing %1, %2"_s.arg(sounds_[now_.file].what,
                                               inMinutes(qint64(1000) * now_.seconds));
        if (now_.length > 0)
            text += u" of "_s + inMinutes(qint64(1000) * now_.length);
        if (sounds_.size() > 1)
            text += u" (%1 of %2)"_s.arg(now_.file + 1).arg(sounds_.size());
        return text;
    }
    return moreProblems_ > 0 ? problem_ + u" (and %1 more)"_s.arg(moreProblems_) : problem_;
}

}  // namespace tessaly
