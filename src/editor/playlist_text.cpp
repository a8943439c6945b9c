#include "editor/playlist_text.h"

#include <QStringDecoder>

#include "model/text_codec.h"

namespace tessaly {

namespace {

struct Mark {
    QByteArrayView bytes;
    QStringDecoder::Encoding encoding;
};

constexpr Mark Marks[] = {{"\xEF\xBB\xBF", QStringDecoder::Utf8},
                          {"\xFF\xFE", QStringDecoder::Utf16LE},
                          {"\xFE\xFF", QStringDecoder::Utf16BE}};

}  // namespace

QString decodePlaylist(QByteArrayView bytes) {
    // What looks like a second mark is text.
    constexpr auto Flags =
        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom;
    for (const Mark& mark : Marks)
        if (bytes.startsWith(mark.bytes))
            return QStringDecoder(mark.encoding, Flags)(bytes.sliced(mark.bytes.size()));
    QStringDecoder utf8(QStringDecoder::Utf8, Flags);
    const QString text = utf8(bytes);
    return utf8.hasError() ? fromCodePage(bytes) : text;
}

QList<QStringView> linesOf(QStringView text, qsizetype most) {
    QList<QStringView> lines;
    while (!text.isEmpty() && lines.size() < most) {
        qsizetype end = 0;
        while (end < text.size() && text[end] != u'\r' && text[end] != u'\n')
            ++end;
        lines.append(text.first(end));
        const bool isPair = text.sliced(end).startsWith(u"\r\n");
        text = text.sliced(std::min(text.size(), end + (isPair ? 2 : 1)));
    }
    return lines;
}

}  // namespace tessaly
