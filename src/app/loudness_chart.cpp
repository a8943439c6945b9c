// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/loudness_chart.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "model/numbers.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int Lines = 9;  // of text, in height

QColor blend(const QColor& one, const QColor& other, double share) {
    const auto mixed = [share](int a, int b) { return int(a + (b - a) * share); };
    return {mixed(one.red(), other.red()), mixed(one.green(), other.green()),
            mixed(one.blue(), other.blue())};
}

}  // namespace

// All from the palette, but for what warns.
struct LoudnessChart::Inks {
    explicit Inks(const QPalette& palette)
        : ground(palette.color(QPalette::Base)),
          text(palette.color(QPalette::Text)),
          quiet(blend(ground, text, 0.65)),
          faint(blend(ground, text, 0.25)),
          bar(blend(ground, text, 0.45)),
          selected(blend(ground, palette.color(QPalette::Highlight), 0.35)),
          warning(ground.lightness() < 128 ? QColor(0xFF, 0x9A, 0x4D) : QColor(0xC8, 0x4B, 0x00)) {}

    QColor ground, text, quiet, faint, bar, selected, warning;
};

LoudnessChart::LoudnessChart(QWidget* parent) : QWidget(parent) {
    setAccessibleName(u"Loudness of the files"_s);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize LoudnessChart::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * Lines};
}

QSize LoudnessChart::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 100, fontMetrics().height() * (Lines + 4)};
}

void LoudnessChart::show(const QList<ChartFile>& files, const Words& words) {
    constexpr double LeastRange = 8, MostRange = 15, Air = 1.1;
    files_ = files;
    words_ = words;
    groups_.clear();
    sizes_.clear();
    double most = LeastRange;
    for (const ChartFile& file : files_) {
        const Group group{file.group, file.limit};
        if (groups_.isEmpty() || groups_.last() != group) {
            groups_.append(group);
            sizes_.append(0);
        }
        ++sizes_.last();
        most = std::max(most, std::abs(file.difference.value_or(0)));
    }
    range_ = std::min(most, MostRange) * Air;
    selected_ = -1;
    update();
}

void LoudnessChart::select(int file) {
    selected_ = file;
    update();
}

// Marks of what is clipped stand above it, names and legend below.
QRect LoudnessChart::plot() const {
    const QFontMetrics metrics = fontMetrics();
    const int side = metrics.horizontalAdvance(u"+00 LU"_s) + metrics.averageCharWidth();
    const int line = metrics.height();
    return rect().adjusted(side, line * 3 / 4, -side, -2 * line - line / 2);
}

BarLayout LoudnessChart::layout() const {
    return {sizes_, plot().width(), fontMetrics().height() * 2};
}

double LoudnessChart::yOf(double difference) const {
    const QRectF area = plot();
    const double up = std::clamp(difference / range_, -1.0, 1.0);
    return area.center().y() - up * area.height() / 2;
}

BarLayout::Span LoudnessChart::filesAt(const QPoint& at) const {
    return layout().filesAt(at.x() - plot().left());
}

// Of several at one place, the one that an operator looks for.
int LoudnessChart::standingOut(BarLayout::Span files) const {
    const auto weight = [this](int index) {
        const ChartFile& file = files_[index];
        return std::abs(file.difference.value_or(0)) +
               1000.0 * (file.isOutside || file.isClipped || file.isUnheard);
    };
    int most = files.from;
    for (int i = files.from; i < files.to; ++i)
        if (weight(i) > weight(most))
            most = i;
    return most;
}

bool LoudnessChart::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const BarLayout::Span files = filesAt(help->pos());
    QString words = files.size() > 0 ? words_(standingOut(files)) : QString();
    if (files.size() > 1)
        words += u"\nand %1 here"_s.arg(counted(files.size() - 1, u"more file"_s));
    QToolTip::showText(help->globalPos(), words, this);
    return true;
}

void LoudnessChart::mousePressEvent(QMouseEvent* event) {
    const BarLayout::Span files = filesAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && files.size() > 0)
        emit chosen(standingOut(files));
}

void LoudnessChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Inks inks(palette());
    painter.fillRect(rect(), inks.ground);
    if (files_.isEmpty() || plot().isEmpty())
        return;
    const BarLayout layout = this->layout();
    const QRect area = plot();
    if (selected_ >= 0) {
        const BarLayout::Span bar = layout.bar(selected_);
        painter.fillRect(
            QRect(area.left() + bar.from - 1, area.top(), bar.size() + 2, area.height()),
            inks.selected);
    }
    paintGroups(painter, layout, inks);
    painter.setRenderHint(QPainter::Antialiasing);
    forEachBar(layout, [&](const QRect& pixels, BarLayout::Span files) {
        paintBar(painter, pixels, files, inks);
    });
    // Over the bars beside them.
    forEachBar(layout, [&](const QRect& pixels, BarLayout::Span files) {
        paintMarks(painter, pixels, files, inks);
    });
    paintLegend(painter, inks);
}

// Every bar once, with the files that share it.
void LoudnessChart::forEachBar(
    const BarLayout& layout,
    const std::function<void(const QRect& pixels, BarLayout::Span files)>& paint) const {
    const QRect area = plot();
    for (int x = 0; x < layout.end();) {
        const BarLayout::Span files = layout.filesAt(x);
        const BarLayout::Span bar = files.size() > 0 ? layout.bar(files.from) : BarLayout::Span();
        if (bar.from == x)
            paint({area.left() + x, area.top(), bar.size(), area.height()}, files);
        x += std::max(1, bar.to - x);
    }
}

