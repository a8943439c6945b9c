// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/error.h"
#include "platform/file_system.h"

namespace tessaly {

/// The machine's own file system.
class LocalFileSystem : public FileSystem {
 public:
    std::optional<FileStamp> stamp(const QString& path) const override;
    bool isFolder(const QString& path) const override;
    QList<FolderEntry> entries(const QString& folder) const override;
    std::optional<FileIdentity> identity(const QString& path) const override;
    QString canonicalPath(const QString& path) const override;
    bool isWritableFolder(const QString& folder) const override;
    void makeFolder(const QString& path) override;
    void removeFile(const QString& path) override;
    std::unique_ptr<OpenFolder> openFolder(const QString& path) override;
    std::unique_ptr<InputFile> openForReading(const QString& path, ReadMode mode) override;
    std::unique_ptr<OutputFile> create(const QString& path) override;
    void replaceFile(const QString& path, QByteArrayView bytes,
                     Links links = Links::Follow) override;
    void settle(const QString& path) override;
    void flushVolume(const QString& path) override;
};

/// Error 557: at `path` stands a device or a pipe; reading or writing it might never end.
TessalyError notAFile(const QString& path);

/// Error 550: at `path` stands a link; writing through it would change a file elsewhere.
TessalyError linkInTheWay(const QString& path);

}  // namespace tessaly
