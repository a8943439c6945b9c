// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <functional>

#include "platform/error.h"
#include "platform/local_file_system.h"

namespace tessaly::test {

/// What `action` throws; an error of number 0 and no text when it throws nothing.
inline TessalyError errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const TessalyError& error) {
        return error;
    }
    return {0, {}};
}

/// Sorted.
inline QStringList namesIn(const LocalFileSystem& files, const QString& folder) {
    QStringList names;
    for (const FolderEntry& entry : files.entries(folder))
        names.append(entry.name);
    names.sort();
    return names;
}

}  // namespace tessaly::test
