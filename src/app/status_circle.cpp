#include "app/status_circle.h"

#include <QPainter>
#include <QPainterPath>

namespace tessaly {

namespace {

QString spokenName(Verdict verdict) {
    switch (verdict) {
        case Verdict::Green:
            return QStringLiteral("passed");
        case Verdict::Red:
            return QStringLiteral("blocking problem");
        case Verdict::Yellow:
            return QStringLiteral("warning");
        case Verdict::Grey:
            break;
    }
    return QStringLiteral("not applicable yet");
}

// The sign of a verdict in a square of 16 x 16 units.
QPainterPath sign(Verdict verdict) {
    QPainterPath path;
    switch (verdict) {
        case Verdict::Green:
            path.moveTo(4.5, 8.5);
            path.lineTo(7.0, 11.0);
            path.lineTo(11.5, 5.5);
            break;
        case Verdict::Red:
            path.moveTo(5.2, 5.2);
            path.lineTo(10.8, 10.8);
            path.moveTo(10.8, 5.2);
            path.lineTo(5.2, 10.8);
            break;
        case Verdict::Yellow:
            path.moveTo(8, 4);
            path.lineTo(8, 8.8);
            path.moveTo(8, 11.8);
            path.lineTo(8, 11.9);
            break;
        case Verdict::Grey:
            path.moveTo(5, 8);
            path.lineTo(11, 8);
            break;
    }
    return path;
}

}  // namespace

StatusCircle::StatusCircle(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setVerdict(Verdict::Grey);
}

void StatusCircle::setVerdict(Verdict verdict) {
    verdict_ = verdict;
    setAccessibleName(spokenName(verdict));
    setToolTip(spokenName(verdict));
    update();
}

QColor StatusCircle::colour(Verdict verdict) {
    switch (verdict) {
        case Verdict::Green:
            return {0x00, 0xFF, 0x00};
        case Verdict::Red:
            return {0xFF, 0x00, 0x00};
        case Verdict::Yellow:
            return {0xFF, 0xFF, 0x00};
        case Verdict::Grey:
            break;
    }
    return {0xC0, 0xC0, 0xC0};
}

QSize StatusCircle::sizeHint() const {
    const int side = fontMetrics().height() + 4;
    return {side, side};
}

void StatusCircle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    painter.translate((width() - side) / 2, (height() - side) / 2);
    painter.scale(side / 16, side / 16);
    const QColor fill = colour(verdict_);
    painter.setPen(QPen(fill.darker(160), 0.8));
    painter.setBrush(fill);
    painter.drawEllipse(QRectF(1, 1, 14, 14));
    const QColor ink = verdict_ == Verdict::Red ? Qt::white : Qt::black;
    painter.setPen(QPen(ink, 1.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(sign(verdict_));
}

}  // namespace tessaly
