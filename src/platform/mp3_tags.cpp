#include "platform/mp3_tags.h"

#include <id3v1tag.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mpegfile.h>

#include <algorithm>
#include <array>
#include <cstring>

#ifdef Q_OS_WIN
#include "platform/windows/files.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/native_path.h"
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

// A regular file, read at any place by one call of the system. It has no bytes when there is none.
class PlainFile {
 public:
#ifdef Q_OS_WIN
    explicit PlainFile(const QString& path) : file_(openExisting(path, GENERIC_READ, 0)) {
        LARGE_INTEGER size{};
        if (file_.isOpen() && ::GetFileType(file_.get()) == FILE_TYPE_DISK &&
            ::GetFileSizeEx(file_.get(), &size))
            size_ = size.QuadPart;
    }

    // How many bytes could be read.
    qint64 readAt(qint64 at, char* bytes, qint64 count) const {
        OVERLAPPED place{};
        place.Offset = DWORD(at);
        place.OffsetHigh = DWORD(quint64(at) >> 32);
        DWORD done = 0;
        return ::ReadFile(file_.get(), bytes, DWORD(count), &done, &place) ? done : 0;
    }
#else
    // Without waiting: a pipe would have the whole import wait for its other end.
    explicit PlainFile(const QString& path)
        : file_(::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat status {};
        if (file_ >= 0 && ::fstat(file_, &status) == 0 && S_ISREG(status.st_mode))
            size_ = status.st_size;
    }
    ~PlainFile() {
        if (file_ >= 0)
            ::close(file_);
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    // How many bytes could be read.
    qint64 readAt(qint64 at, char* bytes, qint64 count) const {
        return std::max<qint64>(::pread(file_, bytes, size_t(count), at), 0);
    }
#endif
    qint64 size() const {
        return size_;
    }

 private:
#ifdef Q_OS_WIN
    Handle file_;
#else
    int file_;
#endif
    qint64 size_ = 0;
};

// The numbers of TagLib's streams changed with its version 2.
#if TAGLIB_MAJOR_VERSION >= 2
using Place = TagLib::offset_t;
using ChangedPlace = TagLib::offset_t;
using Count = size_t;
#else
using Place = long;
using ChangedPlace = unsigned long;
using Count = unsigned long;
#endif

// What TagLib gets to see of a file: its two ends, where tags stand. A damaged size, or a file that
// is no MP3 at all, would otherwise have it read and keep gigabytes. TagLib reads in small pieces;
// the file is read a page at a time.
class HeadAndTailStream : public TagLib::IOStream {
 public:
    explicit HeadAndTailStream(const PlainFile& file) : file_(file) {}

    TagLib::FileName name() const override { return ""; }
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(Place offset, Position from) override {
        at_ = std::max<qint64>(0, offset + (from == Current ? at_ : from == End ? length() : 0));
    }
    Place tell() const override { return Place(at_); }
    Place length() override { return Place(file_.size()); }
    TagLib::ByteVector readBlock(Count count) override {
        const qint64 end = file_.size();
        const qint64 readable = at_ < FirstBytes         ? std::min(FirstBytes, end) - at_
                                : at_ >= end - LastBytes ? end - at_
                                                         : 0;
        if (readable <= 0)
            return {};
        TagLib::ByteVector bytes(unsigned(std::min<quint64>(count, quint64(readable))), '\0');
        bytes.resize(unsigned(read(bytes.data(), bytes.size())));
        return bytes;
    }
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, ChangedPlace, Count) override {}
    void removeBlock(ChangedPlace, Count) override {}
    void truncate(Place) override {}

 private:
    static constexpr qint64 FirstBytes = 16 * 1024 * 1024;  // room for a large picture
    static constexpr qint64 LastBytes = 64 * 1024;
    static constexpr qint64 PageBytes = 4096;

    qint64 read(char* bytes, qint64 count) {
        qint64 done = count < PageBytes ? 0 : file_.readAt(at_, bytes, count);
        at_ += done;
        while (count < PageBytes && done < count) {
            const qint64 inPage = at_ % PageBytes;
            if (at_ - inPage != pageStart_) {
                pageStart_ = at_ - inPage;
                pageFill_ = file_.readAt(pageStart_, page_.data(), PageBytes);
            }
            const qint64 some = std::min(count - done, pageFill_ - inPage);
            if (some <= 0)
                break;
            std::memcpy(bytes + done, page_.data() + inPage, size_t(some));
            at_ += some;
            done += some;
        }
        return done;
    }

    const PlainFile& file_;
    qint64 at_ = 0;
    std::array<char, PageBytes> page_;
    qint64 pageStart_ = -1;
    qint64 pageFill_ = 0;
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
    const PlainFile plain(path);
    if (plain.size() == 0)
        return {};
    HeadAndTailStream ends(plain);
    FewFrames frames;
#if TAGLIB_MAJOR_VERSION >= 2
    TagLib::MPEG::File file(&ends, /*readProperties=*/false, TagLib::AudioProperties::Average,
                            &frames);
#else
    TagLib::MPEG::File file(&ends, &frames, /*readProperties=*/false);
#endif
    if (!file.isValid())
        return {};
    return {.first = blockOf(file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr),
            .second = blockOf(file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr)};
}

}  // namespace tessaly
