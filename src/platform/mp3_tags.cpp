#include "platform/mp3_tags.h"

#include <id3v1tag.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <tfilestream.h>

#include <algorithm>
#include <memory>

#include "platform/native_path.h"

#ifdef Q_OS_WIN
#include <QFileInfo>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tessaly {

namespace {

TagBlock blockOf(const TagLib::Tag* tag) {
    if (!tag)
        return {};
    // TagLib's characters are UTF-16 units, whatever wchar_t is.
    const auto text = [](const TagLib::String& s) {
        QString units(qsizetype(s.size()), Qt::Uninitialized);
        std::transform(s.begin(), s.end(), units.begin(),
                       [](wchar_t unit) { return QChar(char16_t(unit)); });
        return units.trimmed();
    };
    return {
        .title = text(tag->title()), .artist = text(tag->artist()), .album = text(tag->album())};
}

// A regular file open for reading; nothing when there is none.
std::unique_ptr<TagLib::FileStream> openStream(const QString& path) {
#ifdef Q_OS_WIN
    if (!QFileInfo(path).isFile())
        return nullptr;
    return std::make_unique<TagLib::FileStream>(reinterpret_cast<const wchar_t*>(path.utf16()),
                                                true);
#else
    // Without waiting: a pipe would have the whole import wait for its other end.
    const int fd = ::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (fd < 0)
        return nullptr;
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return nullptr;
    }
    return std::make_unique<TagLib::FileStream>(fd, true);
#endif
}

}  // namespace

TagBlocks LocalMp3Tags::read(const QString& path) const {
    const auto stream = openStream(path);
    if (!stream || !stream->isOpen())
        return {};
    TagLib::MPEG::File file(stream.get(), TagLib::ID3v2::FrameFactory::instance(),
                            /*readProperties=*/false);
    if (!file.isValid())
        return {};
    return {.first = blockOf(file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr),
            .second = blockOf(file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr)};
}

}  // namespace tessaly
