#include "platform/mp3_tags.h"

#include <id3v1tag.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <tfilestream.h>

#include <algorithm>
#include <memory>

#include "platform/native_path.h"

#ifdef Q_OS_WIN
#include <QFileInfo>

#include "platform/windows_calls.h"
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
    return std::make_unique<TagLib::FileStream>(systemPath(path).c_str(), true);
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

// What TagLib gets to see of a file: its two ends, where tags stand. A damaged size, or a file that
// is no MP3 at all, would otherwise have it read and keep gigabytes.
class FileEnds : public TagLib::IOStream {
 public:
    explicit FileEnds(TagLib::FileStream& file) : file_(file) {}

    TagLib::FileName name() const override { return file_.name(); }
    bool readOnly() const override { return true; }
    bool isOpen() const override { return file_.isOpen(); }
    void seek(long offset, Position from) override { file_.seek(offset, from); }
    void clear() override { file_.clear(); }
    long tell() const override { return file_.tell(); }
    long length() override { return file_.length(); }
    TagLib::ByteVector readBlock(unsigned long count) override {
        const long at = tell(), end = length();
        const long readable = at < FirstBytes         ? std::min(FirstBytes, end) - at
                              : at >= end - LastBytes ? end - at
                                                      : 0;
        return readable > 0 ? file_.readBlock(std::min(count, static_cast<unsigned long>(readable)))
                            : TagLib::ByteVector();
    }
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    void truncate(long) override {}

 private:
    static constexpr long FirstBytes = 16 * 1024 * 1024;  // room for a large picture
    static constexpr long LastBytes = 64 * 1024;

    TagLib::FileStream& file_;
};

// Lets others than TagLib's own classes name the type.
struct AnyFrame : TagLib::ID3v2::Frame {
    using Frame::Header;
};

// Frames for one file. Those that would unpack to a multiple of the file stay packed, and behind
// more of them than any tag has nothing is looked for.
class FewFrames : public TagLib::ID3v2::FrameFactory {
 protected:
    bool updateFrame(AnyFrame::Header* header) const override {
        if (++frames_ > MostFrames) {
            header->setFrameSize(0x0FFFFFFF);  // none follows
            return false;
        }
        if (header->compression() && (packed_ += header->frameSize()) > MostPackedBytes) {
            const TagLib::ByteVector id = header->frameID();
            const unsigned size = header->frameSize(), version = header->version();
            header->setData(id + TagLib::ByteVector(6, '\0'), version);  // no flag of compression
            header->setFrameSize(size);
            return false;
        }
        return FrameFactory::updateFrame(header);
    }

 private:
    static constexpr int MostFrames = 20'000;
    static constexpr unsigned MostPackedBytes = 64 * 1024;
    mutable int frames_ = 0;
    mutable unsigned packed_ = 0;
};

}  // namespace

TagBlocks LocalMp3Tags::read(const QString& path) const {
    const auto stream = openStream(path);
    if (!stream || !stream->isOpen())
        return {};
    FileEnds ends(*stream);
    FewFrames frames;
    TagLib::MPEG::File file(&ends, &frames, /*readProperties=*/false);
    if (!file.isValid())
        return {};
    return {.first = blockOf(file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr),
            .second = blockOf(file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr)};
}

}  // namespace tessaly
