// Windows: plain system calls, because erasing and reading back a card need what QFile does not
// offer (names of any length and ending, links never followed, reads past the system's cache).
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "platform/error_numbers.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"
#include "platform/windows_calls.h"

namespace tessaly {

namespace {

class Handle {
 public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (isOpen())
            ::CloseHandle(handle_);
    }
    Handle(Handle&& other) noexcept : handle_(other.release()) {}
    Handle& operator=(Handle&&) = delete;

    HANDLE get() const { return handle_; }
    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE release() { return std::exchange(handle_, INVALID_HANDLE_VALUE); }

 private:
    HANDLE handle_;
};

struct CloseSearch {
    void operator()(HANDLE search) const { ::FindClose(search); }
};

struct FreePages {
    void operator()(void* memory) const { ::VirtualFree(memory, 0, MEM_RELEASE); }
};

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD Protecting =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

qint64 joined(DWORD high, DWORD low) {
    return qint64(quint64(high) << 32 | low);
}

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

HANDLE openExisting(const QString& path, DWORD access, DWORD flags) {
    return ::CreateFileW(systemPath(path).c_str(), access, ShareAll, nullptr, OPEN_EXISTING, flags,
                         nullptr);
}

// Of what `path` leads to, links followed.
std::optional<BY_HANDLE_FILE_INFORMATION> targetInformation(const QString& path) {
    const Handle target(openExisting(path, 0, FILE_FLAG_BACKUP_SEMANTICS));
    BY_HANDLE_FILE_INFORMATION information{};
    if (!target.isOpen() || !::GetFileInformationByHandle(target.get(), &information))
        return std::nullopt;
    return information;
}

FileIdentity toIdentity(const BY_HANDLE_FILE_INFORMATION& information) {
    return {.volume = information.dwVolumeSerialNumber,
            .high = information.nFileIndexHigh,
            .low = information.nFileIndexLow};
}

struct Status {
    bool isFolder = false;
    qint64 size = 0;
};

// One call for all but links: it runs once for every file of a project.
std::optional<Status> statusOf(const QString& path) {
    const auto status = [](const auto& data) {
        return Status{.isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                      .size = joined(data.nFileSizeHigh, data.nFileSizeLow)};
    };
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    if (!(data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return status(data);
    const auto target = targetInformation(path);
    return target ? std::optional(status(*target)) : std::nullopt;
}

// Links act for themselves here, not for their target.
void clearAttributes(const std::wstring& name, DWORD attributes, DWORD unwanted) {
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & unwanted))
        return;
    const DWORD kept = attributes & ~unwanted;
    // Whether it worked shows in the call that it is for.
    ::SetFileAttributesW(name.c_str(), kept ? kept : FILE_ATTRIBUTE_NORMAL);
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

TessalyError linkInTheWay(const QString& path) {
    return {error_number::WriteFailed,
            QDir::toNativeSeparators(path) + ": a link stands in the place of the file"};
}

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

bool isDots(const wchar_t* name) {
    const std::wstring_view text(name);
    return text == L"." || text == L"..";
}

FolderEntry toEntry(const WIN32_FIND_DATAW& data) {
    // The tag stands in dwReserved0.
    const bool isLink = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
                        (data.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
                         data.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
    const bool isFolder = !isLink && (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    return {.name = QString::fromWCharArray(data.cFileName),
            .isFolder = isFolder,
            .isLink = isLink,
            .size = isLink || isFolder ? 0 : joined(data.nFileSizeHigh, data.nFileSizeLow)};
}

QList<FolderEntry> listFolder(const std::wstring& folder, const QString& path) {
    WIN32_FIND_DATAW data{};
    const HANDLE first =
        ::FindFirstFileExW((folder + LR"(\*)").c_str(), FindExInfoBasic, &data,
                           FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (first == INVALID_HANDLE_VALUE) {
        // Only a root can be without even "." and "..".
        if (::GetLastError() == ERROR_FILE_NOT_FOUND)
            return {};
        throw lastSystemError(path);
    }
    const std::unique_ptr<void, CloseSearch> search(first);
    QList<FolderEntry> found;
    do {
        if (!isDots(data.cFileName))
            found.append(toEntry(data));
    } while (::FindNextFileW(search.get(), &data));
    if (::GetLastError() != ERROR_NO_MORE_FILES)
        throw lastSystemError(path);
    return found;
}

void removeNamed(const std::wstring& name, const QString& path) {
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        throw lastSystemError(path);
    clearAttributes(name, attributes, FILE_ATTRIBUTE_READONLY);
    // A link to a folder is a folder of its own kind; removing it leaves the target alone.
    constexpr DWORD FolderLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const bool isFolderLink = (attributes & FolderLink) == FolderLink;
    if (!(isFolderLink ? ::RemoveDirectoryW(name.c_str()) : ::DeleteFileW(name.c_str())))
        throw lastSystemError(path);
}

std::wstring withoutLastSeparator(std::wstring path) {
    while (path.ends_with(L'\\'))
        path.pop_back();
    return path;
}

// A folder that is open without FILE_SHARE_DELETE can be neither renamed nor removed.
HANDLE pinFolder(const std::wstring& name, DWORD flags) {
    return ::CreateFileW(name.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE,
                         nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

class WindowsOpenFolder : public OpenFolder {
 public:
    explicit WindowsOpenFolder(const QString& path)
        : path_(path), folder_(pinFolder(systemPath(path), 0)) {
        // Links on the way to the folder count no more once its final name is known.
        std::wstring name(MaxPathLength, L'\0');
        const DWORD length =
            folder_.isOpen()
                ? ::GetFinalPathNameByHandleW(folder_.get(), name.data(), DWORD(name.size()), 0)
                : 0;
        if (length == 0 || length >= name.size())
            throw lastSystemError(path_);
        name.resize(length);
        name_ = withoutLastSeparator(name);
    }

    FileIdentity identity() const override {
        const NoDiskPrompt quiet;
        BY_HANDLE_FILE_INFORMATION information{};
        if (!::GetFileInformationByHandle(folder_.get(), &information))
            throw lastSystemError(path_);
        return toIdentity(information);
    }

    QList<FolderEntry> entries(const QString& inside) const override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(inside);
        return listFolder(nameOf(inside), pathOf(inside));
    }

    void removeFile(const QString& inside) override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(above(inside));
        removeNamed(nameOf(inside), pathOf(inside));
    }

    void removeFolder(const QString& inside) override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(above(inside));
        const std::wstring name = nameOf(inside);
        clearAttributes(name, ::GetFileAttributesW(name.c_str()), FILE_ATTRIBUTE_READONLY);
        if (!::RemoveDirectoryW(name.c_str()))
            throw lastSystemError(pathOf(inside));
    }

    std::unique_ptr<OutputFile> create(const QString& name) override {
        const NoDiskPrompt quiet;
        return std::make_unique<WindowsOutputFile>(pathOf(name), nameOf(name));
    }

 private:
    static constexpr size_t MaxPathLength = 32768;

    static QString above(const QString& inside) {
        return inside.left(std::max<qsizetype>(inside.lastIndexOf('/'), 0));
    }
    QString pathOf(const QString& inside) const {
        return inside.isEmpty() ? path_ : pathIn(path_, QDir::toNativeSeparators(inside));
    }
    std::wstring nameOf(const QString& inside) const {
        return inside.isEmpty() ? name_
                                : name_ + L'\\' + QDir::toNativeSeparators(inside).toStdWString();
    }

    // Every folder on the way, held so that no link can take its place.
    std::vector<Handle> pinWayTo(const QString& inside) const {
        std::vector<Handle> pinned;
        QString way;
        for (const QString& name : inside.split('/', Qt::SkipEmptyParts)) {
            if (name == u"..")
                throw systemError(ERROR_INVALID_NAME, pathOf(inside));
            way += way.isEmpty() ? name : '/' + name;
            Handle& folder =
                pinned.emplace_back(pinFolder(nameOf(way), FILE_FLAG_OPEN_REPARSE_POINT));
            BY_HANDLE_FILE_INFORMATION information{};
            if (!folder.isOpen() || !::GetFileInformationByHandle(folder.get(), &information))
                throw lastSystemError(pathOf(way));
            if (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)
                throw linkInTheWay(pathOf(way));
        }
        return pinned;
    }

    QString path_;
    Handle folder_;
    std::wstring name_;
};

QString systemText(DWORD code) {
    wchar_t buffer[1024] = {};
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                         0, buffer, DWORD(std::size(buffer)), nullptr);
    QString text = QString::fromWCharArray(buffer, length).trimmed();
    if (text.endsWith('.'))
        text.chop(1);
    return text.isEmpty() ? QString("error %1").arg(code) : text;
}

}  // namespace

TessalyError systemError(int code, const QString& path) {
    const bool isNotReady = code == ERROR_NOT_READY || code == ERROR_NO_MEDIA_IN_DRIVE;
    return {isNotReady ? int(error_number::DriveNotReady) : code,
            QDir::toNativeSeparators(path) + ": " + systemText(DWORD(code))};
}

TessalyError lastSystemError(const QString& path) {
    return systemError(int(::GetLastError()), path);
}

std::optional<qint64> LocalFileSystem::fileSize(const QString& path) const {
    const NoDiskPrompt quiet;
    const auto status = statusOf(path);
    if (!status || status->isFolder)
        return std::nullopt;
    return status->size;
}

bool LocalFileSystem::isFolder(const QString& path) const {
    const NoDiskPrompt quiet;
    const auto status = statusOf(path);
    return status && status->isFolder;
}

QList<FolderEntry> LocalFileSystem::entries(const QString& folder) const {
    const NoDiskPrompt quiet;
    return listFolder(withoutLastSeparator(systemPath(folder)), folder);
}

std::optional<FileIdentity> LocalFileSystem::identity(const QString& path) const {
    const NoDiskPrompt quiet;
    const auto target = targetInformation(path);
    if (!target)
        return std::nullopt;
    return toIdentity(*target);
}

QString LocalFileSystem::canonicalPath(const QString& path) const {
    return QFileInfo(path).canonicalFilePath();
}

bool LocalFileSystem::isWritableFolder(const QString& folder) const {
    const NoDiskPrompt quiet;
    DWORD flags = 0;
    if (!::GetVolumeInformationW(volumeRoot(folder).toStdWString().c_str(), nullptr, 0, nullptr,
                                 nullptr, &flags, nullptr, 0) ||
        (flags & FILE_READ_ONLY_VOLUME))
        return false;
    // The right to add a file to a folder is, on a file, the right to write it.
    return isFolder(folder) &&
           Handle(openExisting(folder, FILE_ADD_FILE, FILE_FLAG_BACKUP_SEMANTICS)).isOpen();
}

void LocalFileSystem::removeFile(const QString& path) {
    const NoDiskPrompt quiet;
    removeNamed(systemPath(path), path);
}

std::unique_ptr<OpenFolder> LocalFileSystem::openFolder(const QString& path) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsOpenFolder>(path);
}

std::unique_ptr<InputFile> LocalFileSystem::openForReading(const QString& path, ReadMode mode) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsInputFile>(path, mode);
}

std::unique_ptr<OutputFile> LocalFileSystem::create(const QString& path) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsOutputFile>(path, systemPath(path));
}

void LocalFileSystem::settle(const QString&) {
    // OutputFile::close() has flushed it.
}

void LocalFileSystem::flushVolume(const QString& path) {
    constexpr size_t LetterRootLength = 3;  // "E:\"
    const NoDiskPrompt quiet;
    const std::wstring root = volumeRoot(path).toStdWString();
    if (root.empty())
        throw lastSystemError(path);
    // Every file was flushed when it was closed. That has to do for a share, for a volume without
    // a letter, for a disk that is an administrator's and for a driver that knows no more.
    if (root.size() != LetterRootLength || ::GetDriveTypeW(root.c_str()) == DRIVE_REMOTE)
        return;
    const std::wstring device = LR"(\\.\)" + root.substr(0, 2);
    const Handle volume(
        ::CreateFileW(device.c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (volume.isOpen() && ::FlushFileBuffers(volume.get()))
        return;
    const DWORD enough = volume.isOpen() ? ERROR_INVALID_FUNCTION : ERROR_ACCESS_DENIED;
    if (::GetLastError() != enough)
        throw lastSystemError(path);
}

}  // namespace tessaly
