// SPDX-License-Identifier: GPL-3.0-or-later
// Reads past the system's cache, and writes that lead through no link.
#include <algorithm>

#include "platform/local_file_system.h"
#include "platform/windows/files.h"

namespace tessaly {

namespace {

struct FreePages {
    void operator()(void* memory) const { ::VirtualFree(memory, 0, MEM_RELEASE); }
};

constexpr DWORD Protecting =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// File times count tenths of a microsecond from 1601.
constexpr qint64 TicksPerMillisecond = 10000;
constexpr qint64 MillisecondsTo1970 = 11644473600000;

QDateTime toDateTime(const FILETIME& time) {
    const qint64 ticks = joined(time.dwHighDateTime, time.dwLowDateTime);
    return QDateTime::fromMSecsSinceEpoch(ticks / TicksPerMillisecond - MillisecondsTo1970);
}

FILETIME toFileTime(const QDateTime& time) {
    const qint64 ticks = (time.toMSecsSinceEpoch() + MillisecondsTo1970) * TicksPerMillisecond;
    return {.dwLowDateTime = DWORD(ticks), .dwHighDateTime = DWORD(ticks >> 32)};
}

class WindowsInputFile : public InputFile {
 public:
    WindowsInputFile(const QString& path, FileSystem::ReadMode mode)
        : path_(path),
          file_(open(mode)),
          // Reads past the cache want memory aligned to the device's sectors; pages are.
          block_(static_cast<char*>(
              ::VirtualAlloc(nullptr, BlockBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        if (::GetFileType(file_.get()) != FILE_TYPE_DISK)
            throw notAFile(path_);
        FILETIME modified{};
        if (!block_ || !::GetFileTime(file_.get(), nullptr, nullptr, &modified))
            throw lastSystemError(path_);
        modified_ = toDateTime(modified);
    }

    QByteArrayView nextBlock() override {
        if (isAtEnd_)
            return {};
        const NoDiskPrompt quiet;
        DWORD count = 0;
        if (!::ReadFile(file_.get(), block_.get(), BlockBytes, &count, nullptr))
            throw lastSystemError(path_);
        // Past the cache, a further read would start amid a sector and fail.
        isAtEnd_ = count < BlockBytes;
        return {block_.get(), qsizetype(count)};
    }

    bool isPastCache() const override { return isPastCache_; }
    QDateTime modificationTime() const override { return modified_; }

 private:
    // Directories do not open without FILE_FLAG_BACKUP_SEMANTICS.
    HANDLE open(FileSystem::ReadMode mode) {
        if (mode == FileSystem::ReadMode::PastCache) {
            const HANDLE file = openExisting(path_, GENERIC_READ, FILE_FLAG_NO_BUFFERING);
            isPastCache_ = file != INVALID_HANDLE_VALUE;
            if (isPastCache_)
                return file;
            if (::GetLastError() != ERROR_INVALID_PARAMETER)
                throw lastSystemError(path_);
        }
        const HANDLE file = openExisting(path_, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
        if (file == INVALID_HANDLE_VALUE)
            throw lastSystemError(path_);
        return file;
    }

    QString path_;
    bool isPastCache_ = false;
    bool isAtEnd_ = false;
    Handle file_;
    std::unique_ptr<char, FreePages> block_;
    QDateTime modified_;
};

class WindowsOutputFile : public OutputFile {
 public:
    // `name` as the system knows it, `path` as people do.
    WindowsOutputFile(const QString& path, const std::wstring& name)
        : path_(path), file_(open(name)) {}

    void write(QByteArrayView bytes) override {
        constexpr qsizetype MostAtOnce = 1 << 30;
        const NoDiskPrompt quiet;
        while (!bytes.isEmpty()) {
            DWORD count = 0;
            if (!::WriteFile(file_.get(), bytes.data(), DWORD(std::min(bytes.size(), MostAtOnce)),
                             &count, nullptr))
                throw lastSystemError(path_);
            bytes = bytes.sliced(count);
        }
    }

    void setModificationTime(const QDateTime& time) override {
        if (!time.isValid())
            return;
        const NoDiskPrompt quiet;
        const FILETIME stamp = toFileTime(time);
        ::SetFileTime(file_.get(), nullptr, nullptr, &stamp);
    }

    // Each file is flushed by itself, because flushing a whole fixed disk takes an administrator.
    void close() override {
        const NoDiskPrompt quiet;
        const DWORD flushError = ::FlushFileBuffers(file_.get()) ? 0 : ::GetLastError();
        const bool isClosed = ::CloseHandle(file_.release());
        if (flushError)
            throw systemError(int(flushError), path_);
        if (!isClosed)
            throw lastSystemError(path_);
    }

 private:
    HANDLE open(const std::wstring& name) {
        const DWORD attributes = ::GetFileAttributesW(name.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT))
            throw linkInTheWay(path_);
        clearAttributes(name, attributes, Protecting);
        // Emptied only once it is known to be no link: a link that stands where a file belongs must
        // not lead the bytes elsewhere.
        Handle file(::CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT,
                                  nullptr));
        BY_HANDLE_FILE_INFORMATION found{};
        if (!file.isOpen() || !::GetFileInformationByHandle(file.get(), &found))
            throw lastSystemError(path_);
        if (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)
            throw linkInTheWay(path_);
        const bool isEmpty = joined(found.nFileSizeHigh, found.nFileSizeLow) == 0;
        if (!isEmpty && !::SetEndOfFile(file.get()))
            throw lastSystemError(path_);
        return file.release();
    }

    QString path_;
    Handle file_;
};

}  // namespace

std::unique_ptr<InputFile> openInputFile(const QString& path, FileSystem::ReadMode mode) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsInputFile>(path, mode);
}

std::unique_ptr<OutputFile> createOutputFile(const std::wstring& name, const QString& path) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsOutputFile>(path, name);
}

}  // namespace tessaly
