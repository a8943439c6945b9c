#include "app/limited_line_edit.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <memory>

#include "editor/entry_fields.h"

namespace tessaly {

namespace {

bool isCharacter(const QKeyEvent& event) {
    return !event.text().isEmpty() && event.text().at(0).isPrint() &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
}

}  // namespace

void LimitedLineEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        pasteLimited();
        return;
    }
    if (isCharacter(*event)) {
        emit keyTyped();
        if (text().size() >= limit_) {
            emit refused();
            return;
        }
    } else if (event->key() == Qt::Key_Backspace) {
        emit keyTyped();
    }
    QLineEdit::keyPressEvent(event);
}

void LimitedLineEdit::inputMethodEvent(QInputMethodEvent* event) {
    const QString input = event->commitString();
    const QString accepted = acceptedInput(text().size() - selectedText().size(), input, limit_);
    if (accepted == input) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    event->setCommitString(accepted);
    QLineEdit::inputMethodEvent(event);
    emit refused();
}

void LimitedLineEdit::insertLimited(const QString& input) {
    const QString line = input.simplified();
    const QString accepted = acceptedInput(text().size() - selectedText().size(), line, limit_);
    if (!accepted.isEmpty())
        insert(accepted);
    if (accepted != line)
        emit refused();
}

void LimitedLineEdit::pasteLimited() {
    insertLimited(QGuiApplication::clipboard()->text());
}

// The standard menu, whose Paste would go past the limit.
void LimitedLineEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    for (QAction* action : menu->actions()) {
        if (action->objectName() != "edit-paste")
            continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, &LimitedLineEdit::pasteLimited);
    }
    menu->exec(event->globalPos());
}

void LimitedLineEdit::dropEvent(QDropEvent* event) {
    if (event->mimeData()->hasText())
        insertLimited(event->mimeData()->text());
    event->acceptProposedAction();
}

}  // namespace tessaly
