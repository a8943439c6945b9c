#include "card/card_run.h"

#include <QDir>
#include <algorithm>

#include "card/card_names.h"
#include "card/card_summary.h"
#include "platform/error.h"

namespace tessaly {

namespace {

// While thousands of files are only looked at, the observer is asked this often.
constexpr qint64 BreatheEveryMs = 20;

}  // namespace

QString rootOf(const CardJob& job) {
    return withLastSeparator(QDir::toNativeSeparators(job.root));
}

CardRun::CardRun(FileSystem& files, const Drives& drives, CardJob job, CardIdentity card,
                 Project snapshot, bool settingsOnly, int& stepCode, CardRunObserver& observer,
                 CardRunReport& report)
    : files_(files),
      drives_(drives),
      job_(std::move(job)),
      root_(rootOf(job_)),
      card_(std::move(card)),
      snapshot_(std::move(snapshot)),
      settingsOnly_(settingsOnly),
      stepCode_(stepCode),
      observer_(observer),
      report_(report) {}

void CardRun::beginPhase(RunPhase phase, qint64 total) {
    if (phaseTimer_.isValid())
        report_.milliseconds[size_t(phase_)] += phaseTimer_.elapsed();
    phaseTimer_.start();
    phase_ = phase;
    phaseDone_ = 0;
    phaseTotal_ = total;
    observer_.phaseProgress(phase_, 0, phaseTotal_);
}

void CardRun::advance(qint64 bytes) {
    phaseDone_ += bytes;
    observer_.phaseProgress(phase_, phaseDone_, phaseTotal_);
    checkForStop();
}

void CardRun::checkForStop() {
    if (!observer_.keepGoing())
        throw TessalyError(error_number::Stopped, "The writing of the card was stopped.");
}

void CardRun::breatheAtTimes() {
    if (breathTimer_.isValid() && breathTimer_.elapsed() < BreatheEveryMs)
        return;
    checkForStop();
    breathTimer_.start();
}

void CardRun::writeWhole(const QString& path, const QByteArray& bytes) {
    const auto file = files_.create(path);
    file->write(bytes);
    file->close();
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
    step(12);
    deleteFromCard(card_name::Project);
    deleteFromCard(card_name::Settings);
    step(13);
    deleteFromCard(card_name::Firmware);
    step(14);
    deleteFromCard(card_name::Calibration);
}

void CardRun::removeTree(const QString& folder) {
    for (const FolderEntry& entry : folder_->entries(folder)) {
        const QString inside = folder + '/' + entry.name;
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
    step(10);
    requireSameCard();
    QList<FolderEntry> entries = folder_->entries();
    // Without its settings a player does not start on what is left.
    std::stable_partition(entries.begin(), entries.end(), [](const FolderEntry& entry) {
        return entry.name.compare(card_name::Settings, Qt::CaseInsensitive) == 0;
    });
    step(100);
    for (const FolderEntry& entry : entries) {
        if (entry.isFolder)
            continue;
        folder_->removeFile(entry.name);
        checkForStop();
    }
    step(101);
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

// The card is still what the operator was asked about and what is held open.
void CardRun::requireSameCard() const {
    requireCardAt(files_, drives_, root_, card_);
    if (folder_ && folder_->identity() != card_.folder)
        throw TessalyError(error_number::DriveNotReady,
                           root_ + ": the card is no longer there or was changed.");
}

void CardRun::copyToCard(const QString& source, const QString& name) {
    requireSameCard();
    noteWritten(copyFile(files_, source, *folder_, name, [this](qint64 bytes) { advance(bytes); }));
}

// What was composed for this card goes there from memory: another program that uses the same work
// folder may have changed or removed the file.
void CardRun::writeToCard(const QByteArray& bytes, const QString& name) {
    requireSameCard();
    noteWritten(writeFile(bytes, *folder_, name, [this](qint64 block) { advance(block); }));
}

void CardRun::noteWritten(const WrittenFile& file) {
    written_.append(file);
    report_.files.append({file.name, file.size});
    report_.bytes += file.size;
}

void CardRun::copyTracks() {
    qint64 total = 0;
    for (const auto& file : settingsFiles())
        total += file.second;
    if (!settingsOnly_)
        for (const SourceFile& track : sources_.tracks)
            total += track.size.value_or(0);
    beginPhase(RunPhase::Copy, total);
    if (settingsOnly_)
        return;
    step(11);
    int done = 0;
    for (const SourceFile& track : sources_.tracks) {
        if (done > 0)
            observer_.setCaption(
                QString("%1 of %2 files transferred").arg(done).arg(sources_.tracks.size()));
        observer_.setBarValue(++done);
        checkForStop();
        copyToCard(track.path, card_name::track(track.number()));
    }
}

void CardRun::copyFixedFiles() {
    step(15);
    writeToCard(hex_, card_name::Settings);
    step(16);
    copyToCard(job_.folders.firmwareFile(), card_name::Firmware);
    step(17);
    copyToCard(job_.folders.calibrationFile(), card_name::Calibration);
    step(69);
    copyToCard(job_.folders.fixedConfigurationFile(), card_name::FixedConfiguration);
    step(18);
    if (hasChime())
        copyToCard(snapshot_.txtChimeFileName, card_name::Chime);
}

void CardRun::writeProjectFile() {
    step(19);
    projectFile_ = files_.create(work("tmp.crd"));
    step(20);
    projectFile_->write(projectBytes_);
}

void CardRun::copyProjectFile() {
    step(21);
    projectFile_->close();
    step(22);
    writeToCard(projectBytes_, card_name::Project);
}

void CardRun::settleAndVerify() {
    beginPhase(RunPhase::Flush, report_.bytes);
    step(320);
    for (const WrittenFile& file : written_) {
        files_.settle(pathIn(root_, file.name));
        advance(file.size);
    }
    files_.flushVolume(root_);
    beginPhase(RunPhase::Verify, job_.verify ? report_.bytes : 0);
    step(321);
    bool pastCache = true;
    for (const WrittenFile& file : job_.verify ? written_ : QList<WrittenFile>()) {
        const QString path = pathIn(root_, file.name);
        const TessalyError differs(
            error_number::VerifyFailed,
            path + ": what reads back from the card differs from what was written.");
        qint64 left = file.size;
        const ReadBack back = readBack(files_, path, [&](qint64 bytes) {
            left -= bytes;
            if (left < 0)  // a broken card may go on for ever
                throw differs;
            advance(bytes);
        });
        if (left > 0 || back.hash != file.hash)
            throw differs;
        pastCache = pastCache && back.isPastCache;
    }
    requireSameCard();  // else another volume was flushed, or other files were read
    folder_.reset();    // the operator ejects the card while the last message stands
    report_.isVerified = job_.verify;
    report_.isVerifiedPastCache = job_.verify && pastCache;
    beginPhase(RunPhase::Verify, 0);
}

void CardRun::deleteTemporaryFiles() {
    int code = 23;
    for (const char* name : {"tmp.bin", "tmp.hex", "tmp.crd"}) {
        step(code++);
        try {
            files_.removeFile(work(name));
        } catch (const TessalyError&) {
            // The card is finished; what stays behind is written over by the next run.
        }
    }
}

}  // namespace tessaly
