// Linux: plain system calls, because erasing and reading back a card need what QFile does not
// offer (names in any encoding, links never followed, reads past the page cache).
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <QStringList>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/native_path.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

class Descriptor {
 public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }

    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }
    int release() { return std::exchange(fd_, -1); }

 private:
    int fd_;
};

struct FreeMemory {
    void operator()(char* memory) const { std::free(memory); }
};

class LinuxInputFile : public InputFile {
 public:
    LinuxInputFile(const QString& path, FileSystem::ReadMode mode) : path_(path), fd_(open(mode)) {
        // A directory opens for reading but does not read.
        struct stat status {};
        if (::fstat(fd_.get(), &status) != 0)
            throw lastSystemError(path_);
        if (S_ISDIR(status.st_mode))
            throw systemError(EISDIR, path_);
        if (!S_ISREG(status.st_mode))
            throw notAFile(path_);
        modified_ = QDateTime::fromMSecsSinceEpoch(status.st_mtim.tv_sec * qint64(1000) +
                                                   status.st_mtim.tv_nsec / 1000000);
        if (!direct_ && mode == FileSystem::ReadMode::PastCache) {
            ::fsync(fd_.get());
            ::posix_fadvise(fd_.get(), 0, 0, POSIX_FADV_DONTNEED);
        } else if (!direct_) {
            ::posix_fadvise(fd_.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
        }
        memory_.reset(new (std::nothrow) char[MemoryBytes]);
        if (!memory_)
            throw systemError(ENOMEM, path_);
        // O_DIRECT wants a buffer aligned to the device's sectors; a page is enough for all.
        // std::aligned_alloc() would have the system map, and clear, new memory for each file.
        void* block = memory_.get();
        size_t left = MemoryBytes;
        block_ = static_cast<char*>(std::align(PageBytes, BlockBytes, block, left));
    }

    QByteArrayView nextBlock() override {
        ssize_t count = readSome();
        if (count < 0 && direct_ && errno == EINVAL) {
            // The file system took the flag but not the read (some FUSE volumes): do without it.
            ::fcntl(fd_.get(), F_SETFL, ::fcntl(fd_.get(), F_GETFL) & ~O_DIRECT);
            direct_ = false;
            ::posix_fadvise(fd_.get(), 0, 0, POSIX_FADV_DONTNEED);
            count = readSome();
        }
        if (count < 0)
            throw lastSystemError(path_);
        return {block_, count};
    }

    bool isPastCache() const override { return direct_; }
    QDateTime modificationTime() const override { return modified_; }

 private:
    int open(FileSystem::ReadMode mode) {
        // Without waiting: a pipe would have the program wait for its other end.
        constexpr int Flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
        const QByteArray name = toNativePath(path_);
        if (mode == FileSystem::ReadMode::PastCache) {
            const int fd = ::open(name.constData(), Flags | O_DIRECT);
            direct_ = fd >= 0;
            if (direct_)
                return fd;
        }
        const int fd = ::open(name.constData(), Flags);
        if (fd < 0)
            throw lastSystemError(path_);
        return fd;
    }

    ssize_t readSome() {
        ssize_t count;
        do
            count = ::read(fd_.get(), block_, BlockBytes);
        while (count < 0 && errno == EINTR);
        return count;
    }

    QString path_;
    bool direct_ = false;
    Descriptor fd_;
    QDateTime modified_;
    static constexpr size_t PageBytes = 4096, MemoryBytes = BlockBytes + PageBytes;

    std::unique_ptr<char[]> memory_;
    char* block_ = nullptr;  // in that memory
};

class LinuxOutputFile : public OutputFile {
 public:
    // `name` is relative to the open folder `at`, or absolute.
    LinuxOutputFile(const QString& path, int at, const QByteArray& name)
        : path_(path),
          // A link that stands where a file belongs must not lead the bytes elsewhere.
          fd_(::openat(at, name.constData(),
                       O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666)) {
        if (!fd_.isOpen())
            throw lastSystemError(path_);
    }

