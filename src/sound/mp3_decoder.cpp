// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/mp3_decoder.h"

#include <mpg123.h>

#include <algorithm>
#include <cstring>

#include "platform/error.h"
#include "platform/local_file_system.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Behind so much that is no sound none is looked for. A tag with pictures may be that long.
constexpr long MostJunkBytes = 16L * 1024 * 1024;

}  // namespace

void Mp3Decoder::Close::operator()(mpg123_handle_struct* handle) const {
    mpg123_delete(handle);
}

// The file is read as a stream without a way back: so it is opened like every other file of the
// program, whatever its name is, and a tag that claims to be large is not taken into memory.
Mp3Decoder::Mp3Decoder(const QString& path, const QList<SampleFormat>& formats,
                       std::function<bool()> goesOn)
    : goesOn_(std::move(goesOn)),
      file_(LocalFileSystem().openForReading(path, FileSystem::ReadMode::Normal)),
      handle_((mpg123_init(), mpg123_new(nullptr, nullptr))) {
    mpg123_handle* const handle = handle_.get();
    const auto readOn = [](void* self, void* to, size_t count) -> mpg123_ssize_t {
        return mpg123_ssize_t(
            static_cast<Mp3Decoder*>(self)->read(static_cast<char*>(to), qint64(count)));
    };
    const auto noWayBack = [](void*, off_t, int) { return off_t(-1); };
    constexpr long Flags = MPG123_QUIET | MPG123_SKIP_ID3V2 | MPG123_NO_PEEK_END;
    bool isReady = handle != nullptr;
    isReady = isReady && mpg123_param(handle, MPG123_ADD_FLAGS, Flags, 0) == MPG123_OK;
    isReady = isReady && mpg123_param(handle, MPG123_RESYNC_LIMIT, MostJunkBytes, 0) == MPG123_OK;
    isReady = isReady && mpg123_format_none(handle) == MPG123_OK;
    for (const SampleFormat& format : formats)
        isReady = isReady &&
                  mpg123_format(handle, format.rate, format.channels, format.encoding) == MPG123_OK;
    isReady =
        isReady && mpg123_replace_reader_handle(handle, readOn, noWayBack, nullptr) == MPG123_OK;
    isReady = isReady && mpg123_open_handle(handle, this) == MPG123_OK;
    // Without a count of frames in the file the length is that of its bytes.
    const auto size = LocalFileSystem().fileSize(path);
    if (isReady && size)
        mpg123_set_filesize(handle, off_t(*size));
    if (!isReady)
        end(true);
}

Mp3Decoder::~Mp3Decoder() = default;

// An exception must not pass through the library: the reason is kept for the end.
qint64 Mp3Decoder::read(char* to, qint64 count) {
    if (!goesOn_())
        return 0;
    try {
        if (block_.isEmpty())
            block_ = file_->nextBlock();
    } catch (const TessalyError& error) {
        problem_ = error.description;
        return -1;
    }
    count = std::min<qint64>(count, block_.size());
    std::memcpy(to, block_.data(), size_t(count));
    block_ = block_.sliced(count);
    return count;
}

QByteArrayView Mp3Decoder::next() {
    while (handle_ && goesOn_()) {
        off_t frame = 0;
        unsigned char* samples = nullptr;
        size_t bytes = 0;
        const int result = mpg123_decode_frame(handle_.get(), &frame, &samples, &bytes);
        if (result == MPG123_NEW_FORMAT) {
            mpg123_getformat(handle_.get(), &format_.rate, &format_.channels, &format_.encoding);
        } else if (result != MPG123_OK) {
            end(result != MPG123_DONE);
            break;
        }
        hasSound_ = hasSound_ || bytes > 0;
        if (bytes > 0)
            return {reinterpret_cast<const char*>(samples), qsizetype(bytes)};
    }
    return {};
}

void Mp3Decoder::end(bool isBroken) {
    if (problem_.isEmpty() && goesOn_()) {
        if (!hasSound_)
            problem_ = u"there is no MPEG sound in this file"_s;
        else if (isBroken)
            problem_ = u"the rest of the file is damaged"_s;
    }
    handle_.reset();
}

double Mp3Decoder::seconds() const {
    const off_t samples = handle_ && format_.rate > 0 ? mpg123_tell(handle_.get()) : 0;
    return samples > 0 ? double(samples) / double(format_.rate) : 0;
}

double Mp3Decoder::length() const {
    const off_t samples = handle_ && format_.rate > 0 ? mpg123_length(handle_.get()) : 0;
    return samples > 0 ? double(samples) / double(format_.rate) : 0;
}

}  // namespace tessaly
