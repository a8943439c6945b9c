#include "card/firmware.h"

#include <QDir>

#include "card/card_names.h"
#include "card/file_copier.h"
#include "image/intel_hex.h"
#include "model/format_limits.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

QString readFirmwareVersion(FileSystem& files, const QString& firmwareFile) {
    return fromCodePage(readFirstLine(files, firmwareFile)).mid(2, 4);
}

bool holdsFirmware(FileSystem& files, const QString& firmwareFile) {
    try {
        return holdsHexData(readWholeFile(files, firmwareFile, limits::HexFileBytes));
    } catch (const TessalyError&) {
        return false;
    }
}

FirmwareComparison compareFirmware(FileSystem& files, const QString& root,
                                   const SupportFolders& folders) {
    using Relation = FirmwareComparison::Relation;
    const QString cardFile = pathIn(root, card_name::Firmware);
    if (!files.fileSize(cardFile))
        return {Relation::NoCard, {}, "Card does not have a valid TRL740 format."};
    const QString card = readFirmwareVersion(files, cardFile);
    const QString own = readFirmwareVersion(files, folders.firmwareFile());
    if (card == own)
        return {Relation::SameAsCard, card,
                "Your card already contains TRL740 firmware version " + card +
                    ".  No update has been done."};
    if (card > own)
        return {Relation::CardNewer, card,
                "Your card  contains TRL740 firmware version " + card +
                    " but Tessaly is about to install version " + own +
                    ".  Do you really want to downgrade?"};
    return {Relation::CardOlder, card,
            "Do you want to update your card from TRL740 firmware version " + card +
                " to version " + own + "?"};
}

QByteArray requireFirmware(FileSystem& files, const SupportFolders& folders) {
    const QString source = folders.firmwareFile();
    QByteArray bytes = readWholeFile(files, source, limits::HexFileBytes);
    if (!holdsHexData(bytes))
        throw TessalyError(error_number::NoFirmwareData,
                           QDir::toNativeSeparators(source) +
                               " holds no firmware data. Put the file of the player's maker in "
                               "its place.");
    return bytes;
}

void updateFirmware(FileSystem& files, const QString& root, const SupportFolders& folders) {
    const QByteArray bytes = requireFirmware(files, folders);
    const QString target = pathIn(root, card_name::Firmware);
    files.replaceFile(target, bytes, FileSystem::Links::Refuse);
    files.flushVolume(root);
    if (readBack(files, target, [](qint64) {}).hash != hashOf(bytes))
        throw TessalyError(
            error_number::VerifyFailed,
            QDir::toNativeSeparators(target) + ": what reads back differs from what was written.");
}

}  // namespace tessaly
