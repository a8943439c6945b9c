#include "app/elided_label.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace tessaly {

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 12, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
    if (const QString tip = shown == text() ? QString() : text(); toolTip() != tip)
        setToolTip(tip);
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), option.palette,
                          isEnabled(), shown, foregroundRole());
}

}  // namespace tessaly
