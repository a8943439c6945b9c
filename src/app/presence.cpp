// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/presence.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QMutex>
#include <QSet>
#include <QThread>
#include <QWaitCondition>

namespace tessaly {

struct Presence::Answers {
    QMutex mutex;
    QWaitCondition news;
    QSet<QString> there, owed;
};

bool Presence::isOnDisk(const QString& path) {
    return QFileInfo::exists(path);
}

Presence::Presence(Question question)
    : question_(std::move(question)), answers_(std::make_shared<Answers>()) {}

Presence::~Presence() = default;

void Presence::ask(const QStringList& paths, int milliseconds) {
    const auto find = [answers = answers_, question = question_](const QString& path) {
        const bool isThere = question(path);
        const QMutexLocker lock(&answers->mutex);
        answers->owed.remove(path);
        if (isThere)
            answers->there.insert(path);
        answers->news.wakeAll();
    };
    QSet<QString> asked;
    const QDeadlineTimer end(milliseconds);
    QMutexLocker lock(&answers_->mutex);
    for (const QString& path : paths) {
        if (answers_->owed.contains(path))
            continue;
        answers_->there.remove(path);
        answers_->owed.insert(path);
        asked.insert(path);
        // Nobody waits for a thread that hangs, not even the program's end.
        QThread* thread = QThread::create(find, path);
        connect(thread, &QThread::finished, this, &Presence::answered);
        connect(thread, &QThread::finished, thread, &QObject::deleteLater);
        thread->start();
    }
    while (answers_->owed.intersects(asked) && answers_->news.wait(&answers_->mutex, end)) {
    }
}

bool Presence::isThere(const QString& path) const {
    const QMutexLocker lock(&answers_->mutex);
    return answers_->there.contains(path);
}

}  // namespace tessaly
