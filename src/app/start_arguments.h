#pragma once

#include <QString>
#include <QStringList>

namespace tessaly {

/// What the window is to start with.
struct StartArguments {
    QString projectFile;  ///< absolute; empty: none
    QString problem;      ///< a sentence that says why the program cannot start like this, or empty
};

/// A double-clicked project file comes as the only argument; nothing else is understood. An
/// argument that begins with a hyphen is taken for an option. Whether the file can be read is not
/// asked here.
StartArguments startArguments(const QStringList& arguments);

}  // namespace tessaly
