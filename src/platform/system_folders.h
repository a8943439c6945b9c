#pragma once

#include <QStringList>

namespace tessaly {

/// Folders of the operating system: a card must be none of them, hold none and stand in none.
QStringList systemFolders();

/// Folders that people's files stand in: a card must be none of them and hold none, but may be a
/// folder inside one.
QStringList personalFolders();

/// The folder for what the program keeps for its user: recovery copies, the user's own support
/// files. It need not exist.
QString userFolder();

}  // namespace tessaly
