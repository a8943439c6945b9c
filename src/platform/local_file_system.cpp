#include "platform/local_file_system.h"

#include <QDir>

#include "platform/error.h"
#include "platform/error_numbers.h"
#include "platform/replacement.h"

namespace tessaly {

void LocalFileSystem::replaceFile(const QString& path, QByteArrayView bytes) {
    Replacement file(path);
    file.write(bytes);
    file.putInPlace();
}

QByteArray readWholeFile(FileSystem& files, const QString& path, qint64 limit) {
    const auto file = files.openForReading(path, FileSystem::ReadMode::Normal);
    QByteArray bytes;
    for (auto block = file->nextBlock(); !block.isEmpty(); block = file->nextBlock()) {
        if (bytes.size() + block.size() > limit)
            throw TessalyError(error_number::FileTooLarge,
                               QString("%1: the file is larger than %2 bytes")
                                   .arg(QDir::toNativeSeparators(path))
                                   .arg(limit));
        bytes.append(block);
    }
    return bytes;
}

QByteArray readFirstLine(FileSystem& files, const QString& path) {
    const auto file = files.openForReading(path, FileSystem::ReadMode::Normal);
    QByteArray line = file->nextBlock().toByteArray();
    for (qsizetype i = 0; i < line.size(); ++i)
        if (line[i] == '\r' || line[i] == '\n')
            line.truncate(i);
    return line;
}

}  // namespace tessaly
