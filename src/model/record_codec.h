// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include "model/project.h"

// The bytes of records in a project file (.crd2): no header, one record after another. A record is
// its eight fields in order with nothing between them. Numbers are little-endian.
//
//   kind, itemName, groupName, sourcePath    2 bytes type code, then
//                                              0 empty: nothing
//                                              2 integer: 2 bytes, signed
//                                              8 text: 2 bytes length n, n bytes Windows-1252
//                                             11 Boolean: 2 bytes, 0xFFFF True
//   endlessLoop, cancelOnInterrupt, loudVolume  2 bytes each, 0xFFFF True
//   typeTag                                  4 bytes of text

namespace tessaly {

/// Appends the bytes of one record. Throws error 521 when a text has over 65,535 characters.
void encodeRecord(QByteArray& bytes, const TrackRecord& record);

/// What a reading of records came to.
struct ParsedRecords {
    QList<TrackRecord> records;
    qint64 stoppedAt = 0;    ///< bytes that the complete records take
    bool isComplete = true;  ///< the last record ends where the bytes do
    QString stopReason;      ///< why it is not complete, in words; else empty
};

/// Reads records until the bytes end or make no sense, at most limits::ProjectRecords. Any bytes
/// will do.
ParsedRecords parseRecords(QByteArrayView bytes);

}  // namespace tessaly
