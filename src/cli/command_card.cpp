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

namespace {

constexpr qsizetype WarnedOfMost = 12;

QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

QString cardRoot(const FileSystem& files, const QString& folder) {
    if (!files.isFolder(folder))
        throw TessalyError(error_number::BadTarget, native(folder) + ": there is no such folder");
    // Where it leads now: neither "link/.." read as text nor a link that is changed later counts.
    return withLastSeparator(native(files.canonicalPath(folder)));
}

void requireAnswer(bool yes) {
    if (!yes && !inputIsTerminal())
        throw TessalyError(error_number::BadTarget,
                           "There is no terminal to ask on: say --yes to go on without a question");
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
            printError(QStringList(QStringList(check->text) + check->offenders).join(' '));
    for (const QString& path : checks.missingFiles)
        printError("Cannot find file " + path);
    for (const QString& limit : checks.exceededLimits)
        printError(limit);
    const QList<CheckResult> warnings = warningsOf(checks);
    for (const CheckResult& warning : warnings)
        printError("warning: " + inOneLine(warning, WarnedOfMost));
    const bool passes = checks.hasItems && !checks.blocked;
    if (!passes || !isStrict || warnings.isEmpty())
        return passes;
    printError("Nothing was written: --strict takes no warnings.");
    return false;
}

void printReport(const CardRunReport& report, const SupportFolders& folders) {
    QList<QStringList> rows = {{"written", "files", "bytes"}};
    const auto add = [&rows](const QString& name, qsizetype files, qint64 bytes) {
        rows.append({name, QString::number(files), QString::number(bytes)});
    };
    // The numbered files come first.
    qsizetype numbered = 0;
    qint64 numberedBytes = 0;
    while (report.files[numbered].name.endsWith(u".mp3"))
        numberedBytes += report.files[numbered++].size;
    if (numbered > 0)
        add(QString("0001.mp3 to %1.mp3").arg(numbered, 4, 10, QChar('0')), numbered,
            numberedBytes);
    for (const WrittenFile& file : report.files.mid(numbered))
        add(file.name, 1, file.size);
    add("in all", report.files.size(), report.bytes);
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
        print("This file system has no way past its cache: the files were compared after a flush.");
    if (!report.isVerified)
        print("The files were not read back.");
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
        printError("note: " + folders.firmwareFile() +
                   " is a stand-in that holds no firmware data: the card will update no player.");

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
    printError("Nothing was written.");
    return Failed;
}

int verifyCommand(const QString& card) {
    LocalFileSystem files;
    const QString root = cardRoot(files, card);
    const CardVerification result = verifyCard(files, root);
    for (const QString& note : result.notes)
        print("note: " + note);
    for (const QString& warning : result.warnings)
        print("warning: " + warning);
    for (const QString& problem : result.problems)
        print("PROBLEM: " + problem);
    if (!result.isGood()) {
        printError(QString("%1 is no good card: %2").arg(root, result.problems.first()));
        return Failed;
    }
    print(QString("%1 is a good card: %2, %3 read, settings 0x%4.")
              .arg(root, counted(result.trackFiles, "track"), size(result.bytes),
                   QString::number(result.identifier, 16).rightJustified(4, '0').toUpper()));
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
            printError(QStringLiteral("Nothing was written."));
            return Failed;
        case FirmwareResult::Outcome::UpToDate:
            print(result.message);
            return Done;
        case FirmwareResult::Outcome::Updated:
            break;
    }
    print(result.message);
    print(QStringLiteral("Firmware: ") + folders.firmwareFile());
    return Done;
}

}  // namespace tessaly::cli
