// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/row_moves.h"

#include <QHash>
#include <algorithm>
#include <cstdlib>
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

// Takes every travel as far as `go` gets: that returns the row that was reached.
template <typename Go>
Rows travel(QStringList& lines, const QList<RowTravel>& travels, const Go& go) {
    const QSet<QString> texts = linesAt(lines, startsOf(travels));
    const auto exists = [&](int row) { return row >= 0 && row < int(lines.size()); };
    QList<int> order(lines.size());  // for each row, the one that its line comes from
    std::iota(order.begin(), order.end(), 0);
    for (const auto& [from, to] : travels)
        if (exists(from) && exists(to))
            order.move(from, go(from, to));
    const QStringList before = lines;
    for (int row = 0; row < int(order.size()); ++row)
        if (order[row] != row)
            lines[row] = before[order[row]];
    return rowsOf(lines, texts);
}

/// Where the records of tracks that travel stand in the table. Five thousand tracks that pass five
/// thousand others make 25 million moves: so they only count places, a whole way at once where they
/// can, and the records change theirs at the end.
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

    // Moves the track in a row until it is in the other, or its record has no neighbour on that
    // side. Returns the row that was reached.
    int go(int from, int to) {
        Q_ASSERT(trackAtRow_[from] >= 0);
        const int step = to < from ? -1 : 1;
        if (places_[trackAtRow_[from]].size() <= 1)
            return goAtOnce(from, std::abs(to - from), step);
        int row = from;
        for (; row != to && move(row, step); row += step) {
        }
        return row;
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

    // A track with one record at most: the same one moves at every step.
    int goAtOnce(int from, int steps, int step) {
        const int track = trackAtRow_[from];
        const qsizetype slot = slotOf(places_[track]);
        if (slot > 0) {
            const qsizetype neighbours = step < 0 ? slot - 1 : table_.size() - 1 - slot;
            steps = int(std::min<qsizetype>(steps, neighbours));
            const qsizetype end = slot + qsizetype(steps) * step;
            const auto firstPassed = trackAtSlot_.cbegin() + std::min(slot + 1, end);
            // Rarely does one of them travel, too; to know that takes no branch in the loop.
            if (std::reduce(firstPassed, firstPassed + steps, -1,
                            [](int a, int b) { return std::max(a, b); }) >= 0)
                for (qsizetype passed = slot + step; passed != end + step; passed += step)
                    takePlace(trackAtSlot_[passed], passed, passed - step);
            takePlace(track, slot, end);
            order_.move(slot, end);
            trackAtSlot_.move(slot, end);
        }
        trackAtRow_.move(from, from + steps * step);
        return from + steps * step;
    }

    // False when the record of the track in that row has no neighbour there.
    bool move(int row, int step) {
        const qsizetype slot = slotOf(places_[trackAtRow_[row]]);
        const qsizetype partner = slot + step;
        if (slot > 0 && (partner < 1 || partner >= table_.size()))
            return false;
        trackAtRow_.swapItemsAt(row, row + step);
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

    void takePlace(int track, qsizetype from, qsizetype to) {
        if (track >= 0)
            std::replace(places_[track].begin(), places_[track].end(), from, to);
    }

    const QList<TrackRecord> table_;  // as it was
    QList<int> order_;                // for each slot, the one that its record comes from
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
    return travel(lines, travels, [](int, int to) { return to; });
}

Rows moveTracks(Project& project, const QString& list, QStringList& lines,
                const QList<RowTravel>& travels) {
    RecordMoves records(project, list, lines, startsOf(travels));
    const Rows rows =
        travel(lines, travels, [&](int from, int to) { return records.go(from, to); });
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
    const QList<TrackRecord> before = project.TrackTable;
    QList<std::pair<int, qsizetype>> sorted;  // row and place of each record
    QList<qsizetype> places;
    for (qsizetype slot = 1; slot < before.size(); ++slot)
        if (const TrackRecord& record = before[slot]; isMusic(record) && record.groupName.is(list))
            if (const int row = rows.value(record.itemName.text(), -1); row >= 0) {
                sorted.append({row, slot});
                places.append(slot);
            }
    std::sort(sorted.begin(), sorted.end());
    for (qsizetype i = 0; i < places.size(); ++i)
        if (places[i] != sorted[i].second)
            project.TrackTable[places[i]] = before[sorted[i].second];
    lines = ordered;
}

}  // namespace tessaly
