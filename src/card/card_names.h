#pragma once

#include <QRegularExpression>
#include <QString>

// The files of a card, all in its root folder.

namespace tessaly::card_name {

inline const QString Settings = QStringLiteral("0000.xd3");
inline const QString Firmware = QStringLiteral("0000.hex");
inline const QString Calibration = QStringLiteral("9998.mp3");
inline const QString FixedConfiguration = QStringLiteral("0007.cfg");
inline const QString Chime = QStringLiteral("9999.mp3");
inline const QString Project = QStringLiteral("0000.crd2");

/// A folder that Windows makes on every drive. It may keep it from being read or deleted; that does
/// no harm on a card.
inline const QString SystemFolder = QStringLiteral("System Volume Information");

/// The card name of a music or speech file: its four-digit number and ".mp3".
inline QString track(const QString& number) {
    return number + QStringLiteral(".mp3");
}

/// Whether a card could hold a file of that name: a fixed one or a numbered MP3.
inline bool isCardName(const QString& name) {
    static const QRegularExpression names(
        QStringLiteral("\\A(?:[0-9]{4}\\.mp3|0000\\.xd3|0000\\.hex|0007\\.cfg|0000\\.crd2)\\z"),
        QRegularExpression::CaseInsensitiveOption);
    return names.match(name).hasMatch();
}

}  // namespace tessaly::card_name
