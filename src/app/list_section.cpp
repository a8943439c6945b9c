// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/list_section.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include "app/listening.h"
#include "app/small_widgets.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

template <typename Widget>
Widget* named(QStringView name, Widget* widget) {
    widget->setObjectName(name.toString());
    return widget;
}

QPushButton* makeButton(QStringView name, QStringView text, QWidget* parent) {
    return named(name, new QPushButton(text.toString(), parent));
}

}  // namespace

// ---- list and buttons --------------------------------------------------------------------------

// Tab goes through the controls in the order in which they are made.
ListSection::ListSection(const Names& names, QWidget* parent)
    : QGroupBox(QString::number(names.step) + u") "_s + names.title.toString() + u':', parent),
      limit_(names.limit) {
    const bool isFirst = names.step == 1;  // the keys of a page are not enough for all buttons
    const auto button = [&](const QString& what, QStringView text) {
        return makeButton(what + names.item.toString(), text, this);
    };
    setObjectName(u"fra"_s + names.item.toString() + u's');
    list_ = named(names.list, new LineList(this));
    list_->setAccessibleName(names.title.toString());
    list_->setHint(names.hint.toString());
    list_->allowSeveral();
    list_->allowDrops();
    edit_ = button(u"buttEdit"_s, isFirst ? u"&Edit" : u"E&dit");
    remove_ = button(u"buttDel"_s, isFirst ? u"&Remove" : u"Re&move");
    addCommands();
    auto* up = makeMoveButton(names, Direction::Up);
    auto* down = makeMoveButton(names, Direction::Down);
    addSelectAll();
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
    connect(list_, &LineList::rowsDropped, this,
            [this](int before) { emit moved(travelsBefore(list_->rows(), before)); });

    auto* layout = new QGridLayout(this);
    auto* side = new QVBoxLayout;
    auto* moves = new QHBoxLayout;
    auto* entry = new QHBoxLayout;
    layout->setColumnStretch(0, 1);  // the list has the room, the buttons their own size
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

// What the buttons do, for those who have the mouse or the hands on the list. The keys work while
// it has the focus.
void ListSection::addCommands() {
    const auto add = [this](QPushButton* button, const QKeySequence& key) {
        auto* command = new QAction(button->text().remove(u'&'), list_);
        command->setShortcut(key);
        command->setShortcutContext(Qt::WidgetShortcut);
        list_->addAction(command);
        return command;
    };
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);
    editCommand_ = add(edit_, Qt::Key_F2);
    removeCommand_ = add(remove_, QKeySequence::Delete);
    connect(editCommand_, &QAction::triggered, this, [this] {
        keepsEqualName_ = true;
        edit_->click();
        keepsEqualName_ = false;
    });
    connect(removeCommand_, &QAction::triggered, remove_, &QPushButton::click);
}

void ListSection::addSelectAll() {
    connect(addCommand(u"Select All"_s, u"Ctrl+A"_s), &QAction::triggered, list_,
            &LineList::selectAll);
    addSeparator();
}

void ListSection::addSeparator() {
    auto* separator = new QAction(list_);
    separator->setSeparator(true);
    list_->addAction(separator);
}

QAction* ListSection::addCommand(const QString& text, const QString& key) {
    auto* command = new QAction(key.isEmpty() ? text : text + u'\t' + key, list_);
    list_->addAction(command);
    return command;
}

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
    QAction* command = addCommand(isUp ? u"Move Up"_s : u"Move Down"_s);
    command->setShortcut(key);
    command->setShortcutContext(Qt::WidgetShortcut);
    connect(command, &QAction::triggered, button, &QToolButton::click);
    connect(button, &QToolButton::clicked, this, [this, direction] {
        emit moved(travelsByOne(list_->rows(), list_->model()->rowCount(), direction));
    });
    return button;
}

void ListSection::enable(const ListControls& enabled) {
    add_->setEnabled(enabled.add);
    edit_->setEnabled(enabled.change);
    remove_->setEnabled(enabled.remove);
    editCommand_->setEnabled(enabled.change);
    removeCommand_->setEnabled(enabled.remove);
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
      browse_(makeButton(names.browse, u"&Browse...", this)),
      listen_(named(names.listen, new ListenButton(this))) {
    setObjectName(names.frame.toString());
    path_->setReadOnly(true);
    path_->setToolTip(u"MP3 file to play.  Use BROWSE to select."_s);
    path_->setAccessibleName(u"MP3 file to play"_s);
    auto* layout = new QGridLayout(this);
    layout->addWidget(path_, 0, 0, 1, 2);
    layout->addWidget(browse_, 0, 2);
    layout->addWidget(listen_, 0, 3);
    if (!names.clear.isEmpty())
        layout->addWidget(clear_ = makeButton(names.clear, u"&No File", this), 0, 4);
    if (!names.hear.isEmpty()) {
        hear_ = makeButton(names.hear, u"Hear as on the Player", this);
        hear_->setToolTip(u"Listen to this title in all languages, with the chime"_s);
        layout->addWidget(hear_, 1, 2, 1, 3);
    }
    for (const auto& [name, caption] : names.lines) {
        auto* line = named(name, new QLabel);
        QSizePolicy wide(QSizePolicy::Expanding, QSizePolicy::Preferred);
        wide.setHorizontalStretch(1);
        line->setSizePolicy(wide);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        const int row = 1 + int(lines_.size());
        layout->addWidget(new QLabel(caption.toString()), row, 0);
        layout->addWidget(line, row, 1);
        lines_.append(line);
    }
    sound_ = named(names.sound, new QLabel);
    sound_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    sound_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    soundIcon_ = new QLabel;
    soundIcon_->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side));
    auto* sound = new QHBoxLayout;
    sound->addWidget(soundIcon_);
    sound->addWidget(sound_, 1);
    const int row = layout->rowCount();
    layout->addWidget(new QLabel(u"Sound:"_s), row, 0);
    layout->addLayout(sound, row, 1, 1, -1);
}

void FileSection::showFile(const FileDisplay& display, const QString& sound, bool isBad) {
    path_->setText(display.path);
    const QString texts[] = {display.size, display.tags.title, display.tags.artist,
                             display.tags.album};
    Q_ASSERT(lines_.size() <= qsizetype(std::size(texts)));
    for (qsizetype i = 0; i < lines_.size(); ++i)
        lines_[i]->setText(texts[i]);
    sound_->setText(sound);
    sound_->setToolTip(sound);
    soundIcon_->setVisible(isBad);
    listen_->offer(display.sounds);
}

}  // namespace tessaly
