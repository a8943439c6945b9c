// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QStringList>
#include <QWidget>
#include <QtGlobal>
#include <array>

namespace tessaly {

constexpr int GlyphRows = 7;
constexpr int GlyphColumns = 5;

/// The dots of one character, row by row from the top; bit 4 of a row is its left dot.
using DotGlyph = std::array<quint8, GlyphRows>;

/// Whether a dot of a glyph is lit.
constexpr bool isLit(const DotGlyph& glyph, int row, int column) {
    return (glyph[size_t(row)] >> (GlyphColumns - 1 - column) & 1) != 0;
}

/// The glyph of a byte of the display's code page (Windows-1252). Control characters and bytes
/// without a character are a frame; only the blank has no lit dot.
const DotGlyph& dotGlyph(quint8 byte);

/// Where the dots of a display stand, in pixels of the screen. All dots have the same whole number
/// of pixels, so that they are crisp at any scaling.
struct DisplayLayout {
    int pitch = 0;  ///< from a dot to the next, at least 1
    int dot = 0;    ///< side of a dot
    QRect panel;    ///< everything inside the frame

    QRect dotRect(int line, int cell, int row, int column) const;

    /// A cell with half the gaps around it.
    QRect cellRect(int line, int cell) const;
};

/// The largest layout of `lines` lines that fits into `size`, in its middle.
DisplayLayout displayLayout(QSize size, int lines);

/// The player's display as the player would show it: lines of 16 cells of 5 x 7 dots. Texts are cut
/// at 16 characters; one that the display's code page lacks is a "?" in a red cell. It looks the
/// same under every theme. The accessible description says what is shown, the tool tip which
/// characters the display lacks.
class DisplayPreview : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int lineCount READ lineCount WRITE setLineCount)

 public:
    /// Two lines, as the player has them.
    explicit DisplayPreview(QWidget* parent = nullptr);

    /// One line or more; a line more than there were is empty.
    void setLineCount(int count);
    int lineCount() const { return int(lines_.size()); }

    /// Shows `text` in a line, counted from 0.
    void setLine(int line, const QString& text);
    QString line(int line) const { return lines_.at(line); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void describe();

    QStringList lines_;
};

}  // namespace tessaly
