#include "app/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>
#include <algorithm>

namespace tessaly {

namespace {

const QString NarrowGap(3, ' ');

// Takes the same part of each field's room away, from their beginnings.
QString narrowFields(const QStringList& fields, const QFontMetrics& metrics, int width) {
    const int gaps = int(fields.size() - 1) * metrics.horizontalAdvance(NarrowGap);
    const int texts = metrics.horizontalAdvance(fields.join(QString()));
    QStringList shown;
    for (const QString& field : fields)
        shown.append(metrics.elidedText(
            field, Qt::ElideLeft,
            std::max(0, width - gaps) * metrics.horizontalAdvance(field) / std::max(1, texts)));
    return shown.join(NarrowGap);
}

}  // namespace

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 12, QLabel::minimumSizeHint().height()};
}

QString ElidedLabel::shownOf(const QString& text, const QFontMetrics& metrics, int width) {
    static const QRegularExpression WideGap(QStringLiteral(" {8,}"));
    const QStringList fields = text.split(WideGap);
    if (fields.size() == 1 || metrics.horizontalAdvance(text) <= width)
        return metrics.elidedText(text, Qt::ElideRight, width);
    const QString narrow = fields.join(NarrowGap);
    return metrics.horizontalAdvance(narrow) <= width ? narrow
                                                      : narrowFields(fields, metrics, width);
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const bool isWhole = shownOf(text(), fontMetrics(), width()) == text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       isWhole ? QString() : text().simplified(), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), option.palette,
                          isEnabled(), shownOf(text(), fontMetrics(), width()), foregroundRole());
}

}  // namespace tessaly
