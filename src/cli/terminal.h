#pragma once

#include <cstdio>

namespace tessaly {

/// Whether a person sits at `stream`, and not a file or another program.
bool isTerminal(FILE* stream);

/// While it lives, a terminal shows UTF-8 and obeys the codes that redraw a line. Only Windows
/// needs to be told; its console gets its former code page back, as that outlives the program.
class Utf8Terminal {
 public:
    Utf8Terminal();
    ~Utf8Terminal();
    Utf8Terminal(const Utf8Terminal&) = delete;
    Utf8Terminal& operator=(const Utf8Terminal&) = delete;

 private:
    unsigned codePageBefore_ = 0;
};

}  // namespace tessaly
