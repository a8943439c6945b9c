#include "cli/terminal.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <io.h>

#include "platform/windows/files.h"
#else
#include <unistd.h>
#endif

namespace tessaly {

#ifdef Q_OS_WIN

bool isTerminal(FILE* stream) {
    // _isatty() takes NUL for a terminal.
    const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    DWORD mode = 0;
    return ::GetConsoleMode(handle, &mode) != 0;
}

Utf8Terminal::Utf8Terminal() : codePageBefore_(::GetConsoleOutputCP()) {
    ::SetConsoleOutputCP(CP_UTF8);
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (::GetConsoleMode(output, &mode))
        ::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

Utf8Terminal::~Utf8Terminal() {
    if (codePageBefore_ != 0)
        ::SetConsoleOutputCP(codePageBefore_);
}

#else

bool isTerminal(FILE* stream) {
    return ::isatty(::fileno(stream)) != 0;
}

Utf8Terminal::Utf8Terminal() = default;
Utf8Terminal::~Utf8Terminal() {
    Q_UNUSED(codePageBefore_);
}

#endif

}  // namespace tessaly
