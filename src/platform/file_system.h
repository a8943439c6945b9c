// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QList>
#include <QString>
#include <memory>
#include <optional>

namespace tessaly {

/// One name in a folder. A link is neither followed nor a folder, whatever it points at.
struct FolderEntry {
    QString name;
    bool isFolder = false;
    bool isLink = false;
    qint64 size = 0;  ///< bytes; 0 for folders and links
};

/// Tells whether two paths lead to the same file or folder, through links and mounts alike.
struct FileIdentity {
    quint64 volume = 0;
    quint64 high = 0;
    quint64 low = 0;
    bool operator==(const FileIdentity&) const = default;
};

/// What tells a file from what it was before, without a look inside.
struct FileStamp {
    qint64 bytes = 0;
    qint64 modified = 0;  ///< a time, in the file system's own counting
    bool operator==(const FileStamp&) const = default;
};

/// A file open for reading from its start to its end.
class InputFile {
 public:
    virtual ~InputFile() = default;

    /// The next bytes, at most `BlockBytes` of them, empty at the end. The view is valid until the
    /// next call. Throws TessalyError.
    virtual QByteArrayView nextBlock() = 0;

    /// False when the bytes may have come from the system's cache although `ReadMode::PastCache`
    /// was asked for.
    virtual bool isPastCache() const = 0;

    virtual QDateTime modificationTime() const = 0;

    static constexpr qint64 BlockBytes = 1 << 20;
};

/// A file being written. Destroying it without close() leaves what was written so far.
class OutputFile {
 public:
    virtual ~OutputFile() = default;
    virtual void write(QByteArrayView bytes) = 0;                 ///< throws TessalyError
    virtual void setModificationTime(const QDateTime& time) = 0;  ///< best effort, never throws
    virtual void close() = 0;                                     ///< throws TessalyError
};

/// A folder that is held open while its content is erased and written. Whatever becomes of its path
/// meanwhile, and whatever is put inside it, nothing outside this folder is touched: no link and no
/// mount inside it is followed. Names are relative to it, with '/' between, empty for the folder
/// itself. Failures are as of FileSystem.
class OpenFolder {
 public:
    virtual ~OpenFolder() = default;

    virtual FileIdentity identity() const = 0;

    /// As FileSystem::entries().
    virtual QList<FolderEntry> entries(const QString& inside = {}) const = 0;

    /// Removes a file, even a read-only one; of a link the link itself, never its target.
    virtual void removeFile(const QString& inside) = 0;

    /// Removes an empty folder, even a read-only one.
    virtual void removeFolder(const QString& inside) = 0;

    /// Makes a new file or empties the one that is there. Fails where a link stands.
    virtual std::unique_ptr<OutputFile> create(const QString& name) = 0;
};

/// The files of the machine. Paths are absolute or relative, with either separator where the
/// platform allows it. Every failure is a TessalyError whose text starts with the path.
class FileSystem {
 public:
    enum class ReadMode {
        Normal,
        PastCache,  ///< from the device itself as far as the file system can
    };

    virtual ~FileSystem() = default;

    /// Size and time of the regular file at `path`, links followed; nothing when there is none.
    virtual std::optional<FileStamp> stamp(const QString& path) const = 0;

    /// Its size alone, in bytes.
    std::optional<qint64> fileSize(const QString& path) const {
        const auto found = stamp(path);
        return found ? std::optional(found->bytes) : std::nullopt;
    }

    virtual bool isFolder(const QString& path) const = 0;

    /// Everything in a folder except "." and "..": hidden, system and read-only entries and
    /// dangling links too, in no particular order. Throws when the folder cannot be listed.
    virtual QList<FolderEntry> entries(const QString& folder) const = 0;

    /// The identity of what `path` leads to, links followed; nothing when there is nothing.
    virtual std::optional<FileIdentity> identity(const QString& path) const = 0;

    /// The absolute path of what `path` leads to, every link and ".." resolved; empty when there is
    /// nothing.
    virtual QString canonicalPath(const QString& path) const = 0;

    /// Whether this user may make files in `folder`: it is there, its volume is not read-only, and
    /// its access rights allow it.
    virtual bool isWritableFolder(const QString& folder) const = 0;

    /// Makes a folder; the one above it is there. Throws where anything stands under its name.
    virtual void makeFolder(const QString& path) = 0;

    /// Removes a file, even a read-only one; of a link the link itself, never its target.
    virtual void removeFile(const QString& path) = 0;

    /// Holds a folder open; links on the way to it are followed.
    virtual std::unique_ptr<OpenFolder> openFolder(const QString& path) = 0;

    virtual std::unique_ptr<InputFile> openForReading(const QString& path,
                                                      ReadMode mode = ReadMode::Normal) = 0;

    /// Makes a new file or empties the one that is there. Fails where a link stands.
    virtual std::unique_ptr<OutputFile> create(const QString& path) = 0;

    /// What replaceFile() does where a link stands.
    enum class Links {
        Follow,  ///< replaces the file that the link leads to
        Refuse,  ///< throws, because the link may lead out of a card
    };

    /// Replaces the file at `path`, or makes it, in one step: whenever this fails or is killed, the
    /// whole old file is there, and on success the whole new one, on its device and with the old
    /// one's rights. Throws where a folder, a device or a read-only file stands.
    virtual void replaceFile(const QString& path, QByteArrayView bytes,
                             Links links = Links::Follow) = 0;

    /// Waits until the content of a file was sent to its device. Its metadata are not: that takes
    /// flushVolume(). Does nothing on systems where OutputFile::close() flushes the file.
    virtual void settle(const QString& path) = 0;

    /// Waits until everything written to the volume that holds `path` is on its device.
    virtual void flushVolume(const QString& path) = 0;
};

/// The whole content of a file. Throws when it cannot be read or is larger than `limit` bytes.
QByteArray readWholeFile(FileSystem& files, const QString& path, qint64 limit);

/// The first line of a text file without its line end, of at most 1 MiB. Throws as reading does.
QByteArray readFirstLine(FileSystem& files, const QString& path);

}  // namespace tessaly
