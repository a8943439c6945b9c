#include "editor/entry_fields.h"

namespace tessaly {

namespace {

QString cut(const QString& text, qsizetype length) {
    const bool halves = length > 0 && length < text.size() && text[length - 1].isHighSurrogate() &&
                        text[length].isLowSurrogate();
    return text.left(halves ? length - 1 : length);
}

}  // namespace

QString firstCharacters(const QString& text, int limit) {
    // Composing takes long for a run of a million accents, which only a damaged file has.
    return cut(cut(text, 16 * qsizetype(limit)).normalized(QString::NormalizationForm_C), limit);
}

}  // namespace tessaly
