#pragma once

// What the Windows sources share. Nothing else may include it.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace tessaly {

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
