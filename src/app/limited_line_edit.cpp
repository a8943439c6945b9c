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

#include "model/display_text.h"

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
    const bool isBackspace = event->key() == Qt::Key_Backspace;
    if (isCharacter(*event) || isBackspace) {
        emit keyTyped();
        if (refusesKey(text(), isBackspace ? QChar(8) : event->text().at(0), limit_)) {
            emit refused();
            return;
        }
    }
    QLineEdit::keyPressEvent(event);
}

void LimitedLineEdit::inputMethodEvent(QInputMethodEvent* event) {
    const QString input = event->commitString();
    const Paste accepted = pasteInto(text(), selectedText(), input, limit_);
    if (!input.isEmpty())
        event->setCommitString(accepted.text);
    QLineEdit::inputMethodEvent(event);
    if (accepted.isCut)
        emit refused();
}

void LimitedLineEdit::insertLimited(const QString& input) {
    const Paste accepted = pasteInto(text(), selectedText(), input, limit_);
    if (!accepted.text.isEmpty())
        insert(accepted.text);
    if (accepted.isCut)
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
