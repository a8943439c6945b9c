#pragma once

#include <QString>
#include <QStringList>

#include "card/source_files.h"

namespace tessaly {

/// How much goes onto the card.
struct CardTotals {
    qint64 totalCardBytes = 0;     ///< sizes of all source files that could be measured
    int trackCount = 0;            ///< music and speech records, measured or not
    bool missingFileFlag = false;  ///< at least one source file could not be measured
    /// A sentence for every source file that no card can hold; the chime counts here, too.
    QStringList tooLargeFiles = {};

    bool operator==(const CardTotals&) const = default;
};

/// Why a card cannot hold a file of `bytes` bytes, however much room it has; empty when it can.
QString tooLargeForCard(const QString& path, qint64 bytes);

/// Sums up what was measured.
CardTotals updateSummary(const SourceFiles& sources);

/// The same, measured now: one file query a record.
CardTotals updateSummary(const Project& project, const FileSystem& files);

/// The line of the status bar.
QString summaryLine(const CardTotals& totals, const QString& firmwareVersion);

}  // namespace tessaly
