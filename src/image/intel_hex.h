// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

// The image as the player reads it: a header line "S", identifier, record count; then Intel HEX
// data records of 16 bytes at 16-bit addresses from 0000; then the end record. Lines end with
// carriage return and line feed, digits are upper case.

namespace tessaly {

/// Upper-case hexadecimal, two digits; a value over 0xFF takes as many as it needs.
QByteArray Hex2(quint32 value);

/// Three digits; empty for a value over 0xFFF.
QByteArray Hex3(quint32 value);

/// Four digits; empty for a value over 0xFFFF.
QByteArray Hex4(quint32 value);

/// Records that the header line counts for `bytes` bytes: a sixteenth, rounded half to even.
quint32 headerRecordCount(qsizetype bytes);

/// The HEX file of an image. An image whose length is a multiple of 16 ends with a record of no
/// bytes.
QByteArray EncodeImageAsHex(QByteArrayView image);

/// One line of an Intel HEX file.
struct HexRecord {
    quint16 address = 0;
    quint8 type = 0;  ///< 0 data, 1 end of file, others as in the Intel format
    QByteArray data;
};

/// The record of a line without its line end; nothing when it is none or its checksum is wrong.
std::optional<HexRecord> parseHexRecord(QByteArrayView line);

/// A HEX file taken apart.
struct HexFile {
    quint16 identifier = 0;
    quint32 recordCount = 0;  ///< as its header line says
    QByteArray image;
};

/// Reads what EncodeImageAsHex() writes. Line ends may be CR LF or LF, digits of either case.
/// Throws error 552 that names the line when the header, an address, a byte count or a checksum is
/// wrong, when a record is missing or when anything follows the end record.
HexFile decodeHexFile(QByteArrayView text);

/// What is wrong with any Intel HEX file, as the end of a sentence; empty when every line that
/// starts with a colon has its right checksum and one is the end record.
QString hexDamage(QByteArrayView text);

/// Whether any line of an Intel HEX file is a data record with at least one byte.
bool holdsHexData(QByteArrayView text);

}  // namespace tessaly
