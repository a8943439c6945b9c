#include "card/card_summary.h"

#include "platform/numbers.h"

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

QStringList missingSourceFiles(const Project& project, const FileSystem& files) {
    QStringList missing;
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record) && !files.fileSize(record.sourcePath.text()))
            missing.append(record.sourcePath.text());
    return missing;
}

QString summaryLine(const CardTotals& totals, const QString& firmwareVersion) {
    return "Total card size: " + megabytes(totals.totalCardBytes) +
           "        Total number of Tracks: " + QString::number(totals.trackCount) +
           QString(40, ' ') + "TRL740 firmware version: " + firmwareVersion;
}

}  // namespace tessaly
