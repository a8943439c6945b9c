// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "card/card_files.h"

namespace tessaly {

class SoundBook;

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
    // Yellow, or green without a text
    CheckResult silentTracks;  ///< tracks that the player shows but has no file for
    CheckResult emptyFiles;    ///< source files of 0 bytes
    CheckResult fileNumbers;   ///< numbers that the player mistakes for attributes
    CheckResult sound;         ///< files that may not be heard; grey while not all are known
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
/// chosen). The capacity is compared with `totalCardBytes`, those of the summary before. Of sounds
/// it says what `book` knows; without one nothing.
CardChecks runCardChecks(const Project& project, const SourceFiles& sources, const QString& cfDrive,
                         const Drives& drives, qint64 totalCardBytes,
                         const SoundBook* book = nullptr);

/// Everything that is allowed but that an operator wants to know before a card is written: the
/// yellow results.
QList<CheckResult> warningsOf(const CardChecks& checks);

/// What of the Create Card page can be used and what is shown only when it has something to say,
/// named as it is there.
struct CardControls {
    bool buttCreateCard = false, buttCreateXD3 = false, buttUpdateFirmware = false;
    bool buttGiveFiles = false, buttFindMissing = false;
    bool fraSilentTracks = false, fraEmptyFiles = false, fraSound = false, fraCC7 = false;

    bool operator==(const CardControls&) const = default;
};

/// The one rule for them. `updateFirmware` is the state of the firmware button before, which stays
/// while the card is not inserted; `canGiveFiles`: a silent track has a namesake with a file.
CardControls cardControls(const CardChecks& checks, bool updateFirmware, bool canGiveFiles);

/// What blocks without a panel of its own: limits, then files that are gone. Of more than 200 the
/// rest is counted in a last line.
CheckResult problemsOf(const CardChecks& checks);

/// Makes the drive with this root the project's, if it is a removable one or holds no medium now.
/// Returns what to tell the operator of a drive of another type, else nothing.
QString selectCardDrive(Project& project, const Drives& drives, const QString& root);

}  // namespace tessaly
