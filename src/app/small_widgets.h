// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractScrollArea>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QWidget>

#include "card/card_checks.h"

class QMimeData;

namespace tessaly {

/// The system's font of fixed pitch in the size of `font`.
QFont fixedFont(const QFont& font);

/// The icon that the desktop has for `name`, else one that is always there.
QIcon themedIcon(const QString& name, QStyle::StandardPixmap otherwise);

/// The files and folders of this machine in what is dragged from another program.
QStringList filesIn(const QMimeData& data);

/// Paints into the middle of an empty list or table, in grey, how to begin.
void paintHint(QAbstractScrollArea& view, const QString& hint);

/// A label that shows as much of its text as there is room for, and all of it in its tool tip. It
/// asks for the same room whatever its text is. A text of several fields, parted by wide gaps,
/// loses its gaps first and then the beginning of each field, so that all their values stay.
class ElidedLabel : public QLabel {
    Q_OBJECT

 public:
    using QLabel::QLabel;

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

    /// What is shown of `text` within `width` pixels.
    static QString shownOf(const QString& text, const QFontMetrics& metrics, int width);

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

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

/// The indicator of a check: a filled circle in the colour of its verdict, with a sign inside for
/// those who cannot tell the colours apart (tick, cross, exclamation mark, dash).
class StatusCircle : public QWidget {
    Q_OBJECT

 public:
    explicit StatusCircle(QWidget* parent = nullptr);

    Verdict verdict() const { return verdict_; }
    void setVerdict(Verdict verdict);

    /// The colour of a verdict's circle.
    static QColor colour(Verdict verdict);

    /// Paints the circle with its sign, or the sign alone, into a square.
    static void paint(QPainter& painter, const QRectF& square, Verdict verdict);
    static void paintSign(QPainter& painter, const QRectF& square, Verdict verdict,
                          const QColor& ink);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    Verdict verdict_ = Verdict::Grey;
};

}  // namespace tessaly
