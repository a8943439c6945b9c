// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/mp3_tags.h"

#include <id3v1tag.h>
#include <id3v2framefactory.h>
#include <id3v2header.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <tbytevectorstream.h>

#include <algorithm>

#include "platform/seekable_file.h"

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

// The two ends of a file, where tags stand, as if there were no sound between them: TagLib reads in
// small pieces, and of a damaged file gigabytes. Empty where no regular file can be read.
TagLib::ByteVector endsOf(const QString& path) {
    constexpr qint64 PageBytes = 4096;
    constexpr qint64 MostHeadBytes = qint64(16) * 1024 * 1024;  // room for a large picture
    constexpr qint64 TailBytes = 128 + 32;  // ID3v1, and before it the end of APE
    SeekableFile file(path);
    const qint64 size = std::max<qint64>(file.size(), 0);
    TagLib::ByteVector ends;
    qint64 place = 0;
    const auto readUpTo = [&](qint64 end) {
        const unsigned before = ends.size();
        ends.resize(before + unsigned(std::max<qint64>(end - place, 0)));
        const qint64 found = file.readInto(ends.data() + before, place, ends.size() - before);
        ends.resize(before + unsigned(found));
        place += found;
    };
    readUpTo(std::min(PageBytes, size));
    // ID3v2 tells its size. It may stand behind something else, but never behind the first sound.
    const bool startsWithSound =  // with the header of a frame of layer III
        ends.size() > 1 && quint8(ends[0]) == 0xFF && (quint8(ends[1]) & 0xE6) == 0xE2;
    if (ends.startsWith(TagLib::ID3v2::Header::fileIdentifier()))
        readUpTo(
            std::min({qint64(TagLib::ID3v2::Header(ends).completeTagSize()), MostHeadBytes, size}));
    else if (!startsWithSound)
        readUpTo(std::min(MostHeadBytes, size));
    place = std::max(place, size - TailBytes);
    readUpTo(size);
    return ends;
}

// Makes a type that TagLib declares as protected known here.
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

// An MP3 file of which only the ends are at hand.
class MpegFile : public TagLib::MPEG::File {
 public:
    MpegFile(TagLib::ByteVectorStream& ends, FewFrames& frames)
#if TAGLIB_MAJOR_VERSION >= 2
        : File(&ends, /*readProperties=*/false, TagLib::AudioProperties::Average, &frames){}
#else
        : File(&ends, &frames, /*readProperties=*/false) {
    }
#endif
};

}  // namespace

TagBlock TagBlocks::merged() const {
    return {.title = first.title.isEmpty() ? second.title : first.title,
            .artist = first.artist.isEmpty() ? second.artist : first.artist,
            .album = first.album.isEmpty() ? second.album : first.album,
            .trackNumber = first.trackNumber ? first.trackNumber : second.trackNumber};
}

TagBlocks LocalMp3Tags::read(const QString& path) const {
    TagLib::ByteVectorStream ends(endsOf(path));
    if (ends.length() == 0)
        return {};
    FewFrames frames;
    MpegFile file(ends, frames);
    if (!file.isValid())
        return {};
    return {.first = blockOf(file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr),
            .second = blockOf(file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr)};
}

}  // namespace tessaly
