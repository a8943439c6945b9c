#pragma once

#include <QLabel>

namespace tessaly {

/// A label that shows as much of its text as there is room for, and all of it in its tool tip.
class ElidedLabel : public QLabel {
    Q_OBJECT

 public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessaly
