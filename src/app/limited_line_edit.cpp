#include "app/limited_line_edit.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <algorithm>
#include <memory>

#include "model/display_text.h"

namespace tessaly {

namespace {

// Whatever the field would take: everything but control characters. With Ctrl it takes only those
// that format; with Ctrl and Alt, which are the AltGr of some keyboards, all.
bool isCharacter(const QKeyEvent& event) {
    const auto category =
        event.text().isEmpty() ? QChar::Other_Control : event.text().at(0).category();
    const bool isCommand =
        event.modifiers() & Qt::ControlModifier && !(event.modifiers() & Qt::AltModifier);
    return category != QChar::Other_Control && (category == QChar::Other_Format || !isCommand);
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
    // What the input method replaces makes room, like a selection.
    const qsizetype start =
        std::clamp<qsizetype>(cursorPosition() + event->replacementStart(), 0, text().size());
    const QString replaced = event->replacementLength() > 0
                                 ? text().mid(start, event->replacementLength())
                                 : selectedText();
    const Paste accepted = pasteInto(text(), replaced, input, limit_);
    if (accepted.isCut)
        event->setCommitString(accepted.text, event->replacementStart(),
                               event->replacementLength());
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

// The middle button pastes what is selected elsewhere.
void LimitedLineEdit::mouseReleaseEvent(QMouseEvent* event) {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (event->button() != Qt::MiddleButton || !clipboard->supportsSelection()) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    const QString selected = clipboard->text(QClipboard::Selection);
    setCursorPosition(cursorPositionAt(event->pos()));
    insertLimited(selected);
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

// A copy, for the source of a move takes away what it gave, whether it came in or not. Within the
// field nothing is added by a move.
void LimitedLineEdit::dropEvent(QDropEvent* event) {
    if (event->source() == this && event->dropAction() == Qt::MoveAction) {
        QLineEdit::dropEvent(event);
        return;
    }
    setCursorPosition(cursorPositionAt(event->position().toPoint()));
    insertLimited(event->mimeData()->text());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

}  // namespace tessaly
