// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include "platform/seekable_file.h"

namespace tessaly {

/// Where the sound of a file begins and ends, without the tags around it.
struct Extent {
    qint64 from = 0;
    qint64 end = 0;

    qint64 bytes() const { return end - from; }
};

/// The extent of an MP3 file; nothing of a file that is not open.
Extent extentOf(SeekableFile& file);

/// The header that an encoder leaves in its first frame, instead of sound: what it counted.
struct EncoderHeader {
    bool isThere = false;
    qint64 frames = 0;  ///< behind this one; 0 where it does not say
    qint64 bytes = 0;   ///< with this one; 0 where it does not say
    int delay = 0;      ///< samples of each channel before the sound begins, that of a decoder too
};

/// The header in a frame, if it holds one.
EncoderHeader encoderHeaderIn(const QByteArray& frame);

}  // namespace tessaly
