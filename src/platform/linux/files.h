// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <memory>
#include <utility>

#include "platform/file_system.h"

// The parts of the file system of Linux: plain system calls, because erasing and reading back a
// card need what QFile does not offer (names in any encoding, links never followed, reads past the
// page cache). `name` is a name in the open folder `at`, or an absolute one; `path` is what people
// are told. All throw the system's error.
namespace tessaly {

/// Closes what a call of the system has opened.
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

/// Opens a folder for listing it and for removing what is in it.
Descriptor openedFolder(const QString& path, int at, const QByteArray& name, int flags = 0);

/// What an open folder holds.
QList<FolderEntry> listFolder(Descriptor folder, const QString& path);

/// Removes `name`, by force where only the mode of its folder forbids it. `flags` as of unlinkat().
void removeForced(const QString& path, int at, const QByteArray& name, int flags);

/// See FileSystem::openForReading().
std::unique_ptr<InputFile> openInputFile(const QString& path, FileSystem::ReadMode mode);

/// See FileSystem::create().
std::unique_ptr<OutputFile> createOutputFile(const QString& path, int at, const QByteArray& name);

/// See FileSystem::openFolder().
std::unique_ptr<OpenFolder> openFolderAt(const QString& path);

}  // namespace tessaly
