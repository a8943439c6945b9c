#include "platform/paths.h"

#include <QDir>
#include <algorithm>

namespace tessaly {

QString withLastSeparator(const QString& folder) {
    if (folder.isEmpty() || folder.endsWith('/') || folder.endsWith(QDir::separator()))
        return folder;
    return folder + QDir::separator();
}

QString pathIn(const QString& folder, const QString& name) {
    return withLastSeparator(folder) + name;
}

QString lastNameOf(const QString& path) {
    return path.mid(std::max(path.lastIndexOf('/'), path.lastIndexOf('\\')) + 1);
}

}  // namespace tessaly
