// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "model/project.h"
#include "platform/drives.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

// The files of a card: what they are called, where they come from, how large they are and what room
// they take.

/// The names of a card's files, all in its root folder.
namespace tessaly::card_name {

using maker_file::Calibration;
using maker_file::Firmware;
using maker_file::FixedConfiguration;
inline const QString Settings = QStringLiteral("0000.xd3");
inline const QString Chime = QStringLiteral("9999.mp3");
inline const QString Project = QStringLiteral("0000.crd2");

/// A folder that Windows makes on every drive and may keep from being read or deleted. It does no
/// harm on a card.
inline const QString SystemFolder = QStringLiteral("System Volume Information");

/// The card name of a music or speech file: its four-digit number and ".mp3".
QString track(const QString& number);

/// Whether a card could hold a file of that name: a fixed one or a numbered MP3.
bool isCardName(const QString& name);

}  // namespace tessaly::card_name

namespace tessaly {

/// Called after each file that was looked at. May throw to end the work.
using FileDone = std::function<void()>;

/// A file that goes onto the card, as it was measured.
struct SourceFile {
    QString path;                ///< empty for what is composed in memory
    std::optional<qint64> size;  ///< bytes; nothing when it cannot be measured
    QString cardName;            ///< its name there; of a track once the files are numbered
    qint64 modified = 0;         ///< its time, as FileStamp has it
    bool operator==(const SourceFile&) const = default;
};

/// The files of the operator that a project names. Measured once for an operation, however many of
/// its parts ask.
struct SourceFiles {
    QList<SourceFile> tracks;         ///< of the music and speech records, in table order
    std::optional<SourceFile> chime;  ///< when the card gets one
    QList<SourceFile> all() const;    ///< the tracks, and the chime behind them
    bool operator==(const SourceFiles&) const = default;
};

/// Asks for the size of every source file, once each.
SourceFiles measureSources(
    const Project& project, const FileSystem& files, const FileDone& fileDone = [] {});

/// Where the card at `root` has a copy of which source file, by the paths in the project that is on
/// the card. Empty when none can be read there.
QHash<QString, QString> copiesOnCard(FileSystem& files, const QString& root);

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

/// `bytes` rounded up to whole clusters.
qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes);

/// Bytes that a folder of so many entries takes on a FAT volume: one cluster or more.
qint64 fatFolderBytes(qint64 entries, const VolumeGeometry& geometry);

/// Entries of its folder that a file of this name takes on a FAT volume, at least one.
int fatEntriesOf(const QString& name, FatNames names);

/// The bytes, in whole clusters, that an entry of `folder` takes with everything below it. Links
/// take none; folders do on a FAT volume. Throws when a folder cannot be listed.
qint64 bytesTaken(const FileSystem& files, const QString& folder, const FolderEntry& entry,
                  const VolumeGeometry& geometry);

}  // namespace tessaly
