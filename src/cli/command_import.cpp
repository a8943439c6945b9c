// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>

#include "cli/commands.h"
#include "cli/console.h"
#include "editor/list_import.h"
#include "editor/tour_import.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/mp3_tags.h"
#include "platform/paths.h"

namespace tessaly::cli {

namespace {

TessalyError badImport(const QString& path, const QString& what) {
    return {error_number::BadImport, QDir::toNativeSeparators(path) + ": " + what};
}

// A message box has lines, and names may hold any control character.
QString oneLine(QString text) {
    text.replace("\r\n", " ");
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = ' ';
    return text;
}

// Whatever stood at `path` was somebody's project: it stays beside the new one.
void save(FileSystem& files, const QString& path, Project& project) {
    for (const QString& lost : pathsOutsideCodePage(project))
        printError("warning: a project file cannot hold the path \"" + oneLine(lost) +
                   "\": the file is not found when the project is opened.");
    for (const QString& text : textsOutsideCodePage(project))
        printError("warning: a project file cannot hold \"" + oneLine(elided(text)) +
                   "\": characters of it become \"?\".");
    if (files.fileSize(path)) {
        const QString old = path + ".bak";
        files.replaceFile(old, readWholeFile(files, path, limits::ProjectFileBytes));
        printError("note: the earlier file is kept as " + QDir::toNativeSeparators(old) + ".");
    }
    saveProject(files, path, project);
}

int importTour(const ImportOptions& options, FileSystem& files, const Mp3Tags& tags) {
    if (options.append)
        throw badImport(options.source,
                        "only one music list can be added to a project, but this "
                        "folder holds whole folders of them");
    Project project;
    const ImportReport report =
        importFolder(files, tags, options.source, options.titlesFromTags, project);
    for (const QString& note : report.notes)
        printError("note: " + oneLine(note));
    save(files, options.output, project);
    print(QString("%1: %2 with %3, %4 in %5 (%6).")
              .arg(QDir::toNativeSeparators(options.output),
                   counted(project.lstMuList.size(), "music list"), counted(report.tracks, "track"),
                   counted(project.lstSpTitles.size(), "speech title"),
                   counted(project.lstLangs.size(), "language"),
                   counted(report.speechFiles, "file")));
    return Done;
}

int importList(const ImportOptions& options, FileSystem& files, const Mp3Tags& tags,
               bool isFolder) {
    Project project;
    if (options.append)
        project = openProject(files, options.output);
    // The records name their files wherever the project is used from.
    const QString source = QDir::cleanPath(absolutePath(options.source));
    const ImportResult result = isFolder ? importMusicFolder(project, files, tags, source)
                                         : importPlaylist(project, files, tags, source);
    if (result.outcome == ImportResult::Outcome::NoFiles)
        throw badImport(options.source,
                        "the folder holds neither MP3 files nor a Music or Speech folder");
    for (const ImportMessage& message : result.leftOut + result.messages)
        printError(oneLine(message.text));
    if (result.outcome != ImportResult::Outcome::Imported)
        return Failed;
    if (const QString namesakes = namesakesText(project, result.list); !namesakes.isEmpty()) {
        if (options.giveEachItsFile) {
            giveEachItsFile(project, {result.list});
            printError("note: " + oneLine(namesakes) + " Each has its own file now.");
        } else {
            printError("warning: " + oneLine(namesakes) + ' ' + NamesakesFate.toString() +
                       " Say --give-each-its-file to make them play.");
        }
    }
    save(files, options.output, project);
    const QString line = QString("%1: the music list \"%2\" with %3")
                             .arg(QDir::toNativeSeparators(options.output), oneLine(result.list),
                                  counted(result.tracks, "track"));
    print(line + (result.tracks == 0 ? ", which no save keeps." : "."));
    return Done;
}

}  // namespace

int importCommand(const ImportOptions& options) {
    LocalFileSystem files;
    const LocalMp3Tags tags;
    const bool isFolder = files.isFolder(options.source);
    if (!isFolder && !files.fileSize(options.source))
        throw badImport(options.source, "there is no such folder or file");
    if (isFolder && isTourFolder(files, options.source))
        return importTour(options, files, tags);
    return importList(options, files, tags, isFolder);
}

}  // namespace tessaly::cli
