// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_editor.h"

#include <QSet>
#include <utility>

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

}  // namespace

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
    QSet<std::pair<QString, QString>> names, cleared;
    for (const SpeechSelection& pair : pairs)
        names.insert(
            {project.lstSpTitles.value(pair.title), project.lstLangs.value(pair.language)});
    for (TrackRecord& record : project.TrackTable) {
        const std::pair name(record.itemName.text(), record.groupName.text());
        if (!isSpeech(record) || !names.contains(name))
            continue;
        record.kind = kind::Empty;
        cleared.insert(name);
    }
    return int(cleared.size());
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
