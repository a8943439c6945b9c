// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/missing_match.h"

#include <QSet>
#include <algorithm>
#include <iterator>
#include <numeric>
#include <tuple>
#include <utility>

#include "editor/path_tails.h"
#include "sound/quick_look.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

using Outcome = RelinkLine::Outcome;

// Of more files that fit equally well none is looked at: that would grow as a square.
constexpr qsizetype MostMeasured = 1000, MostCompared = 20;

class Matcher {
 public:
    Matcher(const SearchedFolder& found, const AskSeconds& secondsOf, const AskKnown& known)
        : found_(found), secondsOf_(secondsOf), known_(known), tails_(found.paths) {}

    // The files whose paths end as that of a missing one does.
    PathTails::Found endsLike(const QString& missing);

    // What is to be done about it. To be asked for those with longer ends in common first: a file
    // that is one of them is no other.
    RelinkLine lineOf(const QString& missing, const PathTails::Found& ends);

 private:
    QList<int> withoutGiven(const PathTails::Found& ends) const;
    QList<int> spelledAlike(const QList<int>& fitting, const QString& missing, int parts) const;
    bool plays(int file, int seconds);
    std::pair<QList<int>, Outcome> narrowed(const QList<int>& fitting, const KnownFile& known);

    const SearchedFolder& found_;
    const AskSeconds& secondsOf_;
    const AskKnown& known_;
    PathTails tails_;
    std::optional<PathTails> tailsInUnits_;  // once a "?" needs them
    QHash<int, int> given_;                  // by file: the parts in common with the one it is
    QHash<int, int> seconds_;                // of files that were asked
};

PathTails::Found Matcher::endsLike(const QString& missing) {
    const PathTails::Found composed = tails_.longest(missing);
    if (!missing.contains(u'?'))
        return composed;
    if (!tailsInUnits_)
        tailsInUnits_.emplace(found_.paths, PathTails::Form::OneUnitEach);
    const PathTails::Found inUnits = tailsInUnits_->longest(missing);
    return inUnits.parts > composed.parts ? inUnits : composed;
}

bool Matcher::plays(int file, int seconds) {
    if (seconds == 0)
        return false;
    auto known = seconds_.constFind(file);
    if (known == seconds_.constEnd())
        known = seconds_.insert(file, secondsOf_(found_.paths[file]));
    return *known == seconds;
}

// Those of several files that have what is known, and which of the two it was if one is left.
std::pair<QList<int>, Outcome> Matcher::narrowed(const QList<int>& fitting,
                                                 const KnownFile& known) {
    QList<int> left = fitting;
    const auto leavesOne = [&left](const auto& isAlike) {
        QList<int> alike;
        std::ranges::copy_if(left, std::back_inserter(alike), isAlike);
        if (!alike.isEmpty())
            left = alike;
        return left.size() == 1;
    };
    if (known.size && left.size() <= MostMeasured &&
        leavesOne([&](int file) { return found_.sizes[file] == *known.size; }))
        return {left, Outcome::BySize};
    if (left.size() <= MostCompared &&
        leavesOne([&](int file) { return plays(file, known.seconds); }))
        return {left, Outcome::ByLength};
    return {left, Outcome::Several};
}

QList<int> Matcher::withoutGiven(const PathTails::Found& ends) const {
    if (ends.paths.size() > MostMeasured)
        return ends.paths;
    QList<int> left = ends.paths;
    left.removeIf([&](int file) { return given_.value(file) > ends.parts; });
    return left;
}

// Of files whose paths differ in case alone that one.
QList<int> Matcher::spelledAlike(const QList<int>& fitting, const QString& missing,
                                 int parts) const {
    if (fitting.size() < 2 || fitting.size() > MostCompared)
        return fitting;
    const QStringList end = pathParts(missing).last(parts);
    QList<int> alike;
    std::ranges::copy_if(fitting, std::back_inserter(alike), [&](int file) {
        return pathParts(found_.paths[file]).last(parts) == end;
    });
    return alike.size() == 1 ? alike : fitting;
}

