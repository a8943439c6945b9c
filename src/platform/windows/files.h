#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/windows/calls.h"

// The parts of the file system of Windows. `name` is a name as the system knows it, of any length
// and ending; `path` is what people are told.
namespace tessaly {

/// Closes what a call of the system has opened.
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

/// Others may do anything with the file meanwhile.
constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// INVALID_HANDLE_VALUE when it fails.
HANDLE openExisting(const QString& path, DWORD access, DWORD flags);

/// A number that the system tells in two halves.
inline qint64 joined(DWORD high, DWORD low) {
    return qint64(quint64(high) << 32 | low);
}

FileIdentity toIdentity(const BY_HANDLE_FILE_INFORMATION& information);

std::wstring withoutLastSeparator(std::wstring path);

/// What a folder holds; `folder` has no last separator. Throws the system's error.
QList<FolderEntry> listFolder(const std::wstring& folder, const QString& path);

/// Takes the `unwanted` attributes away. A link has attributes of its own. That it failed shows in
/// the call that it is for.
void clearAttributes(const std::wstring& name, DWORD attributes, DWORD unwanted);

/// Removes a file or a link, a read-only one as well. Throws the system's error.
void removeNamed(const std::wstring& name, const QString& path);

/// See FileSystem::openForReading().
std::unique_ptr<InputFile> openInputFile(const QString& path, FileSystem::ReadMode mode);

/// See FileSystem::create().
std::unique_ptr<OutputFile> createOutputFile(const std::wstring& name, const QString& path);

/// See FileSystem::openFolder().
std::unique_ptr<OpenFolder> openFolderAt(const QString& path);

}  // namespace tessaly
