// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/file_display.h"

#include "model/music_lists.h"
#include "model/numbers.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

FileDisplay displayOf(const TrackRecord* record, const QString& item, const FileSystem& files) {
    FileDisplay display;
    if (!record)
        return display;
    display.path = record->sourcePath.text();
    display.record = record;
    display.stamp = files.stamp(display.path);
    if (display.stamp) {
        display.size = megabytes(display.stamp->bytes);
        display.sounds = {{.what = item, .path = display.path}};
    }
    return display;
}

QString inLanguage(const QString& title, const QString& language) {
    return u"%1 in %2"_s.arg(title, language);
}

}  // namespace

FileDisplay speechDisplay(const Project& project, const SpeechSelection& selected,
                          const FileSystem& files) {
    const auto title = lineAt(project.lstSpTitles, selected.title);
    const auto language = lineAt(project.lstLangs, selected.language);
    if (!title || !language)
        return {};
    return displayOf(shownRecord(project, {kind::Speech, title, language}),
                     inLanguage(*title, *language), files);
}

FileDisplay musicDisplay(const Project& project, const MusicSelection& selected,
                         const FileSystem& files, const Mp3Tags& tags) {
    const auto list = lineAt(project.lstMuList, selected.list);
    const auto track =
        list ? lineAt(tracksOfMusicList(project, *list), selected.track) : std::nullopt;
    if (!track)
        return {};
    FileDisplay display =
        displayOf(shownRecord(project, {kind::Music, track, list}), *track, files);
    if (display.path.isEmpty())
        return display;
    display.tags = tags.read(display.path).merged();
    return display;
}

QList<Sound> chimeSound(const Project& project) {
    if (!project.buttPlayIntChime || project.txtChimeFileName.isEmpty())
        return {};
    return {{.what = u"the chime"_s, .path = project.txtChimeFileName, .isChime = true}};
}

QList<Sound> announcement(const Project& project, int title, const FileSystem& files) {
    const auto name = lineAt(project.lstSpTitles, title);
    if (!name)
        return {};
    QHash<QString, QString> paths;  // by language; the first record of a pair counts
    for (const TrackRecord& record : project.TrackTable)
        if (record.kind == kind::Speech && record.itemName == *name)
            if (const QString language = record.groupName.text(); !paths.contains(language))
                paths.insert(language, record.sourcePath.text());
    QList<Sound> sounds;
    bool isAnyThere = false;
    for (const QString& language : project.lstLangs) {
        const auto path = paths.constFind(language);
        if (path == paths.constEnd())
            continue;
        if (sounds.isEmpty() || project.buttChimeAlways)
            sounds += chimeSound(project);
        sounds.append({.what = inLanguage(*name, language), .path = *path});
        isAnyThere = isAnyThere || files.fileSize(*path);
    }
    return isAnyThere ? sounds : QList<Sound>();
}

}  // namespace tessaly
