// SPDX-License-Identifier: GPL-3.0-or-later
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include "card/card_checks.h"
#include "card/card_guards.h"
#include "card/card_verifier.h"
#include "card/card_writer.h"
#include "card/firmware.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/run_display.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype WarnedOfMost = 12;

QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

QString cardRoot(const FileSystem& files, const QString& folder) {
    if (!files.isFolder(folder))
        throw TessalyError(error_number::BadTarget,
                           native(folder) + u": there is no such folder"_s);
    // Where the path leads at this moment. As text "link/.." may be another folder, and a link may
    // be changed later.
    return withLastSeparator(native(files.canonicalPath(folder)));
}

void requireAnswer(bool yes) {
    if (!yes && !inputIsTerminal())
        throw TessalyError(
            error_number::BadTarget,
            u"There is no terminal to ask on: say --yes to go on without a question"_s);
}

// Prints what keeps a project from being written, and what warns; true when nothing does, or when
// `isStrict`, neither.
bool passesChecks(const Project& project, const QString& root, const FileSystem& files,
                  bool isStrict) {
    const CardChecks checks = checksOf(project, root, files);
    if (!checks.hasItems)
        printError(NoFilesText.toString());
    for (const CheckResult* check :
         {&checks.musicLists, &checks.languages, &checks.driveSelected, &checks.cardPresent,
          &checks.cardBigEnough, &checks.trackCount})
        if (check->verdict == Verdict::Red)
            printError(QStringList(QStringList(check->text) + check->offenders).join(u' '));
    for (const QString& path : checks.missingFiles)
        printError(u"Cannot find file "_s + path);
    for (const QString& limit : checks.exceededLimits)
        printError(limit);
    const QList<CheckResult> warnings = warningsOf(checks);
    for (const CheckResult& warning : warnings)
        printError(u"warning: "_s + inOneLine(warning, WarnedOfMost));
    const bool passes = checks.hasItems && !checks.blocked;
    if (!passes || !isStrict || warnings.isEmpty())
        return passes;
    printError(u"Nothing was written: --strict takes no warnings."_s);
    return false;
}

void printReport(const CardRunReport& report, const SupportFolders& folders) {
    QList<QStringList> rows = {{u"written"_s, u"files"_s, u"bytes"_s}};
    const auto add = [&rows](const QString& name, qsizetype files, qint64 bytes) {
        rows.append({name, QString::number(files), QString::number(bytes)});
    };
    // The numbered files come first.
    qsizetype numbered = 0;
    qint64 numberedBytes = 0;
    while (report.files[numbered].name.endsWith(u".mp3"))
        numberedBytes += report.files[numbered++].size;
    if (numbered > 0)
        add(u"0001.mp3 to %1.mp3"_s.arg(numbered, 4, 10, QChar(u'0')), numbered, numberedBytes);
    for (const WrittenFile& file : report.files.mid(numbered))
        add(file.name, 1, file.size);
    add(u"in all"_s, report.files.size(), report.bytes);
    print();
    printTable(rows, {1, 2});
    print();
    QList<QStringList> times;
    for (const RunPhase phase :
         {RunPhase::Prepare, RunPhase::Erase, RunPhase::Copy, RunPhase::Flush, RunPhase::Verify})
        if (phase != RunPhase::Verify || report.isVerified)
            times.append({phaseName(phase), durationText(report.milliseconds[size_t(phase)])});
    printTable(times, {1});
    if (report.isVerified && !report.isVerifiedPastCache)
        print(
            u"This file system has no way past its cache: the files were compared after a flush."_s);
    if (!report.isVerified)
        print(u"The files were not read back."_s);
    print();
    for (const QString& file : folders.makersFiles())
        print(file);
}

}  // namespace

int createCommand(const CreateOptions& options, const SupportFolders& folders) {
    LocalFileSystem files;
    const FolderDrives drives;
    Project project = openProject(files, options.project);
    const QString root = cardRoot(files, options.card);
    if (!passesChecks(project, root, files, options.strict))
        return Blocked;
    const bool isDrive = isRemovableRoot(drives, root);
    if (!isDrive && !options.settingsOnly)
        requireErasableFolder(files, drives, root, options.erase);
    requireAnswer(options.yes);
    if (isStandIn(files, folders.firmwareFile()))
        printError(
            u"note: "_s + folders.firmwareFile() +
            u" is a stand-in that holds no firmware data: the card will update no player."_s);

    const QTemporaryDir work;
    if (!work.isValid())
        throw TessalyError(error_number::WriteFailed, work.errorString());
    const CardJob job{.root = root,
                      .settingsOnly = options.settingsOnly,
                      .mustBeRemovableRoot = isDrive,
                      .mayEraseOthers = options.erase,
                      .folders = folders,
                      .workFolder = native(work.path()),
                      .verify = !options.noVerify,
                      .identifier = {},
                      .protectedPaths = {QCoreApplication::applicationDirPath()},
                      .projectFile = QFileInfo(options.project).absoluteFilePath()};
    RunDisplay display(options.yes);
    const CardRunReport report = CardWriter(files, drives).createCard(project, job, display);
    switch (report.outcome) {
        case CardRunReport::Outcome::Done:
            printReport(report, folders);
            return Done;
        case CardRunReport::Outcome::Failed:
            printError(errorLine(*report.error, report.stepCode));
            return Failed;
        case CardRunReport::Outcome::Declined:
        case CardRunReport::Outcome::Busy:
            break;
    }
    printError(u"Nothing was written."_s);
    return Failed;
}

int verifyCommand(const QString& card) {
    LocalFileSystem files;
    const QString root = cardRoot(files, card);
    const CardVerification result = verifyCard(files, root);
    for (const QString& note : result.notes)
        print(u"note: "_s + note);
    for (const QString& warning : result.warnings)
        print(u"warning: "_s + warning);
    for (const QString& problem : result.problems)
        print(u"PROBLEM: "_s + problem);
    if (!result.isGood()) {
        printError(u"%1 is no good card: %2"_s.arg(root, result.problems.first()));
        return Failed;
    }
    print(u"%1 is a good card: %2, %3 read, settings 0x%4."_s.arg(
        root, counted(result.trackFiles, u"track"_s), size(result.bytes),
        QString::number(result.identifier, 16).rightJustified(4, u'0').toUpper()));
    return Done;
}

int firmwareCommand(const FirmwareOptions& options, const SupportFolders& folders) {
    LocalFileSystem files;
    const QString root = cardRoot(files, options.card);
    const auto ask = [&](const QString& question, bool) {
        requireAnswer(options.yes);
        return options.yes || askYesNo(question);
    };
    const FirmwareResult result = offerFirmware(files, FolderDrives(), root, folders, ask);
    switch (result.outcome) {
        case FirmwareResult::Outcome::NoCard:
            printError(result.message + u' ' + root);
            return Failed;
        case FirmwareResult::Outcome::Declined:
            printError(u"Nothing was written."_s);
            return Failed;
        case FirmwareResult::Outcome::UpToDate:
            print(result.message);
            return Done;
        case FirmwareResult::Outcome::Updated:
            break;
    }
    print(result.message);
    print(u"Firmware: "_s + folders.firmwareFile());
    return Done;
}

}  // namespace tessaly::cli
