// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/tour_import.h"

#include <QDir>

#include "editor/add_summary.h"
#include "editor/folder_tree.h"
#include "editor/imported_list.h"
#include "editor/speech_matching.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The two folders of a tour; empty where there is none.
struct TourFolders {
    QString speech, music;
    QStringList others;  // what stands beside them

    bool isTour() const { return !speech.isEmpty() || !music.isEmpty(); }
};

TourFolders tourFoldersIn(const FileSystem& files, const QString& root) {
    TourFolders found;
    const auto take = [](QString& folder, const QString& path) {
        if (!folder.isEmpty())
            throw TessalyError(error_number::BadImport,
                               u"%1 and %2 are two folders for one thing: make one of them."_s.arg(
                                   shownPath(folder), shownPath(path)));
        folder = path;
    };
    for (const FolderEntry& entry : orderedEntries(files, root)) {
        const QString path = pathIn(root, entry.name);
        if (entry.isFolder && entry.name.compare(u"Speech", Qt::CaseInsensitive) == 0)
            take(found.speech, path);
        else if (entry.isFolder && entry.name.compare(u"Music", Qt::CaseInsensitive) == 0)
            take(found.music, path);
        else
            found.others.append(path);
    }
    return found;
}

class FolderImport {
 public:
    FolderImport(const FileSystem& files, const Mp3Tags& tags, bool titlesFromTags,
                 Project& project)
        : files_(files), tags_(tags), titlesFromTags_(titlesFromTags), project_(project) {}

    void importSpeech(const QString& folder);
    void importMusic(const QString& folder);
    void leaveOut(const QString& path, const QString& why);
    ImportReport report;

 private:
    QStringList mp3sOf(const QString& folder);
    QStringList foldersOf(const QString& folder, const QString& what);
    QString trackName(const QString& path, const QString& file) const;
    void noteChange(const QString& what, const QString& whole, const QString& name);

    const FileSystem& files_;
    const Mp3Tags& tags_;
    const bool titlesFromTags_;
    Project& project_;
    qsizetype characters_ = 0;  // of all lines
};

QStringList FolderImport::mp3sOf(const QString& folder) {
    QStringList names;
    for (const FolderEntry& entry : orderedEntries(files_, folder)) {
        if (!entry.isFolder && isMp3Name(entry.name))
            names.append(entry.name);
        else
            leaveOut(pathIn(folder, entry.name), u"is no MP3 file"_s);
    }
    return names;
}

QStringList FolderImport::foldersOf(const QString& folder, const QString& what) {
    QStringList names;
    for (const FolderEntry& entry : orderedEntries(files_, folder)) {
        if (entry.isFolder)
            names.append(entry.name);
        else
            leaveOut(pathIn(folder, entry.name), u"stands in no folder of a "_s + what);
    }
    return names;
}

void FolderImport::leaveOut(const QString& path, const QString& why) {
    report.notes.append(u"%1 %2 and was left out."_s.arg(shownPath(path), why));
}

void FolderImport::noteChange(const QString& what, const QString& whole, const QString& name) {
    if (name != whole)
        report.notes.append(u"The %1 \"%2\" became \"%3\"."_s.arg(what, elided(whole), name));
}

void FolderImport::importSpeech(const QString& folder) {
    QStringList languages;
    for (const QString& name : foldersOf(folder, u"language"_s))
        languages.append(pathIn(folder, name));
    const AddSummary summary = applySpeechPlan(project_, planSpeech(project_, files_, languages));
    report.notes += summary.lines;
    if (summary.moreLines > 0)
        report.notes.append(u"... and %1 more."_s.arg(grouped(summary.moreLines)));
    report.speechFiles = summary.added;
}

QString FolderImport::trackName(const QString& path, const QString& file) const {
    QString name;
    if (titlesFromTags_)
        name = tags_.read(path).merged().title;
    return name.isEmpty() ? nameOfMp3(file) : name;
}

void FolderImport::importMusic(const QString& folder) {
    for (const QString& name : foldersOf(folder, u"music list"_s)) {
        const QString listFolder = pathIn(folder, name);
        const QStringList found = mp3sOf(listFolder);
        if (found.isEmpty()) {
            report.notes.append(
                u"%1 holds no MP3 file and makes no list."_s.arg(shownPath(listFolder)));
            continue;
        }
        const QString list = addMusicList(project_, firstCharacters(name, limits::DisplayText));
        noteChange(u"music list"_s, name.normalized(QString::NormalizationForm_C), list);
        QStringList names;
        QList<ImportedTrack> tracks;
        for (const QString& file : found) {
            const QString path = pathIn(listFolder, file);
            names.append(trackName(path, file));
            tracks.append({firstCharacters(names.last(), limits::DisplayText),
                           QDir::toNativeSeparators(path)});
        }
        UniqueNames taken;
        const QStringList lines =
            appendTracks(project_, list, tracks, RecordNames::AsListed, taken, characters_);
        for (qsizetype i = 0; i < lines.size(); ++i)
            noteChange(u"track"_s, names[i], lines[i]);
        report.tracks += int(lines.size());
    }
}

}  // namespace

bool isTourFolder(const FileSystem& files, const QString& folder) {
    return tourFoldersIn(files, folder).isTour();
}

ImportReport importFolder(const FileSystem& files, const Mp3Tags& tags, const QString& folder,
                          bool titlesFromTags, Project& project) {
    const QString root = QDir(folder).absolutePath();
    FolderImport run(files, tags, titlesFromTags, project);
    const TourFolders tour = tourFoldersIn(files, root);
    if (!tour.isTour())
        throw TessalyError(
            error_number::BadImport,
            shownPath(root) + u": the folder holds neither a Music nor a Speech folder."_s);
    for (const QString& other : tour.others)
        run.leaveOut(other, u"stands in neither the Music nor the Speech folder"_s);
    // Speech first, as a project file has it: so the MP3 files on the card have the same numbers
    // before the project is saved and after it is opened.
    if (!tour.speech.isEmpty())
        run.importSpeech(tour.speech);
    if (!tour.music.isEmpty())
        run.importMusic(tour.music);
    if (run.report.tracks + run.report.speechFiles == 0)
        throw TessalyError(error_number::BadImport,
                           shownPath(root) + u": there is no MP3 file to import."_s);
    return run.report;
}

}  // namespace tessaly
