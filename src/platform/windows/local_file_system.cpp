// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/local_file_system.h"

#include <io.h>

#include <QFileInfo>
#include <QSaveFile>
#include <string>

#include "platform/error.h"
#include "platform/paths.h"
#include "platform/windows/files.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Of what `path` leads to, links followed.
std::optional<BY_HANDLE_FILE_INFORMATION> targetInformation(const QString& path) {
    const Handle target(openExisting(path, 0, FILE_FLAG_BACKUP_SEMANTICS));
    BY_HANDLE_FILE_INFORMATION information{};
    if (!target.isOpen() || !::GetFileInformationByHandle(target.get(), &information))
        return std::nullopt;
    return information;
}

struct Status {
    bool isFolder = false;
    qint64 size = 0;
    qint64 modified = 0;
};

// One call for all but links: it runs once for every file of a project.
std::optional<Status> statusOf(const QString& path) {
    const auto status = [](const auto& data) {
        return Status{.isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                      .size = joined(data.nFileSizeHigh, data.nFileSizeLow),
                      .modified = joined(data.ftLastWriteTime.dwHighDateTime,
                                         data.ftLastWriteTime.dwLowDateTime)};
    };
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(systemPath(path).c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    if (!(data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return status(data);
    const auto target = targetInformation(path);
    return target ? std::optional(status(*target)) : std::nullopt;
}

QString systemText(DWORD code) {
    wchar_t buffer[1024] = {};
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                         0, buffer, DWORD(std::size(buffer)), nullptr);
    QString text = QString::fromWCharArray(buffer, length).trimmed();
    if (text.endsWith(u'.'))
        text.chop(1);
    return text.isEmpty() ? u"error %1"_s.arg(code) : text;
}

}  // namespace

TessalyError systemError(int code, const QString& path) {
    const bool isNotReady = code == ERROR_NOT_READY || code == ERROR_NO_MEDIA_IN_DRIVE;
    return {isNotReady ? int(error_number::DriveNotReady) : code,
            shownPath(path) + u": "_s + systemText(DWORD(code))};
}

TessalyError lastSystemError(const QString& path) {
    return systemError(int(::GetLastError()), path);
}

std::optional<FileStamp> LocalFileSystem::stamp(const QString& path) const {
    const NoDiskPrompt quiet;
    const auto status = statusOf(path);
    if (!status || status->isFolder)
        return std::nullopt;
    return FileStamp{status->size, status->modified};
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

void LocalFileSystem::makeFolder(const QString& path) {
    const NoDiskPrompt quiet;
    if (!::CreateDirectoryW(systemPath(path).c_str(), nullptr))
        throw lastSystemError(path);
}

void LocalFileSystem::removeFile(const QString& path) {
    const NoDiskPrompt quiet;
    removeNamed(systemPath(path), path);
}

std::unique_ptr<OpenFolder> LocalFileSystem::openFolder(const QString& path) {
    return openFolderAt(path);
}

std::unique_ptr<InputFile> LocalFileSystem::openForReading(const QString& path, ReadMode mode) {
    return openInputFile(path, mode);
}

std::unique_ptr<OutputFile> LocalFileSystem::create(const QString& path) {
    return createOutputFile(systemPath(path), path);
}

void LocalFileSystem::replaceFile(const QString& path, QByteArrayView bytes, Links links) {
    const NoDiskPrompt quiet;
    const QFileInfo old(path);
    if (links == Links::Refuse && old.isSymLink())
        throw linkInTheWay(path);
    // A file would take the place of the device itself.
    if (old.exists() && !old.isFile() && !old.isDir())
        throw notAFile(path);
    if (old.exists() && (old.isDir() || !old.isWritable()))
        throw systemError(ERROR_ACCESS_DENIED, path);
    QSaveFile file(path);
    ::SetLastError(0);
    const auto isOnDevice = [&] {
        return ::FlushFileBuffers(reinterpret_cast<HANDLE>(::_get_osfhandle(file.handle()))) != 0;
    };
    // A device that cannot take the bytes says so when they are flushed at the latest, which
    // QSaveFile does not heed.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(bytes.data(), bytes.size()) != bytes.size() || !isOnDevice() || !file.commit())
        throw systemError(int(::GetLastError() ? ::GetLastError() : ERROR_WRITE_FAULT), path);
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
