#include "card/card_summary.h"

#include "model/format_limits.h"
#include "model/numbers.h"
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

CardTotals updateSummary(const SourceFiles& sources) {
    CardTotals totals;
    const auto noteIfTooLarge = [&](const SourceFile& source) {
        if (const QString problem = tooLargeForCard(source.path, source.size.value_or(0));
            !problem.isEmpty())
            totals.tooLargeFiles.append(problem);
    };
    for (const SourceFile& source : sources.tracks) {
        totals.totalCardBytes += source.size.value_or(0);
        totals.missingFileFlag = totals.missingFileFlag || !source.size;
        noteIfTooLarge(source);
    }
    totals.trackCount = int(sources.tracks.size());
    if (sources.chime)
        noteIfTooLarge(*sources.chime);
    return totals;
}

CardTotals updateSummary(const Project& project, const FileSystem& files) {
    return updateSummary(measureSources(project, files));
}

QString summaryLine(const CardTotals& totals, const QString& firmwareVersion) {
    return "Total card size: " + megabytes(totals.totalCardBytes) +
           "        Total number of Tracks: " + QString::number(totals.trackCount) +
           QString(40, ' ') + "TRL740 firmware version: " + firmwareVersion;
}

}  // namespace tessaly
