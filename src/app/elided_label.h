#pragma once

#include <QLabel>

namespace tessaly {

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

}  // namespace tessaly
