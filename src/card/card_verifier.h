// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "platform/file_system.h"

namespace tessaly {

/// What a card looks like when judged by what is on it alone.
struct CardVerification {
    QStringList problems;  ///< each a sentence; the card is good when there is none
    QStringList warnings;  ///< as the project says, but perhaps not as it is meant
    QStringList notes;     ///< worth knowing, but no fault
    int trackFiles = 0;    ///< numbered MP3s that the card's project names
    qint64 bytes = 0;      ///< of all files that were read
    quint16 identifier = 0;

    bool isGood() const { return problems.isEmpty(); }
};

/// Compares a card's settings (0000.xd3) with its own project (0000.crd2) and the numbers stored
/// there, and reads every file that the player needs from the card to its end. `root` is the card's
/// root folder or a folder that holds a copy of one. Throws when it is no folder, and error 71 when
/// it is gone before the end.
///
/// It finds every changed byte of the settings, a project that is cut or says anything else than
/// the settings, firmware with a wrong checksum or without its end, and any file that is missing,
/// empty or cannot be read. An empty MP3 file is no fault, but a warning, where its source is there
/// and is empty, too; where the source cannot be seen, it may be one that was not written. A card
/// holds no hashes of its files, so it cannot find an MP3 file or 0007.cfg that reads without an
/// error but is changed, cut, longer, swapped with another or left from an earlier card, nor
/// firmware of another version, nor a changed source path in the project. The comparison while a
/// card is written finds those.
CardVerification verifyCard(FileSystem& files, const QString& root);

}  // namespace tessaly
