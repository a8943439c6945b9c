#include <algorithm>

#include "image/intel_hex.h"
#include "platform/error.h"
#include "targets.h"

namespace tessaly::fuzz {

namespace {

QList<QByteArray> linesOf(const QByteArray& text) {
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines)
        if (line.endsWith('\r'))
            line.chop(1);
    return lines;
}

QByteArray lineOf(const HexRecord& record) {
    QByteArray line = ':' + Hex2(quint32(record.data.size())) + Hex4(record.address) +
                      Hex2(record.type) + record.data.toHex().toUpper();
    quint8 sum = 0;
    for (const char c : QByteArray::fromHex(line.mid(1)))
        sum = quint8(sum + quint8(c));
    return line + Hex2(quint8(-sum));
}

// Puts counts, addresses and checksums right, which chance would hardly ever.
QByteArray repaired(const QByteArray& text) {
    QByteArray good, image;
    bool isEnded = false;
    for (const QByteArray& line : linesOf(text)) {
        if (!line.startsWith(':'))
            continue;
        const QByteArray data = QByteArray::fromHex(line.mid(9, 32)).left(16);
        good += lineOf({.address = quint16(image.size()), .type = 0, .data = data}) +
                (line.endsWith('0') ? "\r\n" : "\n");
        image += data;
        isEnded = data.size() < 16;
        if (isEnded)
            break;
    }
    if (!isEnded)
        good += lineOf({.address = quint16(image.size()), .type = 0, .data = {}}) + "\n";
    return 'S' + Hex2(quint8(image.isEmpty() ? 0 : image[0])) +
           Hex2(quint8(image.size() < 2 ? 0 : image[1])) + Hex3(headerRecordCount(image.size())) +
           "\n" + good + ":00000001FF";
}

void requireRefusal(const TessalyError& error, qsizetype lines) {
    require(error.number == error_number::BadHexFile, "a bad HEX file is called one");
    const QStringList words = error.description.split(' ');
    require(words.value(0) == "Line", "a bad HEX file says where");
    const int line = words.value(1).toInt();
    require(line >= 1 && line <= lines + 1, "the line is one of the file, or the next");
}

void requireRoundTrip(const HexFile& file) {
    const HexFile again = decodeHexFile(EncodeImageAsHex(file.image));
    require(again.image == file.image && again.identifier == file.identifier &&
                again.recordCount == file.recordCount,
            "a HEX file that was read is written as it was");
}

}  // namespace

void fuzzHex(QByteArrayView input) {
    const QByteArray text = input.toByteArray();
    const QList<QByteArray> lines = linesOf(text);
    bool hasData = false;
    for (const QByteArray& line : lines) {
        const auto record = parseHexRecord(line);
        require(!record || lineOf(*record) == line.toUpper(), "a record is its line");
        const auto trimmed = parseHexRecord(line.trimmed());
        hasData = hasData || (trimmed && trimmed->type == 0 && !trimmed->data.isEmpty());
    }
    require(holdsHexData(text) == hasData, "data is seen where there is a record of it");
    try {
        const HexFile file = decodeHexFile(text);
        requireRoundTrip(file);
        require(file.image.isEmpty() || hasData, "an image comes from records");
    } catch (const TessalyError& error) {
        requireRefusal(error, lines.size());
    }
    // Any image goes into a HEX file and comes out of it.
    if (text.size() >= 2)
        require(decodeHexFile(EncodeImageAsHex(text)).image == text, "HEX holds any image");
    const QByteArray good = repaired(text);
    try {
        requireRoundTrip(decodeHexFile(good));
    } catch (const TessalyError& error) {
        // Fewer than two bytes hold no identifier.
        require(linesOf(good).size() <= 3, error.what());
        requireRefusal(error, linesOf(good).size());
    }
}

}  // namespace tessaly::fuzz
