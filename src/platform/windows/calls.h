#pragma once

// What the Windows sources share. Nothing else may include it.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <QString>
#include <string>

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

}  // namespace tessaly
