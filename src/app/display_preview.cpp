// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/display_preview.h"

#include <QPainter>
#include <algorithm>

#include "model/display_text.h"
#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Lengths in dots
constexpr int CellWidth = GlyphColumns + 1;
constexpr int LineHeight = GlyphRows + 2;
constexpr int Padding = 3;
constexpr int Frame = 1;

constexpr int MinimumPitch = 3;  // pixels of a screen at 100 %
constexpr int UsualPitch = 4;

constexpr QRgb FrameColour = 0xFF1B1F1D;
constexpr QRgb PanelColour = 0xFF0C2A20;
constexpr QRgb UnlitColour = 0xFF15382B;
constexpr QRgb LitColour = 0xFFB9FFB0;
constexpr QRgb LackingPanelColour = 0xFFC62828;
constexpr QRgb LackingUnlitColour = 0xFFB32020;
constexpr QRgb LackingLitColour = 0xFFFFFFFF;

QSize dotsOf(int lines) {
    const int around = 2 * (Padding + Frame);
    return {limits::DisplayText * CellWidth - 1 + around,
            lines * LineHeight - (LineHeight - GlyphRows) + around};
}

void drawCell(QPainter& painter, const DisplayLayout& layout, int line, int cell,
              const DisplayCell& content) {
    if (content.isLacking)
        painter.fillRect(layout.cellRect(line, cell), QColor(LackingPanelColour));
    const DotGlyph& glyph = dotGlyph(content.byte);
    for (int row = 0; row < GlyphRows; ++row)
        for (int column = 0; column < GlyphColumns; ++column) {
            const QRgb colour = isLit(glyph, row, column)
                                    ? (content.isLacking ? LackingLitColour : LitColour)
                                    : (content.isLacking ? LackingUnlitColour : UnlitColour);
            painter.fillRect(layout.dotRect(line, cell, row, column), QColor(colour));
        }
}

}  // namespace

QRect DisplayLayout::dotRect(int line, int cell, int row, int column) const {
    Q_ASSERT(row >= 0 && row < GlyphRows && column >= 0 && column < GlyphColumns);
    const int x = Padding + cell * CellWidth + column;
    const int y = Padding + line * LineHeight + row;
    return {panel.x() + x * pitch, panel.y() + y * pitch, dot, dot};
}

QRect DisplayLayout::cellRect(int line, int cell) const {
    const QRect corner = dotRect(line, cell, 0, 0);
    const int around = pitch / 2;
    return {corner.x() - around, corner.y() - around, CellWidth * pitch,
            (GlyphRows - 1) * pitch + dot + 2 * around};
}

DisplayLayout displayLayout(QSize size, int lines) {
    const QSize dots = dotsOf(lines);
    DisplayLayout layout;
    layout.pitch =
        std::max(1, std::min(size.width() / dots.width(), size.height() / dots.height()));
    layout.dot = layout.pitch - (layout.pitch > 1 ? std::max(1, layout.pitch / 6) : 0);
    const QSize panel = (dots - QSize(2 * Frame, 2 * Frame)) * layout.pitch;
    layout.panel = QRect(
        QPoint((size.width() - panel.width()) / 2, (size.height() - panel.height()) / 2), panel);
    return layout;
}

DisplayPreview::DisplayPreview(QWidget* parent) : QWidget(parent), lines_(2) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    setAccessibleName(u"Player's display"_s);
    describe();
}

void DisplayPreview::setLineCount(int count) {
    Q_ASSERT(count > 0);
    lines_.resize(count);
    describe();
    updateGeometry();
}

void DisplayPreview::setLine(int line, const QString& text) {
    if (lines_.at(line) == text)
        return;
    lines_[line] = text;
    describe();
}

QSize DisplayPreview::sizeHint() const {
    return dotsOf(lineCount()) * UsualPitch;
}

QSize DisplayPreview::minimumSizeHint() const {
    return dotsOf(lineCount()) * MinimumPitch;
}

void DisplayPreview::describe() {
    QStringList shown, lacking;
    for (const QString& text : lines_) {
        const QString line = fromCodePage(toCodePage(text).left(limits::DisplayText));
        shown.append(line.trimmed().isEmpty() ? u"empty"_s : u'"' + line + u'"');
        lacking += charactersDisplayLacks(text);
    }
    lacking.removeDuplicates();
    QString description;
    if (shown.size() == 1)
        description = u"Shows "_s + shown.first() + u'.';
    else
        for (qsizetype i = 0; i < shown.size(); ++i)
            description += u"%1Line %2: %3."_s.arg(i ? u" "_s : u""_s).arg(i + 1).arg(shown[i]);
    const QString warning = lacking.isEmpty() ? QString()
                                              : u"The display has no "_s + lacking.join(u' ') +
                                                    u" and shows ? instead."_s;
    setAccessibleDescription((description + u' ' + warning).trimmed());
    setToolTip(warning);
    update();
}

void DisplayPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(FrameColour));
    // From here on in pixels of the screen; at 150 % a pixel of the widget is one and a half.
    const double scale = painter.deviceTransform().m11();
    painter.scale(1 / scale, 1 / scale);
    const DisplayLayout layout =
        displayLayout(QSize(int(width() * scale), int(height() * scale)), lineCount());
    painter.fillRect(layout.panel, QColor(PanelColour));
    for (int line = 0; line < lineCount(); ++line) {
        QList<DisplayCell> cells = displayCells(lines_[line]);
        cells.resize(limits::DisplayText);
        for (int cell = 0; cell < cells.size(); ++cell)
            drawCell(painter, layout, line, cell, cells[cell]);
    }
}

}  // namespace tessaly
