// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_run.h"

#include <QDir>
#include <algorithm>
#include <numeric>

#include "image/config_image.h"
#include "model/project_snapshot.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString UpdateQuestion =
    u"This will only update card settings, attributes, triggers, and TRL-740 firmware.  DO NOT "_s
    u"continue if you have added or deleted MP3 tracks.  Continue?"_s;
const QString EraseQuestion = u"This will erase the contents of the CF card.  Continue?"_s;

// While thousands of files are only looked at, the observer is asked this often.
constexpr qint64 CheckForStopEveryMs = 20;

}  // namespace

CardRun::CardRun(FileSystem& files, const Drives& drives, CardJob job, CardRunObserver& observer)
    : files_(files),
      drives_(drives),
      job_(std::move(job)),
      root_(withLastSeparator(QDir::toNativeSeparators(job_.root))),
      observer_(observer) {}

CardRunReport CardRun::run(Project& project) {
    project.unsavedChanges = true;
    // The question is about this card and no other that takes its place before the answer.
    card_ = cardAt(files_, drives_, root_);
    if (!observer_.confirm(job_.settingsOnly ? UpdateQuestion : EraseQuestion))
        return report_;
    progress_.trackFileCount = numberTrackFiles(project);
    snapshot_ = project;
    try {
        observer_.begin();
        checkSources();
        buildImage();
        checkTarget();
        if (job_.settingsOnly)
            deleteOldSettings();
        else
            eraseCard();
        copyTracks();
        copyFixedFiles();
        writeProjectFile();
        // Writing the project's file clears the flag, unless it was edited since the run began.
        if (sameContent(project, snapshot_))
            project.unsavedChanges = false;
        copyProjectFile();
        flush();
        compare();
        report_.outcome = CardRunReport::Outcome::Done;
        observer_.finished(report_);
        deleteTemporaryFiles();
        report_.stepCode = progress_.stepCode;
    } catch (const TessalyError& error) {
        report_.outcome = CardRunReport::Outcome::Failed;
        report_.error = error;
        report_.stepCode = progress_.stepCode;
        observer_.finished(report_);
    }
    return report_;
}

void CardRun::step(int code) {
    progress_.stepCode = code;
    showProgress();
}

void CardRun::beginPhase(RunPhase phase, qint64 total) {
    if (phaseTimer_.isValid())
        report_.milliseconds[size_t(progress_.phase)] += phaseTimer_.elapsed();
    phaseTimer_.start();
    progress_.phase = phase;
    progress_.bytesDone = 0;
    progress_.bytesTotal = total;
    showProgress();
}

void CardRun::advance(qint64 bytes) {
    progress_.bytesDone += bytes;
    showProgress();
    checkForStop();
}

void CardRun::showProgress() {
    progress_.milliseconds = phaseTimer_.elapsed();
    observer_.showProgress(progress_);
}

void CardRun::checkForStop() {
    if (observer_.checkForStop())
        throw TessalyError(error_number::Stopped, u"The writing of the card was stopped."_s);
}

void CardRun::checkForStopAtTimes() {
    if (stopTimer_.isValid() && stopTimer_.elapsed() < CheckForStopEveryMs)
        return;
    checkForStop();
    stopTimer_.start();
}

void CardRun::requireSameCard() const {
    requireCardAt(files_, drives_, root_, card_, folder_.get());
}

void CardRun::deleteFromCard(const QString& name) {
    requireSameCard();
    if (files_.fileSize(pathIn(root_, name)))
        folder_->removeFile(name);
}

// The project comes last and is deleted first, so that it seals the card: one that a run did not
// finish is never taken for a good one.
void CardRun::deleteOldSettings() {
    beginPhase(RunPhase::Erase, 0);
    step(step_code::DeleteOldProject);
    deleteFromCard(card_name::Project);
    deleteFromCard(card_name::Settings);
    step(step_code::DeleteOldFirmware);
    deleteFromCard(card_name::Firmware);
    step(step_code::DeleteOldCalibration);
    deleteFromCard(card_name::Calibration);
}

void CardRun::removeTree(const QString& folder) {
    for (const FolderEntry& entry : folder_->entries(folder)) {
        const QString inside = folder + u'/' + entry.name;
        if (entry.isFolder)
            removeTree(inside);
        else
            folder_->removeFile(inside);
        checkForStop();
    }
    folder_->removeFolder(folder);
}

void CardRun::eraseCard() {
    beginPhase(RunPhase::Erase, 0);
    step(step_code::ListCard);
    requireSameCard();
    QList<FolderEntry> entries = folder_->entries();
    // Without its settings a player does not start on what is left.
    std::stable_partition(entries.begin(), entries.end(), [](const FolderEntry& entry) {
        return entry.name.compare(card_name::Settings, Qt::CaseInsensitive) == 0;
    });
    step(step_code::DeleteFiles);
    for (const FolderEntry& entry : entries) {
        if (entry.isFolder)
            continue;
        folder_->removeFile(entry.name);
        checkForStop();
    }
    step(step_code::DeleteFolders);
    for (const FolderEntry& entry : entries) {
        if (!entry.isFolder)
            continue;
        try {
            removeTree(entry.name);
        } catch (const TessalyError& error) {
            if (entry.name != card_name::SystemFolder || error.number == error_number::Stopped)
                throw;
        }
    }
}

