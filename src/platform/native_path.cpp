#include "platform/native_path.h"

#include <QStringDecoder>
#include <algorithm>

namespace tessaly {

namespace {

bool isByteMark(QChar c) {
    return c.unicode() >= 0xDC80 && c.unicode() <= 0xDCFF;
}

}  // namespace

QByteArray toNativePath(const QString& path) {
    if (std::none_of(path.begin(), path.end(), isByteMark))
        return path.toUtf8();
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= path.size(); ++i) {
        const bool mark =
            i < path.size() && isByteMark(path[i]) && !(i > 0 && path[i - 1].isHighSurrogate());
        if (i < path.size() && !mark)
            continue;
        bytes += QStringView(path).sliced(start, i - start).toUtf8();
        if (mark)
            bytes += char(path[i].unicode() & 0xFF);
        start = i + 1;
    }
    return bytes;
}

QString fromNativePath(const QByteArray& name) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(name);
    if (!decoder.hasError())
        return text;
    QString marked;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        marked += QChar(char16_t(byte < 0x80 ? byte : 0xDC00 + byte));
    }
    return marked;
}

}  // namespace tessaly
