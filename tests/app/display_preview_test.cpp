// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/display_preview.h"

#include <gtest/gtest.h>

#include <QImage>
#include <map>

#include "model/text_codec.h"
#include "support/scratch_folder.h"

namespace tessaly {

namespace {

QImage pictureOf(QWidget& widget, double scale = 1) {
    const QSize size(int(widget.width() * scale), int(widget.height() * scale));
    QImage image(size, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    widget.render(&image);
    return image;
}

// The picture of a preview that shows `text` in its first line, at its usual size.
QImage pictureOf(const QString& text, double scale = 1) {
    DisplayPreview preview;
    preview.resize(preview.sizeHint());
    preview.setLine(0, text);
    return pictureOf(preview, scale);
}

// A cell as its dots read off the picture: # where one has the colour `lit`. Every dot must have
// one colour all over, with another around it.
QString cellOf(const QImage& image, int line, int cell, QRgb lit, int lines = 2) {
    const DisplayLayout layout = displayLayout(image.size(), lines);
    QString dots;
    for (int row = 0; row < GlyphRows; ++row) {
        for (int column = 0; column < GlyphColumns; ++column) {
            const QRect dot = layout.dotRect(line, cell, row, column);
            EXPECT_TRUE(image.rect().contains(dot));
            const QRgb colour = image.pixel(dot.topLeft());
            for (int y = dot.top(); y <= dot.bottom(); ++y)
                for (int x = dot.left(); x <= dot.right(); ++x)
                    EXPECT_EQ(image.pixel(x, y), colour) << x << ' ' << y;
            EXPECT_NE(image.pixel(dot.right() + 1, dot.top()), colour);
            EXPECT_NE(image.pixel(dot.left(), dot.bottom() + 1), colour);
            dots.append(colour == lit ? '#' : '.');
        }
        dots.append(row + 1 < GlyphRows ? " " : "");
    }
    return dots;
}

// The colour of lit dots: the middle of an H is lit.
QRgb litColour() {
    const QImage image = pictureOf(QString("H"));
    return image.pixel(displayLayout(image.size(), 2).dotRect(0, 0, 3, 2).center());
}

constexpr auto H = "#...# #...# #...# ##### #...# #...# #...#";
constexpr auto Blank = "..... ..... ..... ..... ..... ..... .....";

}  // namespace

// At 150 % a widget may begin in the middle of a pixel of the screen.
TEST(DisplayPreview, DrawsLettersWhereverItStands) {
    const QRgb lit = litColour();
    QWidget window;
    DisplayPreview preview(&window);
    preview.setLine(0, "LH");
    preview.setLine(1, QString(15, ' ') + QString::fromUtf8("ü!"));  // the ! is the 17th
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (const QSize size : {preview.sizeHint(), preview.minimumSizeHint(), QSize(700, 300)}) {
            for (const QPoint at : {QPoint(0, 0), QPoint(1, 1), QPoint(2, 3), QPoint(7, 5)}) {
                preview.setGeometry(QRect(at, size));
                window.resize(size + QSize(10, 10));
                const QImage image =
                    pictureOf(window, scale)
                        .copy(QRect(qRound(at.x() * scale), qRound(at.y() * scale),
                                    int(size.width() * scale), int(size.height() * scale)));
                EXPECT_EQ(cellOf(image, 0, 0, lit), "#.... #.... #.... #.... #.... #.... #####");
                EXPECT_EQ(cellOf(image, 0, 1, lit), H);
                EXPECT_EQ(cellOf(image, 0, 2, lit), Blank);
                EXPECT_EQ(cellOf(image, 1, 0, lit), Blank);
                EXPECT_EQ(cellOf(image, 1, 15, lit), ".#.#. ..... #...# #...# #...# #..## .##.#");
            }
        }
    }
    preview.setLineCount(1);
    EXPECT_EQ(cellOf(pictureOf(preview), 0, 1, lit, 1), H);
}

TEST(DisplayPreview, MarksWhatTheDisplayLacks) {
    const QRgb lit = litColour();
    const QString question = QString::fromLatin1(".###. #...# ....# ...#. ..#.. ..... ..#..");
    const QImage image = pictureOf(QString::fromUtf8("?Ł🎵H"));
    EXPECT_EQ(cellOf(image, 0, 0, lit), question);  // one that was typed
    const DisplayLayout layout = displayLayout(image.size(), 2);
    for (const int cell : {1, 2}) {
        const QRgb marked = image.pixel(layout.dotRect(0, cell, 0, 2).center());
        EXPECT_NE(marked, lit);
        EXPECT_EQ(cellOf(image, 0, cell, marked), question);
        EXPECT_GT(qRed(image.pixel(layout.cellRect(0, cell).topLeft())), 150);
    }
    EXPECT_EQ(cellOf(image, 0, 3, lit), H);
    EXPECT_LT(qRed(image.pixel(layout.cellRect(0, 0).topLeft())), 60);
}

TEST(DotFont, TellsAllCharactersApart) {
    std::map<DotGlyph, int> seen;
    QByteArray frames;
    for (int byte = 0; byte < 256; ++byte) {
        const DotGlyph& glyph = dotGlyph(quint8(byte));
        EXPECT_EQ(glyph == DotGlyph{}, byte == ' ') << byte;
        if (glyph == dotGlyph(0))
            frames.append(char(byte));
        else
            EXPECT_TRUE(seen.emplace(glyph, byte).second) << byte << " is " << seen[glyph];
    }
    // Control characters and the five bytes without a character
    EXPECT_EQ(frames.size(), 32 + 1 + 5);
    for (const char byte : frames)
        EXPECT_TRUE(fromCodePage({&byte, 1}).front().category() == QChar::Other_Control);
}

}  // namespace tessaly
