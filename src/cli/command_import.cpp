// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <algorithm>

#include "cli/commands.h"
#include "cli/console.h"
#include "editor/folder_tree.h"
#include "editor/list_import.h"
#include "editor/music_files.h"
#include "editor/standard_playlist.h"
#include "editor/tour_import.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/mp3_tags.h"
#include "platform/paths.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

TessalyError badImport(const QString& path, const QString& what) {
    return {error_number::BadImport, QDir::toNativeSeparators(path) + u": "_s + what};
}

int importTour(const ImportOptions& options, FileSystem& files, const Mp3Tags& tags) {
    if (options.append)
        throw badImport(options.source,
                        u"only music lists can be added to a project, but this folder "_s
                        u"is a whole tour"_s);
    Project project;
    const ImportReport report =
        importFolder(files, tags, options.source, options.titlesFromTags, project);
    for (const QString& note : report.notes)
        printError(u"note: "_s + oneLine(note));
    saveKeepingOld(files, options.output, project);
    print(u"%1: %2 with %3, %4 in %5 (%6)."_s.arg(
        QDir::toNativeSeparators(options.output),
        counted(project.lstMuList.size(), u"music list"_s), counted(report.tracks, u"track"_s),
        counted(project.lstSpTitles.size(), u"speech title"_s),
        counted(project.lstLangs.size(), u"language"_s), counted(report.speechFiles, u"file"_s)));
    return Done;
}

// A folder of MP3 files or an exported playlist, by the rules of the window's buttons for them.
int importList(const ImportOptions& options, FileSystem& files, const Mp3Tags& tags, bool isFolder,
               const QString& source) {
    Project project;
    if (options.append)
        project = openProject(files, options.output);
    const ImportResult result = isFolder ? importMusicFolder(project, files, tags, source)
                                         : importPlaylist(project, files, tags, source);
    if (result.outcome == ImportResult::Outcome::NoFiles)
        throw badImport(options.source,
                        u"the folder holds neither MP3 files nor a Music or Speech folder"_s);
    for (const ImportMessage& message : result.leftOut + result.messages)
        printError(oneLine(message.text));
    if (result.outcome != ImportResult::Outcome::Imported)
        return Failed;
    if (const QString namesakes = namesakesText(project, result.list); !namesakes.isEmpty()) {
        if (options.giveEachItsFile) {
            giveEachItsFile(project, {result.list});
            printError(u"note: "_s + oneLine(namesakes) + u" Each has its own file now."_s);
        } else {
            printError(u"warning: "_s + oneLine(namesakes) + u' ' + NamesakesFate.toString() +
                       u" Say --give-each-its-file to make them play."_s);
        }
    }
    saveKeepingOld(files, options.output, project);
    const QString line = u"%1: the music list \"%2\" with %3"_s.arg(
        QDir::toNativeSeparators(options.output), oneLine(result.list),
        counted(result.tracks, u"track"_s));
    print(line + (result.tracks == 0 ? u", which no save keeps."_s : u"."_s));
    return Done;
}

// What no button of the window prescribes: a standard playlist, or a folder with folders inside.
int importFiles(const ImportOptions& options, FileSystem& files, const Mp3Tags& tags,
                const QString& source) {
    Project project;
    if (options.append)
        project = openProject(files, options.output);
    const AddSummary summary = addMusicFiles(project, files, tags, {source});
    for (const QString& line : summary.lines)
        printError(u"note: "_s + oneLine(line));
    if (summary.moreLines > 0)
        printError(u"note: ... and %1 more."_s.arg(grouped(summary.moreLines)));
    if (summary.added == 0)
        throw badImport(options.source, u"there is no MP3 file to import"_s);
    saveKeepingOld(files, options.output, project);
    const QString made = summary.lists == 1
                             ? u"the music list \"%1\""_s.arg(oneLine(project.lstMuList.last()))
                             : counted(summary.lists, u"music list"_s);
    print(u"%1: %2 with %3."_s.arg(QDir::toNativeSeparators(options.output), made,
                                   counted(summary.added, u"track"_s)));
    return Done;
}

// Whether MP3 files stand deeper than in the folder itself.
bool hasListsInside(const FileSystem& files, const QString& folder) {
    AddSummary passedOver;
    const QList<Mp3Folder> found = mp3FoldersIn(files, folder, passedOver);
    return std::any_of(found.begin(), found.end(), [&](const Mp3Folder& each) {
        return each.path != QDir::toNativeSeparators(folder);
    });
}

}  // namespace

QString oneLine(QString text) {
    text.replace(u"\r\n"_s, u" "_s);
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    return text;
}

void saveKeepingOld(FileSystem& files, const QString& path, Project& project) {
    for (const QString& lost : pathsOutsideCodePage(project))
        printError(u"warning: a project file cannot hold the path \""_s + oneLine(lost) +
                   u"\": the file is not found when the project is opened."_s);
    for (const QString& text : textsOutsideCodePage(project))
        printError(u"warning: a project file cannot hold \""_s + oneLine(elided(text)) +
                   u"\": characters of it become \"?\"."_s);
    if (files.fileSize(path)) {
        const QString old = path + u".bak"_s;
        files.replaceFile(old, readWholeFile(files, path, limits::ProjectFileBytes));
        printError(u"note: the earlier file is kept as "_s + QDir::toNativeSeparators(old) +
                   u"."_s);
    }
    saveProject(files, path, project);
}

int importCommand(const ImportOptions& options) {
    LocalFileSystem files;
    const LocalMp3Tags tags;
    const bool isFolder = files.isFolder(options.source);
    if (!isFolder && !files.fileSize(options.source))
        throw badImport(options.source, u"there is no such folder or file"_s);
    if (isFolder && isTourFolder(files, options.source))
        return importTour(options, files, tags);
    // The records name their files wherever the project is used from.
    const QString source = QDir::cleanPath(absolutePath(options.source));
    const bool isStandard = isStandardPlaylist(source) && !options.exported;
    if (isFolder ? hasListsInside(files, source) : isStandard)
        return importFiles(options, files, tags, source);
    return importList(options, files, tags, isFolder, source);
}

}  // namespace tessaly::cli
