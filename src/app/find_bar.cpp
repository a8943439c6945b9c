// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find_bar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/small_widgets.h"
#include "model/numbers.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype PlacesShown = 100;  // more than anybody reads
constexpr int RowsSeen = 7;             // where there is room

}  // namespace

FindBar::FindBar(const Project& project, QWidget* parent)
    : QFrame(parent),
      project_(project),
      list_(new QTreeWidget(this)),
      field_(new QLineEdit(this)),
      count_(new QLabel(this)) {
    setObjectName(u"fraFind"_s);
    list_->setObjectName(u"lstFound"_s);
    list_->setAccessibleName(u"Places found"_s);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setHeaderHidden(true);
    list_->setColumnCount(2);
    list_->setFocusPolicy(Qt::NoFocus);  // the keys of the field work on it
    field_->setObjectName(u"txtFind"_s);
    field_->setPlaceholderText(u"Part of the name of a list, track, title, language or file"_s);
    field_->setAccessibleName(u"Find"_s);
    field_->setClearButtonEnabled(true);
    field_->installEventFilter(this);
    count_->setObjectName(u"lblFound"_s);
    count_->setTextFormat(Qt::PlainText);
    auto* caption = new QLabel(u"Find:"_s, this);
    caption->setBuddy(field_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* bar = new QHBoxLayout;
    layout->addWidget(list_);
    layout->addLayout(bar);
    bar->addWidget(caption);
    bar->addWidget(field_, 1);
    bar->addWidget(count_);
    const auto addButton = [&](const QString& name, const QString& words, const QIcon& icon) {
        auto* button = new QToolButton(this);
        button->setObjectName(name);
        button->setIcon(icon);
        button->setAutoRaise(true);
        button->setToolTip(words);
        button->setAccessibleName(words.section(u" ("_s, 0, 0));
        bar->addWidget(button);
        return button;
    };
    connect(addButton(u"buttFindPrevious"_s, u"Go to the place before (Shift+F3)"_s,
                      themedIcon(u"go-up"_s, QStyle::SP_ArrowUp)),
            &QToolButton::clicked, this, [this] { goOn(-1); });
    connect(addButton(u"buttFindNext"_s, u"Go to the next place (F3)"_s,
                      themedIcon(u"go-down"_s, QStyle::SP_ArrowDown)),
            &QToolButton::clicked, this, [this] { goOn(1); });
    connect(addButton(u"buttFindClose"_s, u"Close the bar (Escape)"_s,
                      themedIcon(u"window-close"_s, QStyle::SP_TitleBarCloseButton)),
            &QToolButton::clicked, this, &FindBar::leave);

    connect(field_, &QLineEdit::textChanged, this, [this] {
        current_ = -1;
        search();
        list_->setVisible(!places_.isEmpty());
        showPlaces();
    });
    connect(field_, &QLineEdit::returnPressed, this, [this] {
        goTo(list_->isVisible() ? list_->indexOfTopLevelItem(list_->currentItem()) : current_ + 1);
    });
    connect(list_, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { goTo(list_->indexOfTopLevelItem(item)); });
    auto* escape = new QShortcut(Qt::Key_Escape, this);
    connect(escape, &QShortcut::activated, this, &FindBar::leave);
    list_->hide();
    hide();
}

void FindBar::open() {
    if (!isAncestorOf(QApplication::focusWidget()))
        before_ = QApplication::focusWidget();
    show();
    field_->setFocus();
    field_->selectAll();
    search();
    list_->setVisible(!places_.isEmpty());
    showPlaces();
}

// The place where the focus was before, unless a place that was found has it.
void FindBar::leave() {
    const bool hasFocus = isAncestorOf(QApplication::focusWidget());
    list_->hide();
    hide();
    if (hasFocus && before_)
        before_->setFocus();
}

void FindBar::search() {
    places_ = finder_.find(project_, field_->text());
}

void FindBar::showPlaces() {
    const bool isEmpty = field_->text().trimmed().isEmpty();
    const QString all = counted(places_.size(), u"place"_s);
    count_->setText(isEmpty             ? QString()
                    : places_.isEmpty() ? u"Nothing found"_s
                    : current_ < 0      ? all
                                        : u"%1 of %2"_s.arg(current_ + 1).arg(places_.size()));
    if (list_->isHidden())
        return;
    list_->clear();
    QList<QTreeWidgetItem*> items;
    for (const Place& place : places_.mid(0, PlacesShown))
        items.append(new QTreeWidgetItem({place.text, placeInWords(project_, place)}));
    if (const qsizetype more = places_.size() - items.size(); more > 0) {
        items.append(new QTreeWidgetItem({u"... and %1 more"_s.arg(more)}));
        items.last()->setFlags(Qt::NoItemFlags);
    }
    list_->addTopLevelItems(items);
    // The page behind it stays in sight.
    list_->setFixedHeight(std::min(list_->sizeHintForRow(0) * RowsSeen + list_->frameWidth() * 2,
                                   window()->height() / 4));
    list_->resizeColumnToContents(0);
    list_->setColumnWidth(
        0, std::min(list_->columnWidth(0) + list_->fontMetrics().height(), list_->width() / 2));
    list_->setCurrentItem(
        list_->topLevelItem(int(std::clamp<qsizetype>(current_, 0, PlacesShown - 1))));
}

void FindBar::goOn(int step) {
    search();
    if (places_.isEmpty())
        return open();
    const qsizetype from = current_ < 0 && step < 0 ? 0 : current_;
    goTo((from + step + places_.size()) % places_.size());
}

// The project may have changed since the words were typed.
void FindBar::goTo(qsizetype index) {
    search();
    list_->hide();
    current_ = places_.isEmpty() ? -1 : std::clamp<qsizetype>(index, 0, places_.size() - 1);
    showPlaces();
    if (current_ >= 0)
        emit chosen(Place(places_[current_]));
}

// Keys that a field has no use for go to the list above it.
bool FindBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !list_->isVisible())
        return QFrame::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Up && key != Qt::Key_Down && key != Qt::Key_PageUp &&
        key != Qt::Key_PageDown)
        return QFrame::eventFilter(watched, event);
    QApplication::sendEvent(list_, event);
    return true;
}

}  // namespace tessaly
