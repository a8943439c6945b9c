#include "platform/write_signals.h"

#include <csignal>

namespace tessaly {

void turnWriteSignalsIntoErrors() {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

}  // namespace tessaly
