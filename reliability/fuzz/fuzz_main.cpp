// One program a target: TESSALY_FUZZ_TARGET is its function.
#include <cstdint>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    tessaly::fuzz::TESSALY_FUZZ_TARGET(QByteArrayView(data, qsizetype(size)));
    return 0;
}
