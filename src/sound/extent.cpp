// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/extent.h"

#include <mpegfile.h>
#include <xingheader.h>

#include <algorithm>

namespace tessaly {

namespace {

int syncsafe(const QByteArray& bytes, qsizetype at) {  // 7 bits a byte
    int number = 0;
    for (qsizetype i = 0; i < 4; ++i)
        number = number << 7 | (quint8(bytes[at + i]) & 0x7F);
    return number;
}

qint64 littleEndian(const QByteArray& bytes, qsizetype at) {
    qint64 number = 0;
    for (qsizetype i = 3; i >= 0; --i)
        number = number << 8 | quint8(bytes[at + i]);
    return number;
}

// Behind the counts of Xing and Info stands the encoder's name, and behind that what it put before
// the sound, in 12 bits.
int delayIn(const QByteArray& frame) {
    constexpr qsizetype ToDelay = 141;
    constexpr int OfDecoder = 529;
    const qsizetype start = std::max(frame.indexOf("Xing"), frame.indexOf("Info"));
    if (start < 0 || start + ToDelay + 2 > frame.size())
        return 0;
    const int delay = quint8(frame[start + ToDelay]) << 4 | quint8(frame[start + ToDelay + 1]) >> 4;
    return delay > 0 ? delay + OfDecoder : 0;
}

}  // namespace

// ID3v2 stands in front, sometimes twice; at the end ID3v1, and before it APE.
Extent extentOf(SeekableFile& file) {
    constexpr int MostTags = 8, Id3v2Bytes = 10, Id3v1Bytes = 128, ApeBytes = 32;
    constexpr quint8 HasFooter = 0x10;
    Extent extent{0, std::max<qint64>(file.size(), 0)};
    for (int i = 0; i < MostTags; ++i) {
        const QByteArray head = file.read(extent.from, Id3v2Bytes);
        if (head.size() < Id3v2Bytes || !head.startsWith("ID3"))
            break;
        const bool hasFooter = quint8(head[5]) & HasFooter;
        extent.from += Id3v2Bytes + syncsafe(head, 6) + (hasFooter ? Id3v2Bytes : 0);
    }
    extent.from = std::min(extent.from, extent.end);
    if (file.read(extent.end - Id3v1Bytes, 3) == "TAG")
        extent.end -= Id3v1Bytes;
    const QByteArray ape = file.read(extent.end - ApeBytes, ApeBytes);
    if (ape.startsWith("APETAGEX")) {
        const bool hasHeader = quint8(ape[23]) & 0x80;
        extent.end -= littleEndian(ape, 12) + (hasHeader ? ApeBytes : 0);
    }
    extent.end = std::max(extent.end, extent.from);
    return extent;
}

EncoderHeader encoderHeaderIn(const QByteArray& frame) {
    const TagLib::MPEG::XingHeader header(
        TagLib::ByteVector(frame.constData(), unsigned(frame.size())));
    if (!header.isValid())
        return {};
    return {true, qint64(header.totalFrames()), qint64(header.totalSize()), delayIn(frame)};
}

}  // namespace tessaly
