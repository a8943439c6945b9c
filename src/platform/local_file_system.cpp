// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/local_file_system.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

TessalyError notAFile(const QString& path) {
    return {error_number::NotAFile,
            shownPath(path) + u": this is a device or a pipe, not a file"_s};
}

TessalyError linkInTheWay(const QString& path) {
    return {error_number::WriteFailed,
            shownPath(path) + u": a link stands in the place of the file"_s};
}

QByteArray readWholeFile(FileSystem& files, const QString& path, qint64 limit) {
    const auto file = files.openForReading(path, FileSystem::ReadMode::Normal);
    const qint64 size = files.fileSize(path).value_or(0);
    const auto checkSize = [&](qint64 found) {
        if (found > limit)
            throw TessalyError(
                error_number::FileTooLarge,
                u"%1: the file is larger than %2 bytes"_s.arg(shownPath(path)).arg(limit));
    };
    checkSize(size);
    QByteArray bytes;
    bytes.reserve(size);
    for (auto block = file->nextBlock(); !block.isEmpty(); block = file->nextBlock()) {
        checkSize(bytes.size() + block.size());
        bytes.append(block);
    }
    return bytes;
}

QByteArray readFirstLine(FileSystem& files, const QString& path) {
    const auto file = files.openForReading(path, FileSystem::ReadMode::Normal);
    const QByteArrayView block = file->nextBlock();
    const auto isLineEnd = [](char c) { return c == '\r' || c == '\n'; };
    return QByteArray(block.begin(),
                      std::find_if(block.begin(), block.end(), isLineEnd) - block.begin());
}

}  // namespace tessaly
