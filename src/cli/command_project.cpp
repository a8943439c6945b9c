// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>

#include "card/card_checks.h"
#include "card/firmware.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "image/config_image.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly::cli {

namespace {

QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

// By Verdict: in JSON, and in a table.
struct VerdictWords {
    const char *json, *text;
};

VerdictWords wordsOf(Verdict verdict) {
    static const QHash<Verdict, VerdictWords> words = {{Verdict::Green, {"green", "ok"}},
                                                       {Verdict::Red, {"red", "BLOCKS"}},
                                                       {Verdict::Yellow, {"yellow", "warning"}},
                                                       {Verdict::Grey, {"grey", "-"}}};
    return words[verdict];
}

struct NamedCheck {
    QString name;
    const CheckResult* result;
};

QList<NamedCheck> projectChecks(const CardChecks& checks) {
    return {{"musicLists", &checks.musicLists},     {"languages", &checks.languages},
            {"speechTitles", &checks.speechTitles}, {"trackCount", &checks.trackCount},
            {"silentTracks", &checks.silentTracks}, {"emptyFiles", &checks.emptyFiles},
            {"fileNumbers", &checks.fileNumbers}};
}

QList<NamedCheck> driveChecks(const CardChecks& checks) {
    return {{"driveSelected", &checks.driveSelected},
            {"cardPresent", &checks.cardPresent},
            {"cardBigEnough", &checks.cardBigEnough}};
}

void printChecksJson(const CardChecks& checks, bool blocked) {
    QJsonArray warnings;
    for (const CheckResult& warning : warningsOf(checks))
        warnings.append(inOneLine(warning, warning.offenders.size()));
    QJsonObject verdicts;
    for (const NamedCheck& check : projectChecks(checks) + driveChecks(checks))
        verdicts[check.name] =
            QJsonObject{{"verdict", wordsOf(check.result->verdict).json},
                        {"text", check.result->text},
                        {"offenders", QJsonArray::fromStringList(check.result->offenders)},
                        {"enabled", check.result->isEnabled}};
    printJson({{"checks", verdicts},
               {"hasItems", checks.hasItems},
               {"exceededLimits", QJsonArray::fromStringList(checks.exceededLimits)},
               {"missingFiles", QJsonArray::fromStringList(checks.missingFiles)},
               {"warnings", warnings},
               {"totalCardBytes", checks.totals.totalCardBytes},
               {"trackCount", checks.totals.trackCount},
               {"missingFileFlag", checks.totals.missingFileFlag},
               {"blocked", blocked}});
}

void printChecksText(const CardChecks& checks, bool withDrive) {
    QList<QStringList> rows;
    const auto addItems = [&](const QStringList& items) {
        for (const QString& item : items)
            rows.append(QStringList{QString(), "    " + elided(item)});
    };
    for (const NamedCheck& check :
         projectChecks(checks) + (withDrive ? driveChecks(checks) : QList<NamedCheck>())) {
        if (check.result->text.isEmpty())
            continue;
        rows.append({wordsOf(check.result->verdict).text, check.result->text});
        addItems(check.result->offenders);
    }
    if (!checks.hasItems)
        rows.append({"BLOCKS", NoFilesText.toString()});
    if (!checks.missingFiles.isEmpty()) {
        rows.append(QStringList{"BLOCKS", "The following source files cannot be found:"});
        addItems(checks.missingFiles);
    }
    for (const QString& limit : checks.exceededLimits)
        rows.append({"BLOCKS", limit});
    printTable(rows);
    print();
    print(QString("%1, %2 in all.")
              .arg(counted(checks.totals.trackCount, "track"), size(checks.totals.totalCardBytes)));
}

// A file that is read or written must not be written over by another output.
void requireOtherFile(const FileSystem& files, const QString& file, const QString& output) {
    const auto identity = files.identity(output);
    const bool isSame = QDir(file).absolutePath() == QDir(output).absolutePath() ||
                        (identity && identity == files.identity(file));
    if (!output.isEmpty() && isSame)
        throw TessalyError(error_number::BadTarget,
                           native(output) + ": this file cannot be used for two things");
}

}  // namespace

Project openProject(FileSystem& files, const QString& path) {
    Project project;
    const ReadReport report = readProject(files, path, project);
    if (!report.isComplete)
        throw TessalyError(error_number::BadProject,
                           QString("%1 was read up to byte %2 only (%3): %4")
                               .arg(shownPath(path))
                               .arg(report.stoppedAt)
                               .arg(counted(report.records, "record"), report.stopReason));
    return project;
}

CardChecks checksOf(const Project& project, const QString& root, const FileSystem& files) {
    const FolderDrives drives;
    const SourceFiles sources = measureSources(project, files);
    return runCardChecks(project, sources, root, drives, updateSummary(sources).totalCardBytes);
}

QString inOneLine(const CheckResult& result, qsizetype most) {
    QString named = result.offenders.mid(0, most).join(", ");
    if (result.offenders.size() > most)
        named += QString(" ... and %1 more").arg(result.offenders.size() - most);
    return named.isEmpty() ? result.text : result.text + ' ' + named;
}

int checkCommand(const CheckOptions& options) {
    LocalFileSystem files;
    const Project project = openProject(files, options.project);
    const bool withDrive = !options.card.isEmpty();
    const QString drive = withDrive ? native(QDir(options.card).absolutePath()) : QString();
    const CardChecks checks = checksOf(project, drive, files);
    const bool blocked = !checks.hasItems || (withDrive ? checks.blocked : checks.projectBlocked);
    if (options.json)
        printChecksJson(checks, blocked);
    else
        printChecksText(checks, withDrive);
    return blocked || (options.strict && !warningsOf(checks).isEmpty()) ? Blocked : Done;
}

int imageCommand(const ImageOptions& options) {
    LocalFileSystem files;
    requireOtherFile(files, options.project, options.output);
    requireOtherFile(files, options.project, options.hexOutput);
    requireOtherFile(files, options.output, options.hexOutput);
    Project project = openProject(files, options.project);
    throwFirst(limitViolations(project));
    const QByteArray image =
        BuildConfigImage(project, options.identifier.value_or(randomIdentifier()));
    files.replaceFile(options.output, image);
    print(QString("%1: %2 bytes").arg(native(options.output)).arg(image.size()));
    if (!options.hexOutput.isEmpty()) {
        const QByteArray text = EncodeImageAsHex(image);
        files.replaceFile(options.hexOutput, text);
        print(QString("%1: %2 bytes").arg(native(options.hexOutput)).arg(text.size()));
    }
    return Done;
}

}  // namespace tessaly::cli
