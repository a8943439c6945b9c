// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

#include "platform/drives.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

namespace tessaly {

/// The version of a firmware file: the third to sixth character of its first line, fewer where the
/// line is shorter. Throws when the file cannot be read.
QString firmwareVersion(FileSystem& files, const QString& firmwareFile);

/// Whether a firmware file is there and programs nothing, as the stand-in that the program comes
/// with, or a file that cannot be read.
bool isStandIn(FileSystem& files, const QString& firmwareFile);

/// How the firmware on a card compares with the program's own.
struct FirmwareComparison {
    enum class Relation {
        NoCard,      ///< there is no firmware on the card
        SameAsCard,  ///< nothing to do
        CardNewer,   ///< installing would be a downgrade
        CardOlder,
    };

    Relation relation = Relation::NoCard;
    QString message;  ///< what to tell or to ask the operator
};

/// Compares versions as texts, character by character. `root` is the card's root folder.
FirmwareComparison compareFirmware(FileSystem& files, const QString& root,
                                   const SupportFolders& folders);

/// The program's firmware. Throws error 540 when it holds no data: the stand-in must replace no
/// other.
QByteArray requireFirmware(FileSystem& files, const SupportFolders& folders);

/// Puts the program's firmware on the card in one step, flushes the card and reads it back. Throws
/// as requireFirmware(), and where a link stands in its place, with the card untouched; error 539
/// when it reads back differently.
void updateFirmware(FileSystem& files, const QString& root, const SupportFolders& folders);

/// What came of an update that was offered, and what to tell the operator.
struct FirmwareResult {
    enum class Outcome { NoCard, UpToDate, Declined, Updated };

    Outcome outcome = Outcome::Declined;
    QString message;  ///< empty when the operator declined
};

/// Puts the question before the operator, that of a downgrade marked as such. True is a yes.
using FirmwareQuestion = std::function<bool(const QString& question, bool isDowngrade)>;

/// Compares the firmware on a card with the program's own and replaces it when there is something
/// to do and the operator agrees. Throws as requireFirmware() before it asks, then error 71 when
/// the card is not the same as before the question, and as updateFirmware().
FirmwareResult offerFirmware(FileSystem& files, const Drives& drives, const QString& root,
                             const SupportFolders& folders, const FirmwareQuestion& ask);

}  // namespace tessaly
