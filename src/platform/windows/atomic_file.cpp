#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "platform/atomic_file.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"
#include "platform/windows/calls.h"

namespace tessaly {

namespace {

// Whoever writes such a file has it open for himself alone: then it cannot be removed.
void removeAbandoned(const QString& folder) {
    try {
        for (const FolderEntry& entry : LocalFileSystem().entries(folder))
            if (!entry.isFolder && !entry.isLink && isTemporaryName(entry.name))
                ::DeleteFileW(systemPath(pathIn(folder, entry.name)).c_str());
    } catch (const TessalyError&) {
        // A folder that cannot be listed can be written all the same.
    }
}

}  // namespace

AtomicFile::AtomicFile(const QString& path, FileSystem::Links links)
    : shown_(path), target_(replacedFile(path, links)) {
    const NoDiskPrompt quiet;
    constexpr DWORD Refused = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
    const DWORD old = ::GetFileAttributesW(systemPath(target_).c_str());
    if (old != INVALID_FILE_ATTRIBUTES && (old & Refused))
        throw systemError(ERROR_ACCESS_DENIED, shown_);
    removeAbandoned(QFileInfo(target_).path());
    create();
}

AtomicFile::~AtomicFile() {
    if (file_ == INVALID_HANDLE_VALUE)
        return;
    const NoDiskPrompt quiet;
    ::CloseHandle(file_);
    ::DeleteFileW(systemPath(path_).c_str());
}

void AtomicFile::create() {
    do {
        path_ = temporaryPath(target_);
        file_ = ::CreateFileW(systemPath(path_).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    } while (file_ == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_FILE_EXISTS);
    if (file_ == INVALID_HANDLE_VALUE)
        throw lastSystemError(shown_);
}

void AtomicFile::write(QByteArrayView bytes) {
    constexpr qsizetype MostAtOnce = 1 << 30;
    const NoDiskPrompt quiet;
    while (!bytes.isEmpty()) {
        DWORD count = 0;
        if (!::WriteFile(file_, bytes.data(), DWORD(std::min(bytes.size(), MostAtOnce)), &count,
                         nullptr))
            throw lastSystemError(shown_);
        bytes = bytes.sliced(count);
    }
}

void AtomicFile::putInPlace() {
    const NoDiskPrompt quiet;
    if (!::FlushFileBuffers(file_))
        throw lastSystemError(shown_);
    // An open file cannot be renamed.
    ::CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE));
    if (::MoveFileExW(systemPath(path_).c_str(), systemPath(target_).c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return;
    const TessalyError error = lastSystemError(shown_);
    ::DeleteFileW(systemPath(path_).c_str());
    throw error;
}

}  // namespace tessaly