// The median and the limits of each group, with its name below.
void LoudnessChart::paintGroups(QPainter& painter, const BarLayout& layout,
                                const Inks& inks) const {
    constexpr int LeastLetters = 6;
    const QRect area = plot();
    const QFontMetrics metrics = painter.fontMetrics();
    const auto number = [&](double limit, int x, Qt::Alignment side) {
        const int width = area.left() - metrics.averageCharWidth();
        const QRect place(x, int(yOf(limit)) - metrics.height() / 2, width, metrics.height());
        const QString sign = limit > 0 ? u"+"_s : QString();
        painter.drawText(place, Qt::AlignVCenter | side, u"%1%2 LU"_s.arg(sign).arg(limit));
    };
    for (int i = 0; i < int(groups_.size()); ++i) {
        const BarLayout::Span span = layout.group(i);
        const double limit = groups_[i].limit;
        const int from = area.left() + span.from, to = area.left() + span.to - 1;
        painter.setPen(QPen(inks.faint, 1, Qt::DashLine));
        for (const double one : {limit, -limit})
            painter.drawLine(from, int(yOf(one)), to, int(yOf(one)));
        painter.setPen(inks.quiet);
        painter.drawLine(from, int(yOf(0)), to, int(yOf(0)));
        const QRect below(from, area.bottom() + metrics.height() / 4, span.size(),
                          metrics.height());
        if (span.size() >= metrics.averageCharWidth() * LeastLetters)
            painter.drawText(below, Qt::AlignLeft | Qt::AlignVCenter,
                             metrics.elidedText(groups_[i].name, Qt::ElideRight, span.size()));
        QList<double> numbers{limit, -limit};
        if (yOf(-limit) - yOf(limit) > 2 * metrics.height())
            numbers.append(0);
        for (const double one : numbers)
            if (i == 0)
                number(one, metrics.averageCharWidth() / 2, Qt::AlignRight);
            else if (i + 1 == int(groups_.size()) && limit != groups_.first().limit)
                number(one, to + metrics.averageCharWidth(), Qt::AlignLeft);
    }
}

// What is beyond its limit looks out behind the others.
void LoudnessChart::paintBar(QPainter& painter, const QRect& pixels, BarLayout::Span files,
                             const Inks& inks) const {
    for (const bool isOutside : {true, false}) {
        double most = 0, least = 0;
        bool isThere = false;
        for (int i = files.from; i < files.to; ++i) {
            if (!files_[i].difference || files_[i].isOutside != isOutside)
                continue;
            isThere = true;
            most = std::max(most, *files_[i].difference);
            least = std::min(least, *files_[i].difference);
        }
        const double top = yOf(most), bottom = yOf(least);
        if (isThere)  // seen, even where it is on the median
            painter.fillRect(QRectF(pixels.left(), top - 0.5, pixels.width(), bottom - top + 1),
                             isOutside ? inks.warning : inks.bar);
    }
}

void LoudnessChart::paintMarks(QPainter& painter, const QRect& pixels, BarLayout::Span files,
                               const Inks& inks) const {
    const auto some = [&](bool ChartFile::*mark) {
        return std::any_of(files_.begin() + files.from, files_.begin() + files.to,
                           [mark](const ChartFile& file) { return file.*mark; });
    };
    const double x = pixels.left() + pixels.width() / 2.0;
    if (some(&ChartFile::isClipped))
        paintMark(painter, {x, pixels.top() - fontMetrics().height() * 0.4}, true, inks);
    if (some(&ChartFile::isUnheard))
        paintMark(painter, {x, yOf(0)}, false, inks);
}

// A triangle for clipped, a cross for unheard.
void LoudnessChart::paintMark(QPainter& painter, const QPointF& at, bool isClipped,
                              const Inks& inks) const {
    const double size = fontMetrics().height() * 0.22;
    QPainterPath path;
    if (isClipped) {
        path.moveTo(at + QPointF(-size, size));
        path.lineTo(at + QPointF(0, -size));
        path.lineTo(at + QPointF(size, size));
        path.closeSubpath();
        painter.fillPath(path, inks.warning);
        return;
    }
    path.moveTo(at + QPointF(-size, -size));
    path.lineTo(at + QPointF(size, size));
    path.moveTo(at + QPointF(size, -size));
    path.lineTo(at + QPointF(-size, size));
    painter.strokePath(path, QPen(inks.warning, std::max(1.5, size / 2)));
}

void LoudnessChart::paintLegend(QPainter& painter, const Inks& inks) const {
    const QFontMetrics metrics = painter.fontMetrics();
    const int line = metrics.height(), sign = line * 3 / 4, gap = metrics.averageCharWidth();
    const double middle = rect().bottom() - line / 2.0 - 1;
    int x = gap;
    const auto say = [&](const QString& words) {
        painter.setPen(inks.quiet);
        const int width = metrics.horizontalAdvance(words);
        painter.drawText(QRect(x + sign + gap / 2, int(middle - line / 2.0), width + 1, line),
                         Qt::AlignVCenter, words);
        x += sign + gap / 2 + width + 2 * gap;
    };
    const auto square = [&](const QColor& ink) {
        painter.fillRect(QRectF(x, middle - sign / 2.0, sign, sign), ink);
    };
    square(inks.bar);
    say(u"within limits"_s);
    square(inks.warning);
    say(u"beyond limits"_s);
    paintMark(painter, {x + sign / 2.0, middle}, true, inks);
    say(u"clipped"_s);
    paintMark(painter, {x + sign / 2.0, middle}, false, inks);
    say(u"nothing to hear"_s);
}

}  // namespace tessaly
