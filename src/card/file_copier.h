// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

#include "platform/file_system.h"

namespace tessaly {

/// The XXH3 hash of a file's content, 128 bits.
struct ContentHash {
    quint64 high = 0;
    quint64 low = 0;
    bool operator==(const ContentHash&) const = default;
};

/// A file that was written, as it should read.
struct WrittenFile {
    QString name;
    qint64 size = 0;
    ContentHash hash{};
};

/// Called after each block with its size in bytes. May throw to end the work.
using BlockDone = std::function<void(qint64 bytes)>;

/// Copies a file in blocks of 1 MiB over whatever is at `name` in `folder`; the copy keeps the
/// modification time. Returns what the copy holds. Throws as the file system and `blockDone` do;
/// what was written until then is removed, if that can still be done.
WrittenFile copyFile(FileSystem& files, const QString& from, OpenFolder& folder,
                     const QString& name, const BlockDone& blockDone);

/// The same of bytes in memory.
WrittenFile writeFile(QByteArrayView bytes, OpenFolder& folder, const QString& name,
                      const BlockDone& blockDone);

/// The hash of a file that holds `bytes`.
ContentHash hashOf(QByteArrayView bytes);

/// A file as it reads past the system's cache.
struct ReadBack {
    qint64 size = 0;
    ContentHash hash{};
    bool isPastCache = true;  ///< false: the file system has no way past its cache
};

/// Reads a file from its device.
ReadBack readBack(FileSystem& files, const QString& path, const BlockDone& blockDone);

}  // namespace tessaly
