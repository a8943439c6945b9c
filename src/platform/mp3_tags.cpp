#include "platform/mp3_tags.h"

#include <id3v1tag.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <tfilestream.h>

#include <QFileInfo>

#include "platform/native_path.h"

namespace tessaly {

namespace {

TagBlock blockOf(const TagLib::Tag* tag) {
    if (!tag)
        return {};
    const auto text = [](const TagLib::String& s) {
        return QString::fromUtf8(s.toCString(true)).trimmed();
    };
    return {
        .title = text(tag->title()), .artist = text(tag->artist()), .album = text(tag->album())};
}

}  // namespace

TagBlocks LocalMp3Tags::read(const QString& path) const {
    if (!QFileInfo(path).isFile())
        return {};
#ifdef Q_OS_WIN
    TagLib::FileStream stream(reinterpret_cast<const wchar_t*>(path.utf16()), true);
#else
    const QByteArray name = toNativePath(path);
    TagLib::FileStream stream(name.constData(), true);
#endif
    if (!stream.isOpen())
        return {};
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(),
                            /*readProperties=*/false);
    if (!file.isValid())
        return {};
    return {.first = blockOf(file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr),
            .second = blockOf(file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr)};
}

}  // namespace tessaly
