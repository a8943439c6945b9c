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

EditorControls speechControls(const Project& project, const SpeechSelection& selected,
                              const QString& newTitle, const QString& newLanguage) {
    const bool hasTitle = selected.title >= 0;
    const bool hasLanguage = selected.language >= 0;
    const bool hasRoom = project.lstLangs.size() < limits::Languages;
    return {.first = {.add = !newTitle.isEmpty(), .change = hasTitle},
            .second = {.add = !newLanguage.isEmpty() && hasRoom, .change = hasLanguage},
            .chooseFile = hasTitle && hasLanguage,
            .clearFile = hasTitle && hasLanguage && hasFile(project, selected)};
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

EditResult deleteSpeechTitle(Project& project, int title) {
    project.unsavedChanges = true;
    const auto name = lineAt(project.lstSpTitles, title);
    if (!name)
        return {.row = title};
    emptyItems(project, Among::Both, {.kind = kind::Speech, .item = name});
    return {.isDone = true, .row = removeLine(project.lstSpTitles, title), .name = *name};
}

EditResult deleteLanguage(Project& project, int language) {
    project.unsavedChanges = true;
    const auto name = lineAt(project.lstLangs, language);
    if (!name)
        return {.row = language};
    emptyItems(project, Among::Records, {.kind = kind::Speech, .group = name});
    for (qsizetype i = project.DefaultLanguageTable.size() - 1; i > 0; --i)
        if (project.DefaultLanguageTable[i].groupName.is(*name))
            project.DefaultLanguageTable.removeAt(i);
    return {.isDone = true, .row = removeLine(project.lstLangs, language), .name = *name};
}

EditResult moveSpeechTitle(Project& project, int title, Direction direction) {
    return moveLine(project.lstSpTitles, title, direction);
}

EditResult moveLanguage(Project& project, int language, Direction direction) {
    return moveLine(project.lstLangs, language, direction);
}

}  // namespace tessaly