void CardRun::beginFile(const QString& name) {
    Q_ASSERT(folder_);  // opened by the guards, before anything is written
    progress_.fileName = name;
    requireSameCard();
}

void CardRun::copyToCard(const QString& source, const QString& name) {
    beginFile(name);
    noteWritten(copyFile(files_, source, *folder_, name, [this](qint64 bytes) { advance(bytes); }));
}

// What was composed for this card goes there from memory: another program that uses the same work
// folder may have changed or removed the file.
void CardRun::writeToCard(const QByteArray& bytes, const QString& name) {
    beginFile(name);
    noteWritten(writeFile(bytes, *folder_, name, [this](qint64 block) { advance(block); }));
}

void CardRun::noteWritten(const WrittenFile& file) {
    report_.files.append(file);
    report_.bytes += file.size;
}

void CardRun::copyTracks() {
    const QList<SourceFile> files = filesToWrite();
    beginPhase(RunPhase::Copy, std::accumulate(files.begin(), files.end(), qint64(0),
                                               [](qint64 sum, const SourceFile& file) {
                                                   return sum + file.size.value_or(0);
                                               }));
    if (job_.settingsOnly)
        return;
    step(step_code::CopyTracks);
    for (const SourceFile& track : sources_.tracks) {
        ++progress_.trackFile;
        showProgress();
        checkForStop();
        copyToCard(track.path, track.cardName);
    }
}

void CardRun::copyFixedFiles() {
    step(step_code::WriteSettings);
    writeToCard(hex_, card_name::Settings);
    step(step_code::CopyFirmware);
    copyToCard(job_.folders.firmwareFile(), card_name::Firmware);
    step(step_code::CopyCalibration);
    copyToCard(job_.folders.calibrationFile(), card_name::Calibration);
    step(step_code::CopyFixedConfiguration);
    copyToCard(job_.folders.fixedConfigurationFile(), card_name::FixedConfiguration);
    step(step_code::CopyChime);
    if (sources_.chime)
        copyToCard(sources_.chime->path, card_name::Chime);
}

void CardRun::writeProjectFile() {
    step(step_code::CreateProjectCopy);
    projectFile_ = files_.create(work(u"tmp.crd"_s));
    step(step_code::WriteProjectCopy);
    projectFile_->write(projectBytes_);
}

void CardRun::copyProjectFile() {
    step(step_code::CloseProjectCopy);
    projectFile_->close();
    step(step_code::WriteProject);
    writeToCard(projectBytes_, card_name::Project);
}

void CardRun::flush() {
    beginPhase(RunPhase::Flush, report_.bytes);
    step(step_code::Settle);
    for (const WrittenFile& file : report_.files) {
        progress_.fileName = file.name;
        files_.settle(pathIn(root_, file.name));
        advance(file.size);
    }
    files_.flushVolume(root_);
}

bool CardRun::compareFile(const WrittenFile& file) {
    progress_.fileName = file.name;
    const QString path = pathIn(root_, file.name);
    const TessalyError differs(
        error_number::VerifyFailed,
        path + u": what reads back from the card differs from what was written."_s);
    qint64 left = file.size;
    const ReadBack back = readBack(files_, path, [&](qint64 bytes) {
        left -= bytes;
        if (left < 0)  // a broken card may go on for ever
            throw differs;
        advance(bytes);
    });
    if (left > 0 || back.hash != file.hash)
        throw differs;
    return back.isPastCache;
}

void CardRun::compare() {
    beginPhase(RunPhase::Verify, job_.verify ? report_.bytes : 0);
    step(step_code::Compare);
    bool isPastCache = job_.verify;
    if (job_.verify)
        for (const WrittenFile& file : report_.files)
            isPastCache = compareFile(file) && isPastCache;
    requireSameCard();  // else another volume was flushed, or other files were read
    folder_.reset();    // the operator ejects the card while the last message stands
    report_.isVerified = job_.verify;
    report_.isVerifiedPastCache = isPastCache;
    beginPhase(RunPhase::Verify, 0);
}

void CardRun::deleteTemporaryFiles() {
    const std::pair<int, QString> temporary[] = {{step_code::DeleteTemporaryImage, u"tmp.bin"_s},
                                                 {step_code::DeleteTemporaryHex, u"tmp.hex"_s},
                                                 {step_code::DeleteProjectCopy, u"tmp.crd"_s}};
    for (const auto& [code, name] : temporary) {
        step(code);
        try {
            files_.removeFile(work(name));
        } catch (const TessalyError&) {
            // The card is finished; what stays behind is written over by the next run.
        }
    }
}

}  // namespace tessaly
