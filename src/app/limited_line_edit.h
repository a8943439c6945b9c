#pragma once

#include <QLineEdit>

namespace tessaly {

/// An entry field for a text of at most `limit` characters. What is typed, pasted or dropped beyond
/// them is refused; a longer text that the program sets is kept and shown.
///
/// A typed character is refused by the length alone, also when it would replace a selection.
class LimitedLineEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(int limit READ limit WRITE setLimit)

 public:
    using QLineEdit::QLineEdit;

    int limit() const { return limit_; }
    void setLimit(int limit) { limit_ = limit; }

 signals:
    /// Something was refused: the place for a beep.
    void refused();
    /// A character key or Backspace was pressed, accepted or not.
    void keyTyped();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    void insertLimited(const QString& input);
    void pasteLimited();

    int limit_ = 16;
};

}  // namespace tessaly