RelinkLine Matcher::lineOf(const QString& missing, const PathTails::Found& ends) {
    RelinkLine line{.oldPath = missing};
    if (ends.parts == 0)
        return line;
    line.parts = ends.parts;
    line.outcome = ends.parts == 1 ? Outcome::ByName : Outcome::ByPath;
    QList<int> fitting = spelledAlike(withoutGiven(ends), missing, ends.parts);
    if (fitting.isEmpty()) {
        fitting = ends.paths;
        line.outcome = Outcome::Shared;
    } else if (fitting.size() > 1 || ends.parts == 1) {
        const KnownFile known = known_ ? known_(missing) : KnownFile{};
        if (fitting.size() > 1)
            std::tie(fitting, line.outcome) = narrowed(fitting, known);
        else if (found_.sizes[fitting[0]] == known.size)
            line.outcome = Outcome::BySize;
        else if (plays(fitting[0], known.seconds))
            line.outcome = Outcome::ByLength;
        else if (known.size || known.seconds > 0)
            line.outcome = Outcome::OtherFile;
    }
    line.fitting = fitting.size();
    if (fitting.size() == 1) {
        line.newPath = found_.paths[fitting[0]];
        int& parts = given_[fitting[0]];
        parts = std::max(parts, line.parts);
    } else {
        for (const int file : fitting.mid(0, RelinkLine::MostShown))
            line.several.append(found_.paths[file]);
    }
    return line;
}

// How well a file fits: the end of the path first, then what is known of it.
int rankOf(const RelinkLine& line) {
    const int known = line.outcome == Outcome::BySize ? 2 : line.outcome == Outcome::ByLength;
    return 3 * line.parts + known;
}

// One file cannot be two that are missing: it is the one that it fits better, or neither. Two
// spellings of one path are one.
void settleShared(QList<RelinkLine>& lines) {
    struct Claim {
        int rank = 0;
        QString path;
        bool isContested = false;
    };
    QHash<QString, Claim> best;
    for (const RelinkLine& line : std::as_const(lines)) {
        if (!line.isFound())
            continue;
        Claim& claim = best[line.newPath];
        const QString path = comparedPath(line.oldPath);
        if (rankOf(line) > claim.rank)
            claim = {rankOf(line), path, false};
        else if (rankOf(line) == claim.rank && path != claim.path)
            claim.isContested = true;
    }
    for (RelinkLine& line : lines)
        if (const auto claim = best.constFind(line.newPath);
            line.isFound() && (claim->isContested || rankOf(line) < claim->rank))
            line.outcome = Outcome::Shared;
}

}  // namespace

int playingSeconds(const QString& path) {
    return int(quickLook(path).milliseconds / 1000);
}

AskKnown knownFrom(const QHash<QString, QString>& copies, const FileSystem& files,
                   const SoundBook& book) {
    return [copies, &files, &book](const QString& path) {
        if (const QString copy = copies.value(path); !copy.isEmpty())
            return KnownFile{files.fileSize(copy), playingSeconds(copy)};
        const auto last = book.remembered(path);
        return last ? KnownFile{last->stamp.bytes, int(last->sound.quick.milliseconds / 1000)}
                    : KnownFile{};
    };
}

RelinkPlan planRelink(const Project& project, const QStringList& missing,
                      const SearchedFolder& found, const AskSeconds& secondsOf,
                      const AskKnown& known, const KeepGoing& keepGoing) {
    RelinkPlan plan{.lines = {}, .leftOut = found.leftOut};
    if (plan.leftOut.isCancelled)
        return plan;
    QSet<QString> inUse;
    for (const QString& path : sourcePaths(project))
        inUse.insert(comparedPath(path));
    RelinkPlan cancelled;
    cancelled.leftOut.isCancelled = true;
    const qsizetype steps = 2 * missing.size();
    Matcher matcher(found, secondsOf, known);
    QList<PathTails::Found> ends;
    for (const QString& path : missing) {
        if (!goesOn(keepGoing, ends.size(), steps))
            return cancelled;
        ends.append(matcher.endsLike(path));
    }
    QList<qsizetype> order(missing.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, std::greater(), [&](qsizetype i) { return ends[i].parts; });
    plan.lines.resize(missing.size());
    for (qsizetype done = 0; done < order.size(); ++done) {
        if (!goesOn(keepGoing, missing.size() + done, steps))
            return cancelled;
        const qsizetype i = order[done];
        RelinkLine& line = plan.lines[i] = matcher.lineOf(missing[i], ends.at(i));
        if (line.outcome == Outcome::ByName && inUse.contains(comparedPath(line.newPath)))
            line.outcome = Outcome::InUse;
    }
    settleShared(plan.lines);
    for (RelinkLine& line : plan.lines)
        line.taken = line.isFound();
    std::stable_partition(plan.lines.begin(), plan.lines.end(),
                          [](const RelinkLine& line) { return !line.taken; });
    return plan;
}

}  // namespace tessaly
