// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_matching.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <utility>

#include "editor/folder_tree.h"
#include "editor/speech_languages.h"
#include "editor/speech_names.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

using Obstacle = SpeechPlanLine::Obstacle;

namespace {

// Adds what a plan needs to the lines of a list, and says what each is called there.
class NewLines {
 public:
    explicit NewLines(QStringList& lines)
        : lines_(lines), known_(lines.begin(), lines.end()), names_(lines) {}

    // False when it is there already.
    bool add(const QString& name) {
        if (known_.contains(name) || added_.contains(name))
            return false;
        lines_.append(names_.add(name));
        added_.insert(name, lines_.last());
        return true;
    }
    QString nameOf(const QString& name) const { return added_.value(name, name); }

 private:
    QStringList& lines_;
    const QSet<QString> known_;
    UniqueNames names_;
    QHash<QString, QString> added_;
};

// What is to be done: lines that are ticked and have no obstacle. Says why others are not.
QList<SpeechPlanLine> takenLines(const SpeechPlan& plan, AddSummary& summary) {
    QList<SpeechPlanLine> taken;
    for (const SpeechPlanLine& line : plan.lines) {
        if (!line.taken)
            continue;
        switch (line.obstacle) {
            case Obstacle::None:
                taken.append(line);
                break;
            case Obstacle::SecondFile:
                summary.leaveOut(LeftOut::SecondFile, line.path);
                break;
            case Obstacle::NoRoom:
                summary.leaveOut(LeftOut::NoRoom, line.path);
                break;
            case Obstacle::Already:
                summary.leaveOut(LeftOut::Already, line.path);
                break;
            case Obstacle::NoTitle:
            case Obstacle::NoLanguage:
                break;
        }
    }
    return taken;
}

}  // namespace

SpeechPlan planSpeech(const Project& project, const FileSystem& files, const QStringList& paths,
                      const std::optional<QString>& language, const std::optional<QString>& title,
                      const KeepGoing& keepGoing) {
    SpeechPlan plan;
    LanguageNames languages;
    plan.lines =
        linesByLanguage(project, files, paths, language, languages, plan.leftOut, keepGoing);
    if (title)
        for (SpeechPlanLine& line : plan.lines)
            line.title = *title;
    else if (!matchTitles(project, languages, plan.lines, keepGoing))
        plan.leftOut.isCancelled = true;
    if (plan.leftOut.isCancelled)
        plan.lines.clear();
    judgeSpeechPlan(project, plan);
    return plan;
}

void judgeSpeechPlan(const Project& project, SpeechPlan& plan) {
    const TrackIndex index(project);
    const QSet<QString> titles(project.lstSpTitles.begin(), project.lstSpTitles.end());
    QSet<QString> languages(project.lstLangs.begin(), project.lstLangs.end());
    const QSet<QString> before = languages;
    QSet<std::pair<QString, QString>> pairs;
    for (SpeechPlanLine& line : plan.lines) {
        const TrackRecord* record = index.speech(line.title, line.language);
        line.isNewTitle = !line.title.isEmpty() && !titles.contains(line.title);
        line.isNewLanguage = !line.language.isEmpty() && !before.contains(line.language);
        line.replaces = record && !record->sourcePath.is(line.path);
        line.obstacle = line.title.isEmpty()      ? Obstacle::NoTitle
                        : line.language.isEmpty() ? Obstacle::NoLanguage
                                                  : Obstacle::None;
        if (!line.taken || line.obstacle != Obstacle::None)
            continue;
        const std::pair pair(line.title, line.language);
        const bool needsRoom = !languages.contains(line.language);
        if (pairs.contains(pair)) {
            line.obstacle = Obstacle::SecondFile;
        } else if (needsRoom && languages.size() >= limits::Languages) {
            line.obstacle = Obstacle::NoRoom;
        } else {
            line.obstacle = record && !line.replaces ? Obstacle::Already : Obstacle::None;
            languages.insert(line.language);
            pairs.insert(pair);
        }
    }
}

AddSummary applySpeechPlan(Project& project, const SpeechPlan& plan) {
    SpeechPlan judged = plan;
    judgeSpeechPlan(project, judged);
    AddSummary summary = plan.leftOut;
    const QList<SpeechPlanLine> lines = takenLines(judged, summary);

    const auto noteName = [&](const QString& what, const QString& whole, const QString& name,
                              int limit) {
        if (!whole.isEmpty() && name.endsWith(firstCharacters(whole, limit)))
            summary.noteName(what, whole, name, limit);
    };
    NewLines languages(project.lstLangs), titles(project.lstSpTitles);
    for (const SpeechPlanLine& line : lines)
        if (languages.add(line.language)) {
            ++summary.languages;
            noteName(u"The language"_s, line.wholeLanguage, languages.nameOf(line.language),
                     limits::LanguageName);
        }
    QList<std::pair<QString, const SpeechPlanLine*>> byName;
    for (const SpeechPlanLine& line : std::as_const(lines))
        byName.append({lastNameOf(line.path), &line});
    std::stable_sort(byName.begin(), byName.end(),
                     [](const auto& a, const auto& b) { return comesBefore(a.first, b.first); });
    for (const auto& [name, line] : std::as_const(byName))
        if (titles.add(line->title)) {
            ++summary.titles;
            noteName(u"The title"_s, line->wholeTitle, titles.nameOf(line->title),
                     limits::DisplayText);
        }

    // As chooseFile() does it, which looks through the whole table for one pair.
    QHash<std::pair<QString, QString>, QList<qsizetype>> records;
    for (qsizetype i = 0; i < project.TrackTable.size(); ++i)
        if (const TrackRecord& record = project.TrackTable[i]; isSpeech(record))
            records[{record.itemName.text(), record.groupName.text()}].append(i);
    const Variant speech = kind::Speech;  // one text for all
    for (const SpeechPlanLine& line : lines) {
        const QString title = titles.nameOf(line.title), language = languages.nameOf(line.language);
        ++summary.added;
        summary.replaced += line.replaces ? 1 : 0;
        if (const auto there = records.constFind({title, language}); there != records.constEnd()) {
            for (const qsizetype slot : *there)
                project.TrackTable[slot].sourcePath = line.path;
            continue;
        }
        TrackRecord record;
        record.kind = speech;
        record.itemName = title;
        record.groupName = language;
        record.sourcePath = line.path;
        project.TrackTable.append(std::move(record));
    }
    project.unsavedChanges = project.unsavedChanges || summary.added > 0;
    return summary;
}

}  // namespace tessaly
