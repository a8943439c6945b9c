// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/row_moves.h"

#include <QHash>
#include <algorithm>
#include <numeric>

#include "model/music_lists.h"

namespace tessaly {

namespace {

// The lines that travel; found again by their texts, which are unique.
Rows rowsOf(const QStringList& lines, const QSet<QString>& texts) {
    Rows rows;
    for (int row = 0; row < int(lines.size()); ++row)
        if (texts.contains(lines[row]))
            rows.append(row);
    return rows;
}

Rows startsOf(const QList<RowTravel>& travels) {
    Rows rows;
    for (const RowTravel& travel : travels)
        rows.append(travel.from);
    return rows;
}

// Takes every travel step by step, as long as `move` can.
template <typename MoveOne>
Rows travel(QStringList& lines, const QList<RowTravel>& travels, const MoveOne& move) {
    const QSet<QString> texts = linesAt(lines, startsOf(travels));
    const auto exists = [&](int row) { return row >= 0 && row < int(lines.size()); };
    for (const auto& [from, to] : travels) {
        if (!exists(from) || !exists(to))
            continue;
        const Direction direction = to < from ? Direction::Up : Direction::Down;
        for (int row = from; row != to && move(row, direction); row += int(direction))
            lines.swapItemsAt(row, row + int(direction));
    }
    return rowsOf(lines, texts);
}

/// Where the records of tracks that travel stand in the table. Ten thousand moves cost little more
/// than one: they only count places, and the records change theirs at the end.
class RecordMoves {
 public:
    RecordMoves(const Project& project, const QString& list, const QStringList& lines,
                const Rows& rows)
        : table_(project.TrackTable), order_(table_.size()), trackAtSlot_(table_.size(), -1) {
        std::iota(order_.begin(), order_.end(), 0);
        QHash<QString, int> numbers;
        for (const int row : rows)
            if (const auto text = lineAt(lines, row); text && !numbers.contains(*text))
                numbers.insert(*text, int(numbers.size()));
        places_.resize(numbers.size());
        // Slot 0 is no record: it is neither moved nor a partner.
        for (qsizetype slot = 1; slot < table_.size(); ++slot) {
            if (!table_[slot].groupName.is(list))
                continue;
            const int track = numbers.value(table_[slot].itemName.text(), -1);
            trackAtSlot_[slot] = track;
            if (track >= 0)
                places_[track].append(slot);
        }
        trackAtRow_ = QList<int>(lines.size(), -1);
        for (int row = 0; row < int(lines.size()); ++row)
            trackAtRow_[row] = numbers.value(lines[row], -1);
    }

    // False when the record of the track in that row has no neighbour there.
    bool move(int row, Direction direction) {
        Q_ASSERT(trackAtRow_[row] >= 0);
        const qsizetype slot = slotOf(places_[trackAtRow_[row]]);
        const qsizetype partner = slot + int(direction);
        if (slot > 0 && (partner < 1 || partner >= table_.size()))
            return false;
        trackAtRow_.swapItemsAt(row, row + int(direction));
        if (slot <= 0)
            return true;
        order_.swapItemsAt(slot, partner);
        const int one = trackAtSlot_[slot], other = trackAtSlot_[partner];
        if (one == other)
            return true;
        takePlace(one, slot, partner);
        takePlace(other, partner, slot);
        trackAtSlot_.swapItemsAt(slot, partner);
        return true;
    }

    void applyTo(Project& project) const {
        for (qsizetype slot = 0; slot < order_.size(); ++slot)
            if (order_[slot] != slot)
                project.TrackTable[slot] = table_[order_[slot]];
    }

 private:
    // The record that moves with a track: the first one that has the file which the page shows for
    // it; none for a track without a record. Of several tracks of one name only the first plays.
    qsizetype slotOf(const QList<qsizetype>& places) const {
        const auto recordAt = [this](qsizetype slot) -> const TrackRecord& {
            return table_[order_[slot]];
        };
        const auto shown = std::find_if(places.begin(), places.end(),
                                        [&](qsizetype slot) { return isMusic(recordAt(slot)); });
        if (shown == places.begin() && shown != places.end())
            return *shown;
        const QString path = shown == places.end() ? QString() : recordAt(*shown).sourcePath.text();
        const auto found = std::find_if(places.begin(), places.end(), [&](qsizetype slot) {
            return recordAt(slot).sourcePath.is(path);
        });
        return found == places.end() ? -1 : *found;
    }

    void takePlace(int track, qsizetype from, qsizetype to) {
        if (track >= 0)
            std::replace(places_[track].begin(), places_[track].end(), from, to);
    }

    const QList<TrackRecord> table_;  // as it was
    QList<qsizetype> order_;          // for each slot, the one that its record comes from
    QList<int> trackAtSlot_;  // the track that travels and has its record there; -1 for none
    QList<int> trackAtRow_;
    QList<QList<qsizetype>> places_;  // for each track that travels, ascending
};

}  // namespace

QList<RowTravel> travelsByOne(const Rows& rows, qsizetype count, Direction direction) {
    QList<RowTravel> travels;
    const bool isUp = direction == Direction::Up;
    int wall = isUp ? -1 : int(count);  // no row goes there
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const int row = rows[isUp ? i : rows.size() - 1 - i];
        const int to = row + int(direction) == wall ? row : row + int(direction);
        travels.append({row, to});
        wall = to;
    }
    return travels;
}

QList<RowTravel> travelsBefore(const Rows& rows, int before) {
    QList<RowTravel> travels;
    const auto middle = std::lower_bound(rows.begin(), rows.end(), before);
    int to = before;
    for (auto row = middle; row != rows.begin();)
        travels.append({*--row, --to});
    to = before;
    for (auto row = middle; row != rows.end(); ++row)
        travels.append({*row, to++});
    return travels;
}

Rows moveLines(QStringList& lines, const QList<RowTravel>& travels) {
    return travel(lines, travels, [](int, Direction) { return true; });
}

Rows moveTracks(Project& project, const QString& list, QStringList& lines,
                const QList<RowTravel>& travels) {
    RecordMoves records(project, list, lines, startsOf(travels));
    const Rows rows = travel(
        lines, travels, [&](int row, Direction direction) { return records.move(row, direction); });
    records.applyTo(project);
    return rows;
}

void reorderTracks(Project& project, const QString& list, QStringList& lines,
                   const QList<int>& order) {
    Q_ASSERT(order.size() == lines.size());
    QStringList ordered;
    QHash<QString, int> rows;
    for (const int row : order) {
        rows.insert(lines[row], int(ordered.size()));
        ordered.append(lines[row]);
    }
    QList<qsizetype> places;
    for (qsizetype slot = 1; slot < project.TrackTable.size(); ++slot)
        if (const TrackRecord& record = project.TrackTable[slot];
            isMusic(record) && record.groupName.is(list) && rows.contains(record.itemName.text()))
            places.append(slot);
    const QList<TrackRecord> before = project.TrackTable;
    QList<qsizetype> sorted = places;
    std::stable_sort(sorted.begin(), sorted.end(), [&](qsizetype a, qsizetype b) {
        return rows[before[a].itemName.text()] < rows[before[b].itemName.text()];
    });
    for (qsizetype i = 0; i < places.size(); ++i)
        if (places[i] != sorted[i])
            project.TrackTable[places[i]] = before[sorted[i]];
    lines = ordered;
}

}  // namespace tessaly
