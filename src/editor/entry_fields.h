#pragma once

#include <QString>

// Rules of the fields that names are entered in. Limits are in model/format_limits.h.

namespace tessaly {

/// The first `limit` characters of a name that came from a file, composed (e and accent become
/// one); never half a surrogate pair.
QString firstCharacters(const QString& text, int limit);

}  // namespace tessaly
