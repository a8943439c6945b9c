#include "card/card_summary.h"

#include "model/format_limits.h"
#include "platform/numbers.h"
#include "platform/paths.h"

namespace tessaly {

QString tooLargeForCard(const QString& path, qint64 bytes) {
    if (bytes <= limits::CardFileBytes)
        return {};
    return QString(
               "%1 has %2 bytes, a file on a card can have %3: cut the recording into shorter "
               "ones.")
        .arg(shownPath(path), grouped(bytes), grouped(limits::CardFileBytes));
}

CardTotals updateSummary(const Project& project, const FileSystem& files) {
    CardTotals totals;
    const auto noteIfTooLarge = [&](const QString& path, qint64 size) {
        if (const QString problem = tooLargeForCard(path, size); !problem.isEmpty())
            totals.tooLargeFiles.append(problem);
    };
    for (qsizetype i = 1; i < project.TrackTable.size(); ++i) {
        const TrackRecord& record = project.TrackTable[i];
        if (!isTrackFile(record))
            continue;
        const QString path = record.sourcePath.text();
        if (const auto size = files.fileSize(path)) {
            totals.totalCardBytes += *size;
            noteIfTooLarge(path, *size);
        } else {
            totals.missingFileFlag = true;
        }
        ++totals.trackCount;
    }
    if (usesChimeFile(project))
        noteIfTooLarge(project.txtChimeFileName,
                       files.fileSize(project.txtChimeFileName).value_or(0));
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
