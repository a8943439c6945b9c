#pragma once

#include <QString>

namespace tessaly {

/// `folder` with its last separator, the platform's own, added when it lacks one. Empty stays
/// empty.
QString withLastSeparator(const QString& folder);

/// `folder` and `name` as one path with the platform's separator.
QString pathIn(const QString& folder, const QString& name);

}  // namespace tessaly
