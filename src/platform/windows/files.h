// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <memory>
#include <string>
#include <utility>

#include "platform/error.h"
#include "platform/file_system.h"

// The parts of the file system of Windows: plain system calls, because erasing and reading back a
// card need what QFile does not offer (names of any length and ending, links never followed, reads
// past the system's cache). `name` is a name as the system knows it, of any length and ending;
// `path` is what people are told. Nothing but the sources of this system may include it.
namespace tessaly {

/// `path` absolute and in the form "\\?\...": in it no path is too long, and no name on a card is
/// out of reach for ending in a dot or a blank or for being a device's. Empty stays empty.
std::wstring systemPath(const QString& path);

/// Root of the volume that holds `path`, with its last separator; empty when there is none. The
/// reason is the thread's last error.
QString volumeRoot(const QString& path);

/// While it lives, a reader without a card fails a call instead of putting up a box that asks the
/// operator to insert a disk.
class NoDiskPrompt {
 public:
    NoDiskPrompt() {
        ::SetThreadErrorMode(::GetThreadErrorMode() | SEM_FAILCRITICALERRORS, &before_);
    }
    ~NoDiskPrompt() { ::SetThreadErrorMode(before_, nullptr); }
    NoDiskPrompt(const NoDiskPrompt&) = delete;
    NoDiskPrompt& operator=(const NoDiskPrompt&) = delete;

 private:
    DWORD before_ = 0;
};

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
