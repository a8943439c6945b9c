// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/intel_hex.h"

#include <QString>
#include <numeric>

#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr char Digits[] = "0123456789ABCDEF";
constexpr int RecordBytes = 16;
constexpr quint8 DataRecord = 0;
constexpr quint8 EndRecord = 1;
constexpr char EndLine[] = ":00000001FF\r\n";

QByteArray plainHex(quint32 value) {
    return QByteArray::number(value, 16).toUpper();
}

QByteArray paddedHex(quint32 value, int width) {
    const QByteArray digits = plainHex(value);
    return digits.size() > width ? QByteArray() : digits.rightJustified(width, '0');
}

char* putByte(char* out, unsigned char byte) {
    *out++ = Digits[byte >> 4];
    *out++ = Digits[byte & 0xF];
    return out;
}

std::optional<QByteArray> bytesOfDigits(QByteArrayView digits) {
    const auto valueOf = [](char c) {
        return c >= '0' && c <= '9'   ? c - '0'
               : c >= 'A' && c <= 'F' ? c - 'A' + 10
               : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                      : -1;
    };
    QByteArray bytes;
    bytes.reserve(digits.size() / 2);
    for (qsizetype i = 0; i + 1 < digits.size(); i += 2) {
        const int high = valueOf(digits[i]), low = valueOf(digits[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.append(char(high * 16 + low));
    }
    return digits.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

// Cuts the first line off `text`. One by one: a list of the lines of a file that has nothing else
// would take many times its size.
QByteArrayView takeLine(QByteArrayView& text) {
    const qsizetype end = text.indexOf('\n');
    QByteArrayView line = end < 0 ? text : text.first(end);
    text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

[[noreturn]] void fail(qsizetype line, const QString& problem) {
    throw TessalyError(error_number::BadHexFile,
                       u"Line %1 of the HEX file: %2"_s.arg(line).arg(problem));
}

void readHeader(QByteArrayView line, HexFile& file) {
    // Four digits and three: a zero between them makes whole bytes of both.
    const auto digits =
        line.startsWith('S') && line.size() == 8
            ? bytesOfDigits(line.sliced(1, 4).toByteArray() + '0' + line.sliced(5).toByteArray())
            : std::nullopt;
    if (!digits)
        fail(1, u"this is no header line (\"S\", four digits, three digits)"_s);
    const auto byte = [&](int i) { return quint32(quint8(digits->at(i))); };
    file.identifier = quint16(byte(0) << 8 | byte(1));
    file.recordCount = byte(2) << 8 | byte(3);
}

}  // namespace

QByteArray Hex2(quint32 value) {
    return value > 15 ? plainHex(value) : '0' + plainHex(value);
}

QByteArray Hex3(quint32 value) {
    return paddedHex(value, 3);
}

QByteArray Hex4(quint32 value) {
    return paddedHex(value, 4);
}

quint32 headerRecordCount(qsizetype bytes) {
    const qsizetype whole = bytes / RecordBytes, rest = bytes % RecordBytes;
    const bool up = rest > RecordBytes / 2 || (rest == RecordBytes / 2 && whole % 2 == 1);
    return quint32(whole + (up ? 1 : 0));
}

QByteArray EncodeImageAsHex(QByteArrayView image) {
    Q_ASSERT(image.size() <= 0x10000);  // addresses have 16 bits
    const auto byteAt = [&](qsizetype i) {
        return i < image.size() ? quint8(image[i]) : quint8(0);
    };
    QByteArray text =
        'S' + Hex2(byteAt(0)) + Hex2(byteAt(1)) + Hex3(headerRecordCount(image.size())) + "\r\n";
    text.reserve(text.size() + (image.size() / RecordBytes + 2) * (13 + 2 * RecordBytes));

    for (qsizetype address = 0;; address += RecordBytes) {
        const qsizetype count = std::min<qsizetype>(RecordBytes, image.size() - address);
        char data[2 * RecordBytes + 4];
        char* out = data;
        unsigned sum = unsigned(count) + (unsigned(address) >> 8) + (unsigned(address) & 0xFF);
        for (const char c : image.sliced(address, count)) {
            out = putByte(out, static_cast<unsigned char>(c));
            sum += static_cast<unsigned char>(c);
        }
        out = putByte(out, static_cast<unsigned char>((256 - (sum & 0xFF)) & 0xFF));
        *out++ = '\r';
        *out++ = '\n';
        text.append(':').append(Hex2(quint32(count))).append(Hex4(quint32(address))).append("00");
        text.append(data, out - data);
        if (count < RecordBytes)
            break;
    }
    return text + EndLine;
}

std::optional<HexRecord> parseHexRecord(QByteArrayView line) {
    constexpr qsizetype Frame = 5;  // count, two address bytes, type, checksum
    if (!line.startsWith(':'))
        return std::nullopt;
    const auto bytes = bytesOfDigits(line.sliced(1));
    if (!bytes || bytes->size() < Frame || bytes->size() != Frame + quint8(bytes->at(0)))
        return std::nullopt;
    if (std::accumulate(bytes->begin(), bytes->end(), quint8(0),
                        [](quint8 sum, char c) { return quint8(sum + quint8(c)); }) != 0)
        return std::nullopt;
    return HexRecord{.address = quint16(quint8(bytes->at(1)) << 8 | quint8(bytes->at(2))),
                     .type = quint8(bytes->at(3)),
                     .data = bytes->sliced(4, bytes->size() - Frame)};
}

HexFile decodeHexFile(QByteArrayView text) {
    HexFile file;
    readHeader(takeLine(text), file);
    bool wasLast = false;
    for (qsizetype i = 1;; ++i) {
        if (text.isEmpty())
            fail(i + 1, u"the end record is missing"_s);
        const auto record = parseHexRecord(takeLine(text));
        if (!record)
            fail(i + 1, u"this is no HEX record, or its checksum is wrong"_s);
        if (record->type == EndRecord) {
            if (record->address != 0 || !record->data.isEmpty())
                fail(i + 1, u"this is no proper end record"_s);
            if (!wasLast)
                fail(i + 1, u"the last data record is missing"_s);
            if (!text.isEmpty())
                fail(i + 2, u"something follows the end record"_s);
            break;
        }
        if (record->type != DataRecord)
            fail(i + 1, u"records of type %1 do not belong here"_s.arg(record->type));
        if (wasLast)
            fail(i + 1, u"a record follows one that is not full"_s);
        if (record->address != quint16(file.image.size()) || file.image.size() > 0xFFFF)
            fail(i + 1, u"the address is %1 instead of %2"_s.arg(
                            QString::fromLatin1(Hex4(record->address)),
                            QString::fromLatin1(Hex4(quint32(file.image.size())))));
        if (record->data.size() > RecordBytes)
            fail(i + 1, u"the record holds more than 16 bytes"_s);
        file.image += record->data;
        wasLast = record->data.size() < RecordBytes;
    }
    if (file.recordCount != headerRecordCount(file.image.size()))
        fail(1, u"the header counts %1 records instead of %2"_s.arg(file.recordCount)
                    .arg(headerRecordCount(file.image.size())));
    const bool sameIdentifier = file.image.size() >= 2 &&
                                quint8(file.image[0]) == file.identifier >> 8 &&
                                quint8(file.image[1]) == (file.identifier & 0xFF);
    if (!sameIdentifier)
        fail(1, u"the header's identifier is not that of the image"_s);
    return file;
}

QString hexDamage(QByteArrayView text) {
    int number = 0;
    bool hasEnded = false;
    while (!text.isEmpty()) {
        const QByteArrayView line = takeLine(text);
        ++number;
        if (!line.startsWith(':'))
            continue;
        const auto record = parseHexRecord(line.trimmed());
        if (!record)
            return u"line %1 is damaged"_s.arg(number);
        hasEnded = hasEnded || record->type == EndRecord;
    }
    return hasEnded ? QString() : u"its end is missing"_s;
}

bool holdsHexData(QByteArrayView text) {
    while (!text.isEmpty()) {
        const auto record = parseHexRecord(takeLine(text).trimmed());
        if (record && record->type == DataRecord && !record->data.isEmpty())
            return true;
    }
    return false;
}

}  // namespace tessaly
