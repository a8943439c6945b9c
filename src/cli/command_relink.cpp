// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>

#include "card/card_files.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "editor/missing_match.h"
#include "model/text_codec.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

QString requiredFolder(const FileSystem& files, const QString& folder) {
    if (!files.isFolder(folder))
        throw TessalyError(error_number::BadTarget,
                           QDir::toNativeSeparators(folder) + u": there is no such folder"_s);
    return QDir::cleanPath(absolutePath(folder));  // the records name files from anywhere
}

QHash<QString, QString> requiredCopies(FileSystem& files, const QString& card) {
    const QHash<QString, QString> copies = copiesOnCard(files, requiredFolder(files, card));
    if (copies.isEmpty())
        throw TessalyError(
            error_number::BadTarget,
            QDir::toNativeSeparators(card) + u": no project with files can be read on this card"_s);
    return copies;
}

void printLine(const RelinkLine& line) {
    const QString old = oneLine(line.oldPath);
    if (line.taken)
        return print(old + u" -> "_s + oneLine(line.newPath));
    print(old + u": "_s +
          (line.isFound() ? u"found, but a project file cannot hold this path: rename it"_s
                          : line.inWords()));
    for (const QString& path : line.newPath.isEmpty() ? line.several : QStringList{line.newPath})
        print(u"    "_s + oneLine(path));
    if (const qsizetype more = line.fitting - line.several.size(); !line.several.isEmpty() && more)
        print(u"    ... and %1 more"_s.arg(more));
}

}  // namespace

int relinkCommand(const RelinkOptions& options) {
    LocalFileSystem files;
    Project project = openProject(files, options.project);
    const QString folder = requiredFolder(files, options.folder);
    QHash<QString, QString> copies;
    if (!options.card.isEmpty())
        copies = requiredCopies(files, options.card);
    const QString name = QDir::toNativeSeparators(options.project);
    const QStringList missing = missingFiles(project, files);
    if (missing.isEmpty()) {
        print(name + u": no MP3 file is missing."_s);
        return Done;
    }
    const SoundBook book(soundBookFile());
    RelinkPlan plan = planRelink(project, missing, searchFolder(files, folder, missing),
                                 playingSeconds, knownFrom(copies, files, book));
    for (const QString& line : plan.leftOut.lines)
        printError(u"note: "_s + oneLine(line));
    for (RelinkLine& line : plan.lines) {
        line.taken = line.taken && fitsCodePage(line.newPath);  // else it would be lost again
        printLine(line);
    }
    const bool isWritten = plan.taken() > 0 && !options.dryRun;
    if (isWritten) {
        applyRelink(project, plan);
        saveKeepingOld(files, options.project, project);
    }
    const QString end = isWritten ? QString() : u", nothing was written"_s;
    print(u"%1: %2 of %3 found%4."_s.arg(name).arg(plan.taken()).arg(plan.lines.size()).arg(end));
    return plan.taken() == plan.lines.size() ? Done : Blocked;
}

}  // namespace tessaly::cli
