#pragma once

#include <QString>

#include "platform/file_system.h"
#include "support/support_folders.h"

namespace tessaly {

/// The version of a firmware file: the third to sixth character of its first line, fewer where the
/// line is shorter. Throws when the file cannot be read.
QString readFirmwareVersion(FileSystem& files, const QString& firmwareFile);

/// Whether a firmware file programs anything: false for the stand-in that the program comes with,
/// and for a file that cannot be read.
bool holdsFirmware(FileSystem& files, const QString& firmwareFile);

/// How the firmware on a card compares with the program's own.
struct FirmwareComparison {
    enum class Relation {
        NoCard,      ///< there is no firmware on the card
        SameAsCard,  ///< nothing to do
        CardNewer,   ///< installing would be a downgrade
        CardOlder,
    };

    Relation relation = Relation::NoCard;
    QString cardVersion;
    QString message;  ///< what to tell or to ask the operator
};

/// Compares versions as texts, character by character. `root` is the card's root folder.
FirmwareComparison compareFirmware(FileSystem& files, const QString& root,
                                   const SupportFolders& folders);

/// What to tell the operator once the firmware is on the card.
inline constexpr QStringView FirmwareUpdatedText = u"Card successfully updated.";

/// The program's firmware. Throws error 540 when it holds no data: the stand-in must replace no
/// other.
QByteArray requireFirmware(FileSystem& files, const SupportFolders& folders);

/// Puts the program's firmware on the card in one step, flushes the card and reads it back. Throws
/// as requireFirmware(), and where a link stands in its place, with the card untouched; error 539
/// when it reads back differently.
void updateFirmware(FileSystem& files, const QString& root, const SupportFolders& folders);

}  // namespace tessaly