    void write(QByteArrayView bytes) override {
        const qint64 start = written_;
        while (!bytes.isEmpty()) {
            const ssize_t count = ::write(fd_.get(), bytes.data(), size_t(bytes.size()));
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                throw lastSystemError(path_);
            bytes = bytes.sliced(count);
            written_ += count;
        }
        // Let the device start at once, so that the flush at the end has little left to do.
        ::sync_file_range(fd_.get(), start, written_ - start, SYNC_FILE_RANGE_WRITE);
    }

    void setModificationTime(const QDateTime& time) override {
        const qint64 ms = time.toMSecsSinceEpoch();
        const timespec stamp{.tv_sec = time_t(ms / 1000), .tv_nsec = long(ms % 1000) * 1000000};
        const timespec times[2] = {stamp, stamp};
        ::futimens(fd_.get(), times);
    }

    void close() override {
        if (::close(fd_.release()) != 0)
            throw lastSystemError(path_);
    }

 private:
    QString path_;
    Descriptor fd_;
    qint64 written_ = 0;
};

// Removes `name` from the open folder `at`. What protects an entry on Linux is the mode of the
// folder it stands in.
void removeForced(const QString& path, int at, const QByteArray& name, int flags) {
    if (::unlinkat(at, name.constData(), flags) == 0)
        return;
    if (errno == EACCES) {
        if (::fchmod(at, 0700) == 0 && ::unlinkat(at, name.constData(), flags) == 0)
            return;
        errno = EACCES;
    }
    throw lastSystemError(path);
}

QList<FolderEntry> listFolder(Descriptor folder, const QString& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(folder.get()), ::closedir);
    if (!stream)
        throw lastSystemError(path);
    folder.release();
    QList<FolderEntry> found;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (!entry) {
            if (errno != 0)
                throw lastSystemError(path);
            return found;
        }
        if (!strcmp(entry->d_name, ".") || !strcmp(entry->d_name, ".."))
            continue;
        FolderEntry item{.name = fromNativePath(entry->d_name)};
        struct stat status {};
        if (::fstatat(::dirfd(stream.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            item.isFolder = S_ISDIR(status.st_mode);
            item.isLink = S_ISLNK(status.st_mode);
            item.size = S_ISREG(status.st_mode) ? status.st_size : 0;
        }
        found.append(item);
    }
}

// Opens a folder for listing it and for removing what is in it.
Descriptor openedFolder(const QString& path, int at, const QByteArray& name, int flags = 0) {
    Descriptor folder(::openat(at, name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!folder.isOpen())
        throw lastSystemError(path);
    return folder;
}

// A mount of the system: bind mounts of one volume differ, too. Kernels before 5.8 know the device
// only.
struct MountPlace {
    quint64 device = 0;
    quint64 mount = 0;
    bool operator==(const MountPlace&) const = default;
};

MountPlace mountOf(const Descriptor& folder, const QString& path) {
    struct statx status {};
    if (::statx(folder.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_MNT_ID, &status) != 0)
        throw lastSystemError(path);
    return {.device = ::makedev(status.stx_dev_major, status.stx_dev_minor),
            .mount = status.stx_mask & STATX_MNT_ID ? status.stx_mnt_id : 0};
}

class LinuxOpenFolder : public OpenFolder {
 public:
    explicit LinuxOpenFolder(const QString& path)
        : path_(path),
          folder_(openedFolder(path, AT_FDCWD, toNativePath(path))),
          mount_(mountOf(folder_, path)) {}

    FileIdentity identity() const override {
        struct stat status {};
        if (::fstat(folder_.get(), &status) != 0)
            throw lastSystemError(path_);
        return {.volume = status.st_dev, .high = 0, .low = status.st_ino};
    }

    QList<FolderEntry> entries(const QString& inside) const override {
        return listFolder(enter(inside), pathOf(inside));
    }

    void removeFile(const QString& inside) override { remove(inside, 0); }
    void removeFolder(const QString& inside) override { remove(inside, AT_REMOVEDIR); }

    std::unique_ptr<OutputFile> create(const QString& name) override {
        return std::make_unique<LinuxOutputFile>(pathOf(name), folder_.get(), toNativePath(name));
    }

 private:
    QString pathOf(const QString& inside) const {
        return inside.isEmpty() ? path_ : pathIn(path_, inside);
    }

    // Name by name: whatever has been put in a folder's place since it was listed is no way out.
    Descriptor enter(const QString& inside) const {
        Descriptor folder = openedFolder(path_, folder_.get(), ".");
        for (const QString& name : inside.split('/', Qt::SkipEmptyParts)) {
            if (name == u"..")
                throw systemError(EINVAL, pathOf(inside));
            folder = openedFolder(pathOf(inside), folder.get(), toNativePath(name), O_NOFOLLOW);
            if (mountOf(folder, pathOf(inside)) != mount_)
                throw TessalyError(
                    error_number::SystemFolder,
                    pathOf(inside) + ": another drive is mounted here and will not be erased.");
        }
        return folder;
    }

    void remove(const QString& inside, int flags) {
        const qsizetype slash = inside.lastIndexOf('/');
        const Descriptor folder = enter(inside.left(std::max<qsizetype>(slash, 0)));
        removeForced(pathOf(inside), folder.get(), toNativePath(inside.mid(slash + 1)), flags);
    }

    QString path_;
    Descriptor folder_;
    MountPlace mount_;
};

}  // namespace

TessalyError systemError(int code, const QString& path) {
    return {code, shownPath(path) + ": " + QString::fromLocal8Bit(strerror(code))};
}

TessalyError lastSystemError(const QString& path) {
    return systemError(errno, path);
}

std::optional<qint64> LocalFileSystem::fileSize(const QString& path) const {
    struct stat status {};
    if (::stat(toNativePath(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return status.st_size;
}

bool LocalFileSystem::isFolder(const QString& path) const {
    struct stat status {};
    return ::stat(toNativePath(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QList<FolderEntry> LocalFileSystem::entries(const QString& folder) const {
    return listFolder(openedFolder(folder, AT_FDCWD, toNativePath(folder)), folder);
}

std::optional<FileIdentity> LocalFileSystem::identity(const QString& path) const {
    struct stat status {};
    if (::stat(toNativePath(path).constData(), &status) != 0)
        return std::nullopt;
    return FileIdentity{.volume = status.st_dev, .high = 0, .low = status.st_ino};
}

QString LocalFileSystem::canonicalPath(const QString& path) const {
    const std::unique_ptr<char, FreeMemory> real{
        ::realpath(toNativePath(path).constData(), nullptr)};
    return real ? fromNativePath(real.get()) : QString();
}

bool LocalFileSystem::isWritableFolder(const QString& folder) const {
    return ::access(toNativePath(folder).constData(), W_OK | X_OK) == 0;
}

void LocalFileSystem::removeFile(const QString& path) {
    const QByteArray name = toNativePath(path);
    const qsizetype slash = name.lastIndexOf('/');
    const QByteArray above = slash < 0 ? "." : name.left(slash + 1);
    const Descriptor folder = openedFolder(path, AT_FDCWD, above);
    removeForced(path, folder.get(), name.mid(slash + 1), 0);
}

std::unique_ptr<OpenFolder> LocalFileSystem::openFolder(const QString& path) {
    return std::make_unique<LinuxOpenFolder>(path);
}

std::unique_ptr<InputFile> LocalFileSystem::openForReading(const QString& path, ReadMode mode) {
    return std::make_unique<LinuxInputFile>(path, mode);
}

std::unique_ptr<OutputFile> LocalFileSystem::create(const QString& path) {
    return std::make_unique<LinuxOutputFile>(path, AT_FDCWD, toNativePath(path));
}

void LocalFileSystem::settle(const QString& path) {
    const Descriptor file(::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        throw lastSystemError(path);
    // Without the metadata: a commit for every file would take longer than all the data.
    constexpr auto WriteAndWait =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    // Some file systems take the bytes and find only now that there is no room for them.
    const bool isLost = ::sync_file_range(file.get(), 0, 0, WriteAndWait) != 0 &&
                        (errno == EIO || errno == ENOSPC || errno == EDQUOT);
    if (isLost)
        throw lastSystemError(path);
}

void LocalFileSystem::flushVolume(const QString& path) {
    const Descriptor folder(::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!folder.isOpen() || ::syncfs(folder.get()) != 0)
        throw lastSystemError(path);
}

}  // namespace tessaly
