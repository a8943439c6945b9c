// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/seekable_file.h"

#include <algorithm>

#include "platform/local_file_system.h"
#include "platform/paths.h"
#ifdef Q_OS_WIN
#include "platform/windows/files.h"
#endif

namespace tessaly {

namespace {

// Linux knows names of any bytes, Windows of any length.
auto systemName(const QString& path) {
#ifdef Q_OS_WIN
    return systemPath(path);
#else
    return toNativePath(path);
#endif
}

}  // namespace

SeekableFile::SeekableFile(const QString& path) {
    const auto size = LocalFileSystem().fileSize(path);
    if (!size)
        return;
    file_.rdbuf()->pubsetbuf(nullptr, 0);
    file_.open(systemName(path).data(), std::ios::binary);
    if (file_.is_open())
        size_ = *size;
}

QByteArray SeekableFile::read(qint64 from, qint64 bytes) {
    QByteArray found(std::clamp<qint64>(size_ - from, 0, bytes), Qt::Uninitialized);
    found.resize(readInto(found.data(), from, found.size()));
    return found;
}

qint64 SeekableFile::readInto(char* to, qint64 from, qint64 bytes) {
    if (bytes <= 0 || from < 0 || from >= size_)
        return 0;
    if (from != place_)
        file_.seekg(from);
    file_.read(to, bytes);
    const qint64 found = file_.gcount();
    file_.clear();
    place_ = found == bytes ? from + found : -1;  // after a failure it is anywhere
    return found;
}

}  // namespace tessaly
