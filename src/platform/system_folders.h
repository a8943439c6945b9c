#pragma once

#include <QStringList>

namespace tessaly {

/// Folders of the operating system, such as /usr. None of them, no folder inside one and no folder
/// that contains one may be erased as a card.
QStringList systemFolders();

/// Folders that hold people's files, such as /home and the desktop. None of them and no folder that
/// contains one may be erased as a card; a folder inside one may.
QStringList personalFolders();

/// The folder for what the program keeps for its user: recovery copies, the user's own support
/// files. It need not exist.
QString userFolder();

}  // namespace tessaly
