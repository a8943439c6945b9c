// SPDX-License-Identifier: GPL-3.0-or-later
// What libFuzzer calls. TARGET in the environment names the target.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const char* const name = std::getenv("TARGET");
    for (const tessaly::fuzz::Target& target : tessaly::fuzz::Targets)
        if (std::strcmp(target.name, name) == 0)
            target.run(QByteArrayView(data, qsizetype(size)));
    return 0;
}
