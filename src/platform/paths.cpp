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

QString elided(const QString& text) {
    constexpr qsizetype Most = 300;
    if (text.size() <= Most)
        return text;
    qsizetype first = Most / 2 - 1, last = text.size() - Most / 2;
    first -= text[first - 1].isHighSurrogate() ? 1 : 0;
    last += text[last].isLowSurrogate() ? 1 : 0;
    return text.first(first) + QChar(0x2026) + text.sliced(last);
}

QString shownPath(const QString& path) {
    return elided(QDir::toNativeSeparators(path));
}

}  // namespace tessaly
