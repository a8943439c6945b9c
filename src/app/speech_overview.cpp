// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_overview.h"

#include <QAction>
#include <QEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "app/overview_table.h"
#include "app/small_widgets.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int ShowEveryMs = 200;

}  // namespace

OverviewSection::OverviewSection(const FileSystem& files, SoundWatch& sounds, QWidget* parent)
    : QGroupBox(u"Titles and languages:"_s, parent),
      files_(files),
      sounds_(sounds),
      table_(new OverviewTable(this)),
      model_(new OverviewModel(this)),
      words_(new ElidedLabel(this)) {
    setObjectName(u"fraSpOverview"_s);
    table_->setObjectName(u"tblSpOverview"_s);
    table_->setAccessibleName(u"Titles and languages"_s);
    words_->setObjectName(u"lblSpOverview"_s);
    table_->setModel(model_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addWidget(words_);
    const auto moved = [this] { emit selectionMoved(); };
    connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this, moved);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, moved);
    connect(table_, &OverviewTable::filesHeld, this, &OverviewSection::showPlace);
    connect(table_, &OverviewTable::filesGone, this, &OverviewSection::showWords);
    connect(table_, &QTableView::doubleClicked, this, &OverviewSection::browseChosen);
    addAction(u"mnuSpBrowse"_s, u"&Browse..."_s, {Qt::Key_Return, Qt::Key_Enter},
              &OverviewSection::browseChosen);
    clear_ =
        addAction(u"mnuSpNoFile"_s, u"&No File"_s, {Qt::Key_Delete}, &OverviewSection::clearChosen);
    addAction(u"mnuSpNextEmpty"_s, u"Next &Empty"_s, {Qt::CTRL | Qt::Key_Down},
              &OverviewSection::goToNextEmpty);
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(&looking_, &QTimer::timeout, this, &OverviewSection::lookFurther);
}

QAction* OverviewSection::addAction(const QString& name, const QString& text,
                                    const QList<QKeySequence>& keys,
                                    void (OverviewSection::*does)()) {
    auto* action = new QAction(text, table_);
    action->setObjectName(name);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
    connect(action, &QAction::triggered, this, does);
    table_->addAction(action);
    return action;
}

QAction* OverviewSection::addCommand(const QString& text) {
    auto* command = new QAction(text, table_);
    table_->addAction(command);
    return command;
}

void OverviewSection::showProject(const Project& project, const SpeechSelection& pair) {
    const QSignalBlocker blocker(this);
    model_->show(SpeechOverview(project, model_->overview()));
    select(pair);
    showWords();
    looking_.start();
}

void OverviewSection::select(const SpeechSelection& pair) {
    if (pair == current())
        return;
    const QSignalBlocker blocker(this);
    if (pair.title < 0 || pair.language < 0)
        table_->selectionModel()->clear();
    else
        table_->setCurrentIndex(model_->index(pair.title, pair.language));
}

SpeechSelection OverviewSection::current() const {
    return model_->pairAt(table_->currentIndex());
}

QList<SpeechSelection> OverviewSection::selected() const {
    QList<SpeechSelection> pairs;
    for (const QModelIndex& index : table_->selectionModel()->selectedIndexes())
        pairs.append(model_->pairAt(index));
    if (pairs.isEmpty() && table_->currentIndex().isValid())
        pairs.append(current());
    return pairs;
}

bool OverviewSection::hasFile() const {
    return std::ranges::any_of(selected(), [this](const SpeechSelection& pair) {
        return model_->overview().at(pair).file != SpeechFile::None;
    });
}

void OverviewSection::enableClear(bool isEnabled) {
    clear_->setEnabled(isEnabled);
}

void OverviewSection::goToNextEmpty() {
    const SpeechSelection pair = model_->overview().nextEmpty(current());
    if (pair.title >= 0)
        table_->setCurrentIndex(model_->index(pair.title, pair.language));
}

void OverviewSection::showWords() {
    words_->setText(model_->overview().inWords());
}

// Says for what the files would be that the operator is about to drop.
void OverviewSection::showPlace(const SpeechSelection& place) {
    QStringList names{model_->overview().titles().value(place.title),
                      model_->overview().languages().value(place.language)};
    names.removeAll(QString());
    words_->setText(names.isEmpty() ? u"Drop files here"_s : u"Drop: "_s + names.join(u", "_s));
}

// Files may have come or gone while the operator was elsewhere.
bool OverviewSection::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        lookAgain();
    return QGroupBox::event(event);
}

void OverviewSection::lookAgain() {
    model_->lookAgain();
    looking_.start();
}

void OverviewSection::hideEvent(QHideEvent* event) {
    looking_.stop();
    QGroupBox::hideEvent(event);
}

// A few files whenever there is nothing else to do, so that the window never waits for them all. To
// paint the table takes longer than to look for the files in it.
void OverviewSection::lookFurther() {
    hasNews_ |= model_->lookFurther(files_, sounds_);
    const bool isOver = model_->overview().hasSeenAll();
    if (isOver)
        looking_.stop();
    if (!hasNews_ || (!isOver && shown_.isValid() && !shown_.hasExpired(ShowEveryMs)))
        return;
    hasNews_ = false;
    shown_.start();
    model_->showFound();
    showWords();
}

}  // namespace tessaly
