// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_editor.h"

#include <QBitArray>

#include "model/format_limits.h"
#include "model/music_lists.h"

namespace tessaly {

namespace {

EditResult addLine(QStringList& lines, const QString& name) {
    lines.append(uniqueName(name, lines));
    return {.isDone = true, .row = -1, .name = lines.last()};
}

bool hasFile(const Project& project, const SpeechSelection& pair) {
    return shownRecord(project, {.kind = kind::Speech,
                                 .item = lineAt(project.lstSpTitles, pair.title),
                                 .group = lineAt(project.lstLangs, pair.language)}) != nullptr;
}

// The row of each name; of equal ones the first.
QHash<QString, int> rowsOf(const QStringList& names) {
    QHash<QString, int> rows;
    for (qsizetype row = names.size() - 1; row >= 0; --row)
        rows.insert(names[row], int(row));
    return rows;
}

}  // namespace

SpeechRows::SpeechRows(const Project& project)
    : project_(project),
      titles_(rowsOf(project.lstSpTitles)),
      languages_(rowsOf(project.lstLangs)) {}

SpeechSelection SpeechRows::named(const QString& title, const QString& language) const {
    const SpeechSelection pair{.title = titles_.value(title, -1),
                               .language = languages_.value(language, -1)};
    return pair.title < 0 || pair.language < 0 ? SpeechSelection() : pair;
}

SpeechSelection SpeechRows::of(const TrackRecord& record) const {
    return isSpeech(record) ? named(record.itemName.text(), record.groupName.text())
                            : SpeechSelection();
}

SpeechSelection SpeechRows::first(const SpeechSelection& pair) const {
    const auto title = lineAt(project_.lstSpTitles, pair.title);
    const auto language = lineAt(project_.lstLangs, pair.language);
    return title && language ? named(*title, *language) : SpeechSelection();
}

EditorControls speechControls(const Project& project, const Rows& titles, const Rows& languages,
                              const QString& newTitle, const QString& newLanguage) {
    const bool hasTitle = titles.size() == 1;
    const bool hasLanguage = languages.size() == 1;
    const bool hasRoom = project.lstLangs.size() < limits::Languages;
    return {.first = {.add = !newTitle.isEmpty(), .change = hasTitle, .remove = !titles.isEmpty()},
            .second = {.add = !newLanguage.isEmpty() && hasRoom,
                       .change = hasLanguage,
                       .remove = !languages.isEmpty()},
            .chooseFile = hasTitle && hasLanguage,
            .clearFile =
                hasTitle && hasLanguage && hasFile(project, {titles.first(), languages.first()})};
}

EditResult addSpeechTitle(Project& project, const QString& name) {
    project.unsavedChanges = true;
    return name.isEmpty() ? EditResult() : addLine(project.lstSpTitles, name);
}

EditResult addLanguage(Project& project, const QString& name) {
    project.unsavedChanges = true;
    if (name.isEmpty() || project.lstLangs.size() >= limits::Languages)
        return {};
    return addLine(project.lstLangs, name);
}

EditResult chooseSpeechFile(Project& project, const SpeechSelection& selected,
                            const QString& path) {
    project.unsavedChanges = true;
    const auto title = lineAt(project.lstSpTitles, selected.title);
    const auto language = lineAt(project.lstLangs, selected.language);
    if (!title || !language || path.isEmpty())
        return {.row = selected.title};
    chooseFile(project, {kind::Speech, title, language}, path);
    return {.isDone = true, .row = selected.title, .name = *title};
}

int clearSpeechFiles(Project& project, const QList<SpeechSelection>& pairs) {
    project.unsavedChanges = true;
    const SpeechRows rows(project);
    const qsizetype languages = project.lstLangs.size();
    QBitArray wanted(project.lstSpTitles.size() * languages), cleared(wanted.size());
    for (const SpeechSelection& pair : pairs)
        if (const SpeechSelection at = rows.first(pair); at.title >= 0)
            wanted.setBit(at.title * languages + at.language);
    for (TrackRecord& record : project.TrackTable) {
        const SpeechSelection at = rows.of(record);
        if (at.title < 0 || !wanted.testBit(at.title * languages + at.language))
            continue;
        record.kind = kind::Empty;
        cleared.setBit(at.title * languages + at.language);
    }
    return int(cleared.count(true));
}

EditResult renameSpeechTitle(Project& project, int title, const QString& answer) {
    project.unsavedChanges = true;
    const QString old = lineAt(project.lstSpTitles, title).value_or(QString());
    const auto name = renameLine(project.lstSpTitles, title, answer);
    if (!name)
        return {.row = title};
    renameItems(project, Among::Both, {.kind = kind::Speech, .item = old}, &TrackRecord::itemName,
                *name);
    return {.isDone = true, .row = -1, .name = *name};
}

EditResult renameLanguage(Project& project, int language, const QString& answer) {
    project.unsavedChanges = true;
    const QString old = lineAt(project.lstLangs, language).value_or(QString());
    const auto name = renameLine(project.lstLangs, language, answer);
    if (!name)
        return {.row = language};
    renameItems(project, Among::Records, {.kind = kind::Speech, .group = old},
                &TrackRecord::groupName, *name);
    for (qsizetype i = 1; i < project.DefaultLanguageTable.size(); ++i)
        if (project.DefaultLanguageTable[i].groupName.is(old))
            project.DefaultLanguageTable[i].groupName = *name;
    return {.isDone = true, .row = -1, .name = *name};
}

EditResult deleteSpeechTitles(Project& project, const Rows& titles) {
    project.unsavedChanges = true;
    const QSet<QString> names = linesAt(project.lstSpTitles, titles);
    if (names.isEmpty())
        return {.row = titles.value(0, -1)};
    emptyItems(project, Among::Both, {.kind = kind::Speech, .items = names});
    return removeLines(project.lstSpTitles, titles);
}

EditResult deleteLanguages(Project& project, const Rows& languages) {
    project.unsavedChanges = true;
    const QSet<QString> names = linesAt(project.lstLangs, languages);
    if (names.isEmpty())
        return {.row = languages.value(0, -1)};
    emptyItems(project, Among::Records, {.kind = kind::Speech, .groups = names});
    for (qsizetype i = project.DefaultLanguageTable.size() - 1; i > 0; --i)
        if (names.contains(project.DefaultLanguageTable[i].groupName.text()))
            project.DefaultLanguageTable.removeAt(i);
    return removeLines(project.lstLangs, languages);
}

}  // namespace tessaly
