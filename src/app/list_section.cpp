// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/list_section.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QStyle>
#include <QToolButton>

#include "app/small_widgets.h"
#include "model/format_limits.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

class LineModel : public QStringListModel {
 public:
    using QStringListModel::QStringListModel;

    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::ToolTipRole)
            return QStringListModel::data(index, role);
        const QString text = index.data().toString();
        return text.size() > limits::DisplayText ? text : QVariant();
    }
};

template <typename Widget>
Widget* named(QStringView name, Widget* widget) {
    widget->setObjectName(name.toString());
    return widget;
}

QPushButton* makeButton(QStringView name, QStringView text, QWidget* parent) {
    return named(name, new QPushButton(text.toString(), parent));
}

}  // namespace

// ---- the list ----------------------------------------------------------------------------------

LineList::LineList(QWidget* parent) : QListView(parent) {
    setModel(new LineModel(this));
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &LineList::rowChanged);
}

void LineList::showLines(const QStringList& lines, int row) {
    auto* shown = static_cast<QStringListModel*>(model());
    if (shown->stringList() != lines)
        shown->setStringList(lines);
    selectRow(row);
}

void LineList::selectRow(int row) {
    const QSignalBlocker blocker(this);
    if (row < 0)
        selectionModel()->clear();
    if (row < 0 || row == this->row())
        return;
    const QModelIndex index = model()->index(row, 0);
    setCurrentIndex(index);
    scrollTo(index);
}

int LineList::row() const {
    const auto selected = selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.first().row();
}

QString LineList::line() const {
    return model()->index(row(), 0).data().toString();
}

// ---- list and buttons --------------------------------------------------------------------------

// Tab goes through the controls in the order in which they are made.
ListSection::ListSection(const Names& names, QWidget* parent)
    : QGroupBox(QString::number(names.step) + u") "_s + names.title.toString() + u':', parent),
      limit_(names.limit),
      what_(names.what.toString()) {
    const bool isFirst = names.step == 1;  // the keys of a page are not enough for all buttons
    const auto button = [&](const QString& what, QStringView text) {
        return makeButton(what + names.item.toString(), text, this);
    };
    setObjectName(u"fra"_s + names.item.toString() + u's');
    list_ = named(names.list, new LineList(this));
    list_->setAccessibleName(names.title.toString());
    edit_ = button(u"buttEdit"_s, isFirst ? u"&Edit" : u"E&dit");
    remove_ = button(u"buttDel"_s, isFirst ? u"&Remove" : u"Re&move");
    auto* up = makeMoveButton(names, Direction::Up);
    auto* down = makeMoveButton(names, Direction::Down);
    for (const auto& [name, text] : names.more)
        more_.append(makeButton(name, text, this));
    auto* label = new QLabel(names.label.toString(), this);
    field_ = makeField(u"txtNew"_s + names.item.toString());
    label->setBuddy(field_);
    add_ = button(u"buttAdd"_s, isFirst ? u"&Add" : u"Add");
    connect(edit_, &QPushButton::clicked, this, &ListSection::editClicked);
    connect(remove_, &QPushButton::clicked, this, &ListSection::removeClicked);
    connect(field_, &QLineEdit::textChanged, this, &ListSection::entered);
    connect(add_, &QPushButton::clicked, this, &ListSection::addClicked);

    auto* layout = new QGridLayout(this);
    auto* side = new QVBoxLayout;
    auto* moves = new QHBoxLayout;
    auto* entry = new QHBoxLayout;
    layout->addWidget(list_, 0, 0);
    layout->addLayout(side, 0, 1);
    layout->addLayout(entry, 1, 0);
    layout->addWidget(add_, 1, 1);
    side->addWidget(edit_);
    side->addWidget(remove_);
    side->addSpacing(8);
    side->addLayout(moves);
    side->addItem(new QSpacerItem(20, 20, QSizePolicy::Minimum, QSizePolicy::Expanding));
    for (QPushButton* further : more_)
        side->addWidget(further);
    moves->addWidget(up);
    moves->addWidget(down);
    moves->addStretch();
    entry->addWidget(label);
    entry->addWidget(field_);
}

QLineEdit* ListSection::makeField(const QString& name) {
    if (limit_ == 0)
        return named(name, new QLineEdit(this));
    auto* field = named(name, new LimitedLineEdit(this));
    field->setLimit(limit_);
    connect(field, &LimitedLineEdit::refused, this, &ListSection::refused);
    return field;
}

// The key works while the list has the focus.
QToolButton* ListSection::makeMoveButton(const Names& names, Direction direction) {
    const bool isUp = direction == Direction::Up;
    const QKeySequence key(Qt::ALT | (isUp ? Qt::Key_Up : Qt::Key_Down));
    const QString action = u"Move the "_s + names.what.toString() + (isUp ? u" up"_s : u" down"_s);
    auto* button =
        named(names.image.toString() + (isUp ? u"Up"_s : u"Dn"_s), new QToolButton(this));
    button->setMinimumSize(28, 28);
    button->setIcon(style()->standardIcon(isUp ? QStyle::SP_ArrowUp : QStyle::SP_ArrowDown));
    button->setToolTip(action + u" ("_s + key.toString(QKeySequence::NativeText) + u')');
    button->setAccessibleName(action);
    auto* shortcut = new QShortcut(key, list_);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, button, &QToolButton::click);
    connect(button, &QToolButton::clicked, this,
            [this, direction] { emit moveClicked(direction); });
    return button;
}

void ListSection::enable(const ListControls& enabled) {
    add_->setEnabled(enabled.add);
    edit_->setEnabled(enabled.change);
    remove_->setEnabled(enabled.change);
}

QString ListSection::what() const {
    return what_.at(0).toUpper() + what_.mid(1);
}

QString ListSection::entry() const {
    return field_->text();
}

void ListSection::clearEntry() {
    field_->clear();
}

// ---- the file ----------------------------------------------------------------------------------

FileSection::FileSection(const Names& names, QWidget* parent)
    : QGroupBox(names.title.toString(), parent),
      path_(named(names.path, new QLineEdit(this))),
      browse_(makeButton(names.browse, u"&Browse...", this)) {
    setObjectName(names.frame.toString());
    path_->setReadOnly(true);
    path_->setToolTip(u"MP3 file to play.  Use BROWSE to select."_s);
    path_->setAccessibleName(u"MP3 file to play"_s);
    auto* layout = new QGridLayout(this);
    layout->addWidget(path_, 0, 0, 1, 2);
    layout->addWidget(browse_, 0, 2);
    for (const auto& [name, caption] : names.lines) {
        auto* line = named(name, new QLabel);
        QSizePolicy wide(QSizePolicy::Expanding, QSizePolicy::Preferred);
        wide.setHorizontalStretch(1);
        line->setSizePolicy(wide);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        const int row = layout->rowCount();
        layout->addWidget(new QLabel(caption.toString()), row, 0);
        layout->addWidget(line, row, 1);
        lines_.append(line);
    }
}

void FileSection::showFile(const FileDisplay& display) {
    path_->setText(display.path);
    const QString texts[] = {display.size, display.tags.title, display.tags.artist,
                             display.tags.album};
    Q_ASSERT(lines_.size() <= qsizetype(std::size(texts)));
    for (qsizetype i = 0; i < lines_.size(); ++i)
        lines_[i]->setText(texts[i]);
}

}  // namespace tessaly
