#pragma once

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

}  // namespace tessaly
