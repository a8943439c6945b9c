// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace tessaly {

/// One frame of MPEG sound.
struct MpegFrame {
    qint64 position = 0;  ///< of its header, in the source
    int bytes = 0;        ///< with its header
    int samples = 0;      ///< of each channel
    int hz = 0;
    int channels = 0;
    int layer = 0;  ///< 1 to 3
    int kbps = 0;   ///< 0 in free format
};

/// Walks from frame to frame, over what is no frame, and decodes what it is asked to. Any bytes
/// will do: it ends where they end.
class MpegFrames {
 public:
    /// Reads that many bytes of the source from a place on, fewer at its end.
    using Source = std::function<qint64(char* to, qint64 from, qint64 bytes)>;

    MpegFrames(Source source, qint64 size);
    ~MpegFrames();
    Q_DISABLE_COPY_MOVE(MpegFrames)

    /// The next frame; nothing at the end.
    std::optional<MpegFrame> next();

    /// The samples of the frame that next() returned, channel by channel in turn, 1 for full scale;
    /// valid until the next call. The first frames may have none, as they need those before.
    std::span<const float> decode();

 private:
    struct Decoder;
    const std::unique_ptr<Decoder> decoder_;
};

}  // namespace tessaly
