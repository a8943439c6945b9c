// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/text_codec.h"

#include <array>

namespace tessaly {

namespace {

// Bytes 0x80 to 0x9F; all others are the character of their own number.
constexpr std::array<char16_t, 32> HighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80 to 87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88 to 8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90 to 97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98 to 9F
};

// The byte of one UTF-16 unit, or -1 where the code page has none.
int byteOf(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF))
        return unit;
    for (size_t i = 0; i < HighControls.size(); ++i)
        if (HighControls[i] == unit)
            return int(0x80 + i);
    return -1;
}

}  // namespace

QByteArray toCodePage(QStringView text) {
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char* out = bytes.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int byte = byteOf(text[i].unicode());
        *out++ = byte < 0 ? '?' : char(byte);
        // A character of two units is still one character.
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

QString fromCodePage(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        *out++ = QChar(byte >= 0x80 && byte <= 0x9F ? HighControls[byte - 0x80] : char16_t(byte));
    }
    return text;
}

bool fitsCodePage(QStringView text) {
    for (const QChar c : text)
        if (byteOf(c.unicode()) < 0)
            return false;
    return true;
}

QByteArray fixedWidthText(QStringView text, int width) {
    return toCodePage(text).leftJustified(width, ' ', /*truncate=*/true);
}

}  // namespace tessaly
