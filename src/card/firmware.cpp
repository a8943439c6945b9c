// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/firmware.h"

#include <QDir>

#include "card/card_guards.h"
#include "card/file_copier.h"
#include "image/intel_hex.h"
#include "model/format_limits.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

QString firmwareVersion(FileSystem& files, const QString& firmwareFile) {
    return fromCodePage(readFirstLine(files, firmwareFile)).mid(2, 4);
}

bool isStandIn(FileSystem& files, const QString& firmwareFile) {
    try {
        return files.fileSize(firmwareFile) &&
               !holdsHexData(readWholeFile(files, firmwareFile, limits::HexFileBytes));
    } catch (const TessalyError&) {
        return true;
    }
}

FirmwareComparison compareFirmware(FileSystem& files, const QString& root,
                                   const SupportFolders& folders) {
    using Relation = FirmwareComparison::Relation;
    const QString cardFile = pathIn(root, card_name::Firmware);
    if (!files.fileSize(cardFile))
        return {Relation::NoCard, u"Card does not have a valid TRL740 format."_s};
    const QString card = firmwareVersion(files, cardFile);
    const QString own = firmwareVersion(files, folders.firmwareFile());
    if (card == own)
        return {Relation::SameAsCard, u"Your card already contains TRL740 firmware version "_s +
                                          card + u".  No update has been done."_s};
    if (card > own)
        return {Relation::CardNewer, u"Your card  contains TRL740 firmware version "_s + card +
                                         u" but Tessaly is about to install version "_s + own +
                                         u".  Do you really want to downgrade?"_s};
    return {Relation::CardOlder,
            u"Do you want to update your card from TRL740 firmware version "_s + card +
                u" to version "_s + own + u'?'};
}

QByteArray requireFirmware(FileSystem& files, const SupportFolders& folders) {
    const QString source = folders.firmwareFile();
    QByteArray bytes = readWholeFile(files, source, limits::HexFileBytes);
    if (!holdsHexData(bytes))
        throw TessalyError(error_number::NoFirmwareData,
                           QDir::toNativeSeparators(source) +
                               u" holds no firmware data. Put the file of the player's maker in "_s
                               u"its place."_s);
    return bytes;
}

void updateFirmware(FileSystem& files, const QString& root, const SupportFolders& folders) {
    const QByteArray bytes = requireFirmware(files, folders);
    const QString target = pathIn(root, card_name::Firmware);
    files.replaceFile(target, bytes, FileSystem::Links::Refuse);
    files.flushVolume(root);
    if (readBack(files, target, [](qint64) {}).hash != hashOf(bytes))
        throw TessalyError(error_number::VerifyFailed,
                           QDir::toNativeSeparators(target) +
                               u": what reads back differs from what was written."_s);
}

FirmwareResult offerFirmware(FileSystem& files, const Drives& drives, const QString& root,
                             const SupportFolders& folders, const FirmwareQuestion& ask) {
    using Relation = FirmwareComparison::Relation;
    using Outcome = FirmwareResult::Outcome;
    const CardIdentity card = cardAt(files, drives, root);
    const FirmwareComparison comparison = compareFirmware(files, root, folders);
    if (comparison.relation == Relation::NoCard)
        return {Outcome::NoCard, comparison.message};
    if (comparison.relation == Relation::SameAsCard)
        return {Outcome::UpToDate, comparison.message};
    requireFirmware(files, folders);
    if (!ask(comparison.message, comparison.relation == Relation::CardNewer))
        return {Outcome::Declined, {}};
    requireCardAt(files, drives, root, card);
    updateFirmware(files, root, folders);
    return {Outcome::Updated, u"Card successfully updated."_s};
}

}  // namespace tessaly
