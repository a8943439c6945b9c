// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/quick_look.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "platform/seekable_file.h"
#include "sound/extent.h"
#include "sound/mpeg_frames.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Of a longer file so many frames are enough, and mostly found in the first part of the head.
constexpr qint64 HeadBytes = qint64(256) * 1024, FirstBytes = qint64(64) * 1024;
constexpr qint64 TailBytes = qint64(16) * 1024;
constexpr int FramesLookedAt = 100;

// What the frames of one part of a file have in common.
struct Walk {
    MpegFrame first, last;
    qint64 frames = 0, bytes = 0, gaps = 0;
    double seconds = 0;
    bool isVariable = false;

    qint64 end() const { return last.position + last.bytes; }
};

Walk walkOver(const QByteArray& bytes, qint64 mostFrames) {
    MpegFrames frames(
        [&bytes](char* to, qint64 from, qint64 count) {
            const qint64 there = std::clamp<qint64>(bytes.size() - from, 0, count);
            std::memcpy(to, bytes.constData() + from, size_t(there));
            return there;
        },
        bytes.size());
    Walk walk;
    while (walk.frames < mostFrames) {
        const auto frame = frames.next();
        if (!frame)
            break;
        if (walk.frames == 0)
            walk.first = *frame;
        else if (frame->position != walk.end())
            ++walk.gaps;
        walk.isVariable |= walk.frames > 1 && frame->kbps != walk.last.kbps;
        walk.last = *frame;
        walk.bytes += frame->bytes;
        walk.seconds += double(frame->samples) / frame->hz;
        ++walk.frames;
    }
    return walk;
}

// What a file without MPEG sound is, by its first bytes.
QString kindOf(QByteArrayView head) {
    struct Kind {
        const char* start;
        qsizetype at;
        QStringView name;
    };
    static constexpr std::array Kinds = {Kind{"WAVE", 8, u"WAV"},
                                         Kind{"OggS", 0, u"Ogg"},
                                         Kind{"fLaC", 0, u"FLAC"},
                                         Kind{"ftyp", 4, u"MP4"},
                                         Kind{"FORM", 0, u"AIFF"},
                                         Kind{"0&\xB2u", 0, u"WMA"},
                                         Kind{"PK\3\4", 0, u"ZIP"},
                                         Kind{"%PDF", 0, u"PDF"},
                                         Kind{"\xFF\xD8\xFF", 0, u"a JPEG picture"},
                                         Kind{"\x89PNG", 0, u"a PNG picture"}};
    for (const Kind& kind : Kinds)
        if (head.sliced(std::min(kind.at, head.size())).startsWith(kind.start))
            return kind.name.toString();
    if (head.size() > 1 && quint8(head[0]) == 0xFF && (quint8(head[1]) & 0xF6) == 0xF0)
        return u"AAC"_s;
    const QByteArrayView text = head.first(std::min<qsizetype>(head.size(), 1024));
    if (text.isEmpty() || !std::all_of(text.begin(), text.end(), [](char c) {
            return quint8(c) >= 32 || (c >= 9 && c <= 13);
        }))
        return {};
    const QByteArray lower = text.toByteArray().toLower();
    return lower.contains("<html") || lower.contains("<!doctype html") ? u"HTML"_s : u"text"_s;
}

// Frames that are found by chance, in other data, do not follow each other.
bool isSound(const Walk& walk) {
    return walk.frames > 0 && walk.gaps * 4 <= walk.frames;
}

// Sets lengths and rates, and whether the sound ends early. `isAll` says that the walk is over the
// whole sound of `bytes` bytes.
void measure(QuickLook& look, const Walk& walk, const EncoderHeader& header, qint64 bytes,
             bool isAll) {
    constexpr double SecondsLacking = 0.5;
    const double frameSeconds = walk.seconds / double(walk.frames);
    const double average = double(walk.bytes) / double(walk.frames);
    const double counted = isAll ? double(walk.frames) : double(bytes) / average;
    double there = counted - (header.isThere ? 1 : 0);
    double said = header.frames > 0 ? double(header.frames) : there;
    if (!isAll && header.frames > 0 && header.bytes > 0)
        there = said * double(bytes) / double(header.bytes);
    else if (!isAll && walk.isVariable)
        there = said;  // the first frames tell nothing of the others
    if ((said - there) * frameSeconds > SecondsLacking)
        look.finding = QuickLook::Finding::EndsEarly;
    else
        said = there = there > 2 * said ? there : said;  // a header may be that of one part
    look.milliseconds = qint64(said * frameSeconds * 1000);
    look.there = qint64(there * frameSeconds * 1000);
    look.kbps = there > 0 ? int(std::lround(double(bytes) * 8 / (there * frameSeconds * 1000))) : 0;
}

// Whether a frame of the same kind begins at the end of the bytes and is not whole.
bool endsInFrame(const QByteArray& bytes, const Walk& walk) {
    constexpr quint8 SameInAll = 0x0C;  // sample rate, in the third byte
    if (walk.frames == 0 || walk.end() + 4 > bytes.size() || walk.end() < 0)
        return false;
    const char *rest = bytes.constData() + walk.end(),
               *last = bytes.constData() + walk.last.position;
    return rest[0] == last[0] && rest[1] == last[1] && ((rest[2] ^ last[2]) & SameInAll) == 0;
}

}  // namespace

QuickLook quickLook(const QString& path) {
    SeekableFile file(path);
    if (!file.isOpen())
        return {};
    QuickLook look;
    look.finding = QuickLook::Finding::Empty;
    if (file.size() == 0)
        return look;
    const Extent extent = extentOf(file);
    const qint64 size = extent.bytes();
    const bool isAll = size <= HeadBytes;
    QByteArray head = file.read(extent.from, isAll ? size : FirstBytes);
    look.looksLike = kindOf(head);
    Walk walk;
    if (look.looksLike.isEmpty())
        walk = walkOver(head, isAll ? size : FramesLookedAt);
    if (look.looksLike.isEmpty() && !isAll && walk.frames < FramesLookedAt) {
        head = file.read(extent.from, HeadBytes);
        walk = walkOver(head, FramesLookedAt);
    }
    if (!isSound(walk)) {
        look.finding = QuickLook::Finding::NoSound;
        return look;
    }
    look.finding =
        walk.first.layer == 3 ? QuickLook::Finding::Good : QuickLook::Finding::OtherLayer;
    look.layer = walk.first.layer;
    look.hz = walk.last.hz;
    look.channels = walk.last.channels;
    look.isVariable = walk.isVariable;
    measure(look, walk, encoderHeaderIn(head.mid(walk.first.position, walk.first.bytes)),
            size - walk.first.position, isAll);
    if (look.finding == QuickLook::Finding::Good) {
        const QByteArray tail = isAll ? head : file.read(extent.end - TailBytes, TailBytes);
        if (endsInFrame(tail, isAll ? walk : walkOver(tail, TailBytes)))
            look.finding = QuickLook::Finding::EndsInFrame;
    }
    return look;
}

}  // namespace tessaly
