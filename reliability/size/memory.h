#pragma once

#include <QtGlobal>

namespace tessaly::size {

/// The most memory that this process has held so far, in bytes (VmHWM of /proc/self/status).
qint64 peakMemory();

}  // namespace tessaly::size
