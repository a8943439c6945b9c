#pragma once

#include <QString>
#include <optional>

#include "model/project.h"

// Rules of the fields that names are entered in. Limits are in model/format_limits.h.

namespace tessaly {

/// The first `limit` characters of a name that came from a file, composed (e and accent become
/// one); never half a surrogate pair.
QString firstCharacters(const QString& text, int limit);

/// What of `input`, typed or pasted, still goes into a field that holds `held` characters: all of
/// it, its beginning, or nothing. The page beeps when it is not all. A field that holds more than
/// `limit` keeps what it has.
QString acceptedInput(qsizetype held, const QString& input, int limit);

/// Whether the button that adds a language is to be enabled for the text in its field; nothing when
/// it is to be left as it is, as with 16 languages.
std::optional<bool> addLanguageEnabled(const Project& project, const QString& text);

}  // namespace tessaly
