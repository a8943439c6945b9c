// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recent_menu.h"

#include <QDir>
#include <QFileInfo>

#include "app/remembered.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int AnswersMs = 80;       // what is on a disk of this machine answers sooner
constexpr int NameCharacters = 60;  // a menu wider than that hides what it is about

// The names of files, with their folders where two have the same name.
QStringList namesOf(const QStringList& files) {
    QHash<QString, int> uses;
    for (const QString& file : files)
        ++uses[QFileInfo(file).fileName()];
    QStringList names;
    for (const QString& file : files) {
        const QFileInfo info(file);
        names.append(
            uses.value(info.fileName()) == 1
                ? info.fileName()
                : u"%1 - %2"_s.arg(info.fileName(), QDir::toNativeSeparators(info.path())));
    }
    return names;
}

}  // namespace

RecentMenu::RecentMenu(Remembered& remembered, QWidget* parent)
    : QMenu(u"Open Recen&t"_s, parent), remembered_(remembered) {
    menuAction()->setObjectName(u"mnuFileRecent"_s);
    setToolTipsVisible(true);
    for (int i = 0; i < Remembered::RecentProjects; ++i) {
        lines_.append(addAction(QString()));
        lines_.last()->setObjectName(u"mnuFileRecent_%1"_s.arg(i));
        connect(lines_.last(), &QAction::triggered, this, [this, i] { emit chosen(files_[i]); });
    }
    addSeparator();
    auto* clear = addAction(u"&Clear List"_s);
    clear->setObjectName(u"mnuFileRecentClear"_s);
    connect(clear, &QAction::triggered, this, [this] {
        remembered_.clearRecentProjects();
        showFiles();
    });
    connect(this, &QMenu::aboutToShow, this, &RecentMenu::lookForFiles);
    connect(&presence_, &Presence::answered, this, &RecentMenu::showPresence);
    showFiles();
}

void RecentMenu::add(const QString& file) {
    remembered_.addRecentProject(file);
    showFiles();
}

void RecentMenu::showFiles() {
    files_ = remembered_.recentProjects();
    const QStringList names = namesOf(files_);
    for (qsizetype i = 0; i < lines_.size(); ++i) {
        QString name = fontMetrics().elidedText(names.value(i), Qt::ElideMiddle,
                                                fontMetrics().averageCharWidth() * NameCharacters);
        const QString number = i < 9 ? u"&%1"_s.arg(i + 1) : u"1&0"_s;
        lines_[i]->setText(i < names.size() ? number + u' ' + name.replace(u'&', u"&&"_s)
                                            : QString());
        lines_[i]->setToolTip(QDir::toNativeSeparators(files_.value(i)));
        lines_[i]->setVisible(i < names.size());
        lines_[i]->setEnabled(true);  // until it is known to be gone
    }
    menuAction()->setEnabled(!files_.isEmpty());
}

void RecentMenu::lookForFiles() {
    presence_.ask(files_, AnswersMs);
    showPresence();
}

void RecentMenu::showPresence() {
    for (qsizetype i = 0; i < files_.size(); ++i)
        lines_[i]->setEnabled(presence_.isThere(files_[i]));
}

}  // namespace tessaly
