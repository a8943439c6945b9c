// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QScopeGuard>
#include <algorithm>

#include "card/card_checks.h"
#include "card/firmware.h"
#include "card/pack.h"
#include "card/sound_checks.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/run_display.h"
#include "image/config_image.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/files_beside.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

// By Verdict: in JSON, and in a table.
struct VerdictWords {
    QString json, text;
};

VerdictWords wordsOf(Verdict verdict) {
    static const QHash<Verdict, VerdictWords> words = {
        {Verdict::Green, {u"green"_s, u"ok"_s}},
        {Verdict::Red, {u"red"_s, u"BLOCKS"_s}},
        {Verdict::Yellow, {u"yellow"_s, u"warning"_s}},
        {Verdict::Grey, {u"grey"_s, u"-"_s}}};
    return words[verdict];
}

struct NamedCheck {
    QString name;
    const CheckResult* result;
};

QList<NamedCheck> projectChecks(const CardChecks& checks) {
    return {{u"musicLists"_s, &checks.musicLists},     {u"languages"_s, &checks.languages},
            {u"speechTitles"_s, &checks.speechTitles}, {u"trackCount"_s, &checks.trackCount},
            {u"silentTracks"_s, &checks.silentTracks}, {u"emptyFiles"_s, &checks.emptyFiles},
            {u"fileNumbers"_s, &checks.fileNumbers},   {u"sound"_s, &checks.sound}};
}

QList<NamedCheck> driveChecks(const CardChecks& checks) {
    return {{u"driveSelected"_s, &checks.driveSelected},
            {u"cardPresent"_s, &checks.cardPresent},
            {u"cardBigEnough"_s, &checks.cardBigEnough}};
}

void printChecksJson(const CardChecks& checks, bool blocked) {
    QJsonArray warnings;
    for (const CheckResult& warning : warningsOf(checks))
        warnings.append(inOneLine(warning, warning.offenders.size()));
    QJsonObject verdicts;
    for (const NamedCheck& check : projectChecks(checks) + driveChecks(checks))
        verdicts[check.name] =
            QJsonObject{{u"verdict"_s, wordsOf(check.result->verdict).json},
                        {u"text"_s, check.result->text},
                        {u"offenders"_s, QJsonArray::fromStringList(check.result->offenders)},
                        {u"enabled"_s, check.result->isEnabled}};
    printJson({{u"checks"_s, verdicts},
               {u"hasItems"_s, checks.hasItems},
               {u"exceededLimits"_s, QJsonArray::fromStringList(checks.exceededLimits)},
               {u"missingFiles"_s, QJsonArray::fromStringList(checks.missingFiles)},
               {u"warnings"_s, warnings},
               {u"totalCardBytes"_s, checks.totals.totalCardBytes},
               {u"trackCount"_s, checks.totals.trackCount},
               {u"missingFileFlag"_s, checks.totals.missingFileFlag},
               {u"blocked"_s, blocked}});
}

void printChecksText(const CardChecks& checks, bool withDrive) {
    QList<QStringList> rows;
    const auto addItems = [&](const QStringList& items) {
        for (const QString& item : items)
            rows.append(QStringList{QString(), u"    "_s + elided(item)});
    };
    for (const NamedCheck& check :
         projectChecks(checks) + (withDrive ? driveChecks(checks) : QList<NamedCheck>())) {
        if (check.result->text.isEmpty())
            continue;
        rows.append({wordsOf(check.result->verdict).text, check.result->text});
        addItems(check.result->offenders);
    }
    if (!checks.hasItems)
        rows.append({u"BLOCKS"_s, NoFilesText.toString()});
    if (!checks.missingFiles.isEmpty()) {
        rows.append(QStringList{u"BLOCKS"_s, u"The following source files cannot be found:"_s});
        addItems(checks.missingFiles);
    }
    for (const QString& limit : checks.exceededLimits)
        rows.append({u"BLOCKS"_s, limit});
    printTable(rows);
    print();
    print(u"%1, %2 in all."_s.arg(counted(checks.totals.trackCount, u"track"_s),
                                  size(checks.totals.totalCardBytes)));
}

// A file that is read or written must not be written over by another output.
void requireOtherFile(const FileSystem& files, const QString& file, const QString& output) {
    const auto identity = files.identity(output);
    const bool isSame = QDir(file).absolutePath() == QDir(output).absolutePath() ||
                        (identity && identity == files.identity(file));
    if (!output.isEmpty() && isSame)
        throw TessalyError(error_number::BadTarget,
                           native(output) + u": this file cannot be used for two things"_s);
}

}  // namespace

Project openProject(FileSystem& files, const QString& path) {
    Project project;
    const ReadReport report = openProjectFile(files, path, project);
    if (!report.isComplete)
        throw TessalyError(error_number::BadProject,
                           u"%1 was read up to byte %2 only (%3): %4"_s.arg(shownPath(path))
                               .arg(report.stoppedAt)
                               .arg(counted(report.records, u"record"_s), report.stopReason));
    return project;
}

CardChecks checksOf(const Project& project, const QString& root, const FileSystem& files) {
    const FolderDrives drives;
    const SourceFiles sources = measureSources(project, files);
    SoundBook book(soundBookFile());
    lookAtAll(sources, book);
    book.save();
    return runCardChecks(project, sources, root, drives, updateSummary(sources).totalCardBytes,
                         &book);
}

QString inOneLine(const CheckResult& result, qsizetype most) {
    QString named = result.offenders.mid(0, most).join(u", "_s);
    if (result.offenders.size() > most)
        named += u" ... and %1 more"_s.arg(result.offenders.size() - most);
    return named.isEmpty() ? result.text : result.text + u' ' + named;
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
    print(u"%1: %2 bytes"_s.arg(native(options.output)).arg(image.size()));
    if (!options.hexOutput.isEmpty()) {
        const QByteArray text = EncodeImageAsHex(image);
        files.replaceFile(options.hexOutput, text);
        print(u"%1: %2 bytes"_s.arg(native(options.hexOutput)).arg(text.size()));
    }
    return Done;
}

int packCommand(const PackOptions& options) {
    LocalFileSystem files;
    const Project project = openProject(files, options.project);
    const PackPlan plan =
        planPack(project, {options.output, options.project}, files, FolderDrives());
    for (const QString& path : plan.missing)
        printError(u"Cannot find file "_s + path);
    if (!plan.missing.isEmpty()) {
        printError(u"Nothing was copied: the folder would lack what is missing."_s);
        return Blocked;
    }
    RunDisplay display(true);
    display.watchForStop();
    const auto clearLast = qScopeGuard([&] { display.clear(); });
    packProject(files, plan, [&](const RunProgress& progress) {
        display.showProgress(progress);
        return !display.checkForStop();
    });
    display.clear();
    print(u"%1: the project and its %2, %3."_s.arg(
        native(plan.projectFile), counted(plan.files.size(), u"file"_s), size(plan.bytes)));
    return Done;
}

}  // namespace tessaly::cli
