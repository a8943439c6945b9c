// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "platform/file_system.h"

namespace tessaly {

/// What the maker's files are called, here and on a card.
namespace maker_file {
inline const QString Firmware = QStringLiteral("0000.hex");
inline const QString Calibration = QStringLiteral("9998.mp3");
inline const QString FixedConfiguration = QStringLiteral("0007.cfg");
}  // namespace maker_file

/// Where the program finds what it needs. Paths have the platform's separators and none at the
/// end. A file is looked for anew at every call: the user's own comes before the program's.
struct SupportFolders {
    QString appFolder;       ///< where the program stands
    QString filesFolder;     ///< calibration sound and fixed configuration
    QString firmwareFolder;  ///< the firmware
    QString chimesFolder;
    QString manualFile;  ///< the manual as HTML
    QString ownFolder =
        {};  ///< holds folders of the same names with the user's own files; or empty

    QString firmwareFile() const;
    QString calibrationFile() const;
    QString fixedConfigurationFile() const;

    /// What a card gets from the maker, a line for each file: what it is and where it comes from.
    QStringList makersFiles() const;

    /// Where a dialog for chimes starts: in the user's own folder, if there is one.
    QString chimesStart() const;

    /// Where a dialog for projects starts: in the program's folder, or, where that is no place for
    /// people's files, in their documents.
    QString projectsStart(const FileSystem& files) const;

    /// Every folder that must survive the erasing of a card.
    QStringList protectedFolders() const;
};

/// The folders of a program whose support folders stand in `appFolder` itself. They need not
/// exist. `ownFolder` is the user's; without one only the program's files count.
SupportFolders supportFoldersIn(const QString& appFolder, const QString& ownFolder = {});

/// The folders of the program in `programFolder`: "../share/tessaly" where it was installed into a
/// system, else beside it.
SupportFolders foldersOfProgram(const QString& programFolder, const QString& ownFolder);

}  // namespace tessaly
