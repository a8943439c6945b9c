#include "editor/item_lists.h"

#include <algorithm>

#include "model/music_lists.h"

namespace tessaly {

std::optional<QString> renameLine(QStringList& lines, int row, const QString& answer) {
    // Asked before the answer is made unique: an empty one beside an empty line would get a number.
    if (answer.isEmpty() || !lineAt(lines, row))
        return std::nullopt;
    return lines[row] = uniqueName(answer, lines);
}

int removeLine(QStringList& lines, int row) {
    lines.removeAt(row);
    return std::min(row, int(lines.size()) - 1);
}

int neighbourOf(const QStringList& lines, int row, Direction direction) {
    const int neighbour = row + int(direction);
    return lineAt(lines, row) && lineAt(lines, neighbour) ? neighbour : -1;
}

EditResult moveLine(QStringList& lines, int row, Direction direction) {
    const int neighbour = neighbourOf(lines, row, direction);
    if (neighbour < 0)
        return {.row = row};
    lines.swapItemsAt(row, neighbour);
    return {.isDone = true, .row = neighbour, .name = lines[neighbour]};
}

}  // namespace tessaly
