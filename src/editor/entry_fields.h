#pragma once

#include <QString>
#include <optional>

#include "model/project.h"

// Rules of the fields that names are entered in. Limits are in model/format_limits.h.

namespace tessaly {

/// The first `limit` characters of a name that came from a file, composed (e and accent become
/// one); never half a surrogate pair.
QString firstCharacters(const QString& text, int limit);

/// Whether the button that adds a language is to be enabled for the text in its field; nothing when
/// it is to be left as it is, as with 16 languages.
std::optional<bool> addLanguageEnabled(const Project& project, const QString& text);

}  // namespace tessaly
