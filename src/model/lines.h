#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tessaly {

/// The text of a row of a list box, counted from 0; nothing where there is no such row.
inline std::optional<QString> lineAt(const QStringList& lines, int row) {
    return row >= 0 && row < lines.size() ? std::optional(lines[row]) : std::nullopt;
}

}  // namespace tessaly
