// SPDX-License-Identifier: GPL-3.0-or-later
#include <QHash>
#include <QSet>
#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <utility>

#include "editor/folder_tree.h"
#include "editor/speech_languages.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

// How much of a file's name tells titles apart: as little as keeps two files of one language apart.
enum Level { Plain, WithNumber, Whole, Exact };
constexpr int Levels = 4;

struct FileName {
    std::array<QString, Levels> texts;  // by level; each as a title would have it
    std::array<QString, Levels> keys;
};

// `numbered` is the name without the language that it ends with.
FileName fileNameOf(const QString& whole, const QString& numbered) {
    FileName name{.texts = {withoutNumber(numbered), numbered, whole, whole}, .keys = {}};
    for (const Level level : {Plain, WithNumber, Whole})
        name.keys[level] = level > Plain && name.texts[level] == name.texts[level - 1]
                               ? name.keys[level - 1]
                               : nameKey(name.texts[level]);
    name.keys[Exact] = whole;
    return name;
}

// Files of one title, by their lines.
struct Group {
    QList<qsizetype> lines;
    Level level = Plain;
    QString title = {};  // of the project; empty while none is found
};

class TitleMatching {
 public:
    TitleMatching(const Project& project, const LanguageNames& languages,
                  QList<SpeechPlanLine>& lines, const KeepGoing& keepGoing)
        : project_(project), languages_(languages), lines_(lines), keepGoing_(keepGoing) {}

    bool run();

 private:
    void split(const QList<qsizetype>& lines, int level);
    bool hasLanguageTwice(const QList<qsizetype>& lines) const;
    QString textOf(const Group& group) const {
        return names_[group.lines.first()].texts[group.level];
    }
    QString firstFile(const Group& group) const;
    bool readNames();
    bool matchWholeNames();
    void matchCutNames();
    void nameNewTitles();

    const Project& project_;
    const LanguageNames& languages_;
    QList<SpeechPlanLine>& lines_;
    const KeepGoing& keepGoing_;
    QList<FileName> names_;
    QList<Group> groups_;
    QSet<QString> matched_;  // titles of the project
};

bool TitleMatching::hasLanguageTwice(const QList<qsizetype>& lines) const {
    QSet<QString> languages;
    for (const qsizetype line : lines)
        languages.insert(lines_[line].language);
    return languages.size() < lines.size();
}

// Parts lines into groups of one title each.
void TitleMatching::split(const QList<qsizetype>& lines, int level) {
    QHash<QString, qsizetype> found;
    QList<QList<qsizetype>> parts;
    for (const qsizetype line : lines) {
        const QString& key = names_[line].keys[level];
        if (!found.contains(key)) {
            found.insert(key, parts.size());
            parts.append(QList<qsizetype>());
        }
        parts[found[key]].append(line);
    }
    for (const auto& part : parts)
        if (level < Exact && hasLanguageTwice(part))
            split(part, level + 1);
        else
            groups_.append({.lines = part, .level = Level(level)});
}

// The file name that comes first decides the order of new titles.
QString TitleMatching::firstFile(const Group& group) const {
    QString first;
    for (const qsizetype line : group.lines)
        if (const QString name = lastNameOf(lines_[line].path);
            first.isEmpty() || comesBefore(name, first))
            first = name;
    return first;
}

bool TitleMatching::readNames() {
    // Most languages have files of the same names.
    QHash<QString, std::optional<LanguageEnding>> endings;
    QHash<std::pair<QString, QString>, FileName> names;
    for (const SpeechPlanLine& line : lines_) {
        if (!goesOn(keepGoing_, names_.size(), lines_.size()))
            return false;
        const QString whole = nameOfMp3(lastNameOf(line.path));
        if (!endings.contains(whole))
            endings.insert(whole, languages_.endingOf(whole));
        const auto& ending = endings[whole];
        // "Learn German" in English is about another language.
        const bool endsSo = ending && !ending->rest.isEmpty() &&
                            (ending->isSetOff || ending->language == line.language);
        const std::pair name(whole, endsSo ? ending->rest : whole);
        if (!names.contains(name))
            names.insert(name, fileNameOf(name.first, name.second));
        names_.append(names[name]);
    }
    return true;
}

