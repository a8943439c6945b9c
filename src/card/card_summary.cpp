#include "card/card_summary.h"

namespace tessaly {

CardTotals updateSummary(const Project& project, const FileSystem& files) {
    CardTotals totals;
    for (qsizetype i = 1; i < project.TrackTable.size(); ++i) {
        const TrackRecord& record = project.TrackTable[i];
        if (!isTrackFile(record))
            continue;
        if (const auto size = files.fileSize(record.sourcePath.text()))
            totals.totalCardBytes += *size;
        else
            totals.missingFileFlag = true;
        ++totals.trackCount;
    }
    return totals;
}

QString megabytes(qint64 bytes) {
    const qint64 tenths = (bytes + 50000) / 100000;
    return QString("%1.%2 MB").arg(tenths / 10).arg(tenths % 10);
}

QString summaryLine(const CardTotals& totals, const QString& firmwareVersion) {
    return "Total card size: " + megabytes(totals.totalCardBytes) +
           "        Total number of Tracks: " + QString::number(totals.trackCount) +
           QString(40, ' ') + "TRL740 firmware version: " + firmwareVersion;
}

}  // namespace tessaly
