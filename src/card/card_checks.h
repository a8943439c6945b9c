#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "card/card_summary.h"
#include "model/project.h"
#include "platform/drives.h"
#include "platform/file_system.h"

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

/// Judges a project and the drive `cfDrive` (a root, or empty when none is chosen). The capacity is
/// compared with `totals`, which is measured anew afterwards.
CardChecks runCardChecks(const Project& project, const QString& cfDrive, const FileSystem& files,
                         const Drives& drives, CardTotals& totals);

}  // namespace tessaly