// The project's titles by name, first those of the very name, then those with a number in front.
bool TitleMatching::matchWholeNames() {
    QHash<QString, QStringList> titles, unnumbered;
    for (const QString& title : project_.lstSpTitles) {
        titles[nameKey(title)].append(title);
        unnumbered[nameKey(withoutNumber(title))].append(title);
    }
    const auto take = [&](Group& group, const QStringList& found) {
        for (const QString& title : found)
            if (group.title.isEmpty() && !matched_.contains(title)) {
                group.title = title;
                matched_.insert(title);
            }
    };
    const auto keyOf = [this](qsizetype line, int level) {  // Exact is no other name than Whole
        return names_[line].keys[std::min<int>(level, Whole)];
    };
    qsizetype done = 0;
    for (Group& group : groups_) {
        if (!goesOn(keepGoing_, done++, groups_.size()))
            return false;
        for (int level = Exact; level >= group.level; --level)
            for (const qsizetype line : group.lines)
                take(group, titles.value(keyOf(line, level)));
    }
    for (Group& group : groups_)
        for (int level = Exact; level >= group.level; --level)
            for (const qsizetype line : group.lines)
                if (const auto found = unnumbered.value(keyOf(line, level)); found.size() == 1)
                    take(group, found);
    return true;
}

// A title that was made of a long name has its first characters only, and a number where several
// names begin alike. Such names find their titles by their order, if there are as many of both.
void TitleMatching::matchCutNames() {
    QHash<QString, QStringList> titles;
    for (const QString& title : project_.lstSpTitles)
        if (!matched_.contains(title))
            titles[nameKey(withoutNumber(title))].append(title);
    QHash<QString, QList<Group*>> groups;
    for (Group& group : groups_) {
        const QString name = textOf(group);
        const QString cut = firstCharacters(name, limits::DisplayText);
        if (group.title.isEmpty() && cut != name)
            groups[nameKey(withoutNumber(cut))].append(&group);
    }
    for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
        const QStringList found = titles.value(it.key());
        if (found.size() != it->size())
            continue;
        for (qsizetype i = 0; i < found.size(); ++i)
            it->at(i)->title = found[i];
    }
}

void TitleMatching::nameNewTitles() {
    UniqueNames unique(project_.lstSpTitles);
    for (Group& group : groups_) {
        const QString whole = textOf(group);
        const bool isNew = group.title.isEmpty();
        if (isNew)
            group.title = unique.add(firstCharacters(whole, limits::DisplayText));
        for (const qsizetype line : group.lines) {
            lines_[line].title = group.title;
            lines_[line].wholeTitle = isNew ? whole : QString();
        }
    }
}

bool TitleMatching::run() {
    if (!readNames())
        return false;
    QList<qsizetype> all(lines_.size());
    std::iota(all.begin(), all.end(), 0);
    split(all, Plain);
    QList<std::pair<QString, Group>> ordered;
    for (const Group& group : groups_)
        ordered.append({firstFile(group), group});
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto& a, const auto& b) { return comesBefore(a.first, b.first); });
    for (qsizetype i = 0; i < groups_.size(); ++i)
        groups_[i] = ordered[i].second;
    if (!matchWholeNames())
        return false;
    matchCutNames();
    nameNewTitles();
    return true;
}

}  // namespace

bool matchTitles(const Project& project, const LanguageNames& languages,
                 QList<SpeechPlanLine>& lines, const KeepGoing& keepGoing) {
    return TitleMatching(project, languages, lines, keepGoing).run();
}

}  // namespace tessaly
