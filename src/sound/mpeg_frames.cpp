// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/mpeg_frames.h"

#include <mpg123.h>

#include <cstdio>
#include <new>
#include <utility>

namespace tessaly {

struct MpegFrames::Decoder {
    Decoder(Source from, qint64 bytes) : source(std::move(from)), size(bytes) {
        static const bool isReady = mpg123_init() == MPG123_OK;
        handle = isReady ? mpg123_new(nullptr, nullptr) : nullptr;
        if (!handle)
            throw std::bad_alloc();
        // An information frame is a frame: whoever walks wants to see it.
        const long flags =
            MPG123_QUIET | MPG123_SKIP_ID3V2 | MPG123_IGNORE_INFOFRAME | MPG123_FORCE_FLOAT;
        mpg123_param(handle, MPG123_ADD_FLAGS, flags, 0);
        mpg123_param(handle, MPG123_RESYNC_LIMIT, -1, 0);
        mpg123_replace_reader_handle(handle, &Decoder::read, &Decoder::seek, nullptr);
        isOpen = mpg123_open_handle(handle, this) == MPG123_OK;
    }
    ~Decoder() { mpg123_delete(handle); }

    static ssize_t read(void* decoder, void* to, size_t bytes) {
        auto* self = static_cast<Decoder*>(decoder);
        const qint64 found = self->source(static_cast<char*>(to), self->place, qint64(bytes));
        self->place += found;
        return ssize_t(found);
    }

    static off_t seek(void* decoder, off_t offset, int from) {
        auto* self = static_cast<Decoder*>(decoder);
        const qint64 base = from == SEEK_SET ? 0 : from == SEEK_CUR ? self->place : self->size;
        if (base + offset < 0 || base + offset > self->size)
            return -1;
        self->place = base + offset;
        return off_t(self->place);
    }

    const Source source;
    const qint64 size;
    qint64 place = 0;
    mpg123_handle* handle = nullptr;
    bool isOpen = false;
};

MpegFrames::MpegFrames(Source source, qint64 size)
    : decoder_(std::make_unique<Decoder>(std::move(source), size)) {}

MpegFrames::~MpegFrames() = default;

std::optional<MpegFrame> MpegFrames::next() {
    mpg123_handle* const handle = decoder_->handle;
    mpg123_frameinfo info{};
    if (!decoder_->isOpen)
        return {};
    const int result = mpg123_framebyframe_next(handle);
    if ((result != MPG123_OK && result != MPG123_NEW_FORMAT) ||
        mpg123_info(handle, &info) != MPG123_OK) {
        decoder_->isOpen = false;
        return {};
    }
    return MpegFrame{.position = qint64(mpg123_framepos(handle)),
                     .bytes = info.framesize,
                     .samples = mpg123_spf(handle),
                     .hz = int(info.rate),
                     .channels = info.mode == MPG123_M_MONO ? 1 : 2,
                     .layer = info.layer,
                     .kbps = info.bitrate};
}

std::span<const float> MpegFrames::decode() {
    unsigned char* audio = nullptr;
    size_t bytes = 0;
    off_t frame = 0;
    if (mpg123_framebyframe_decode(decoder_->handle, &frame, &audio, &bytes) != MPG123_OK || !audio)
        return {};
    return {reinterpret_cast<const float*>(audio), bytes / sizeof(float)};
}

}  // namespace tessaly
