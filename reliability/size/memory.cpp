#include "memory.h"

#include <QByteArray>
#include <QFile>

namespace tessaly::size {

qint64 peakMemory() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype line = text.indexOf("VmHWM:");
    // "VmHWM:	  123456 kB"
    return line < 0 ? 0 : text.mid(line + 6).trimmed().split(' ').first().toLongLong() * 1024;
}

}  // namespace tessaly::size
