#pragma once

#include <QString>
#include <QStringList>

namespace tessaly {

/// What the program was started with, without its own name. To be called after the application
/// object was made, which has taken its own options out of `argv`. File names keep their bytes, as
/// fromNativePath() does.
QStringList commandLineArguments(int argc, char** argv);

/// `path` as it is found from any folder, seen from the current one. An absolute path stays as it
/// is; the file need not exist.
QString absolutePath(const QString& path);

}  // namespace tessaly
