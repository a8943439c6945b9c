// SPDX-License-Identifier: GPL-3.0-or-later
// Reads past the page cache, and writes that follow no link.
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <new>

#include "platform/error.h"
#include "platform/linux/files.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

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

}  // namespace

std::unique_ptr<InputFile> openInputFile(const QString& path, FileSystem::ReadMode mode) {
    return std::make_unique<LinuxInputFile>(path, mode);
}

std::unique_ptr<OutputFile> createOutputFile(const QString& path, int at, const QByteArray& name) {
    return std::make_unique<LinuxOutputFile>(path, at, name);
}

}  // namespace tessaly
