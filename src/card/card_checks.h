#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "card/card_summary.h"
#include "model/project.h"
#include "platform/drives.h"

namespace tessaly {

enum class Verdict {
    Green,   ///< passed
    Red,     ///< blocks writing
    Yellow,  ///< only warns
    Grey,    ///< not applicable yet
};

/// What one indicator of the Create Card page shows.
struct CheckResult {
    Verdict verdict = Verdict::Grey;
    QString text;
    QStringList offenders;
    bool isEnabled = true;  ///< of the text's label
};

/// The whole Create Card page as the checks leave it.
struct CardChecks {
    bool hasItems = false;  ///< false: only the drive panel and the "no files" panel are shown
    CheckResult musicLists;
    CheckResult languages;
    CheckResult speechTitles;
    CheckResult driveSelected;
    CheckResult cardPresent;
    CheckResult cardBigEnough;
    CheckResult trackCount;
    // These three are yellow, or green without a text.
    CheckResult silentTracks;  ///< tracks that the player shows but has no file for
    CheckResult emptyFiles;    ///< source files of 0 bytes
    CheckResult fileNumbers;   ///< numbers that the player mistakes for attributes
    QStringList missingFiles;  ///< source files that cannot be measured, in table order
    /// Limits of the card's formats that the project exceeds, each a sentence. They block too.
    QStringList exceededLimits;
    /// The new enabled state of the firmware button; nothing leaves it as it was.
    std::optional<bool> updateFirmwareEnabled;
    bool blocked = false;         ///< neither writing button may be pressed
    bool projectBlocked = false;  ///< blocked for another reason than its drive
    CardTotals totals;
};

/// The text of the panel that replaces the others while a project has no files.
inline constexpr QStringView NoFilesText = u"There are no Speech or Music files selected.";

/// Judges a project, its source files and the drive `cfDrive` (a root, or empty when none is
/// chosen). The capacity is compared with `totalCardBytes`, those of the summary before.
CardChecks runCardChecks(const Project& project, const SourceFiles& sources, const QString& cfDrive,
                         const Drives& drives, qint64 totalCardBytes);

/// Everything that is allowed but that an operator wants to know before a card is written: the
/// yellow results.
QList<CheckResult> warningsOf(const CardChecks& checks);

}  // namespace tessaly
