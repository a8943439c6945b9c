#include "card/card_writer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <algorithm>

#include "card/card_guards.h"
#include "card/card_names.h"
#include "card/card_space.h"
#include "card/card_summary.h"
#include "card/file_copier.h"
#include "image/config_image.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/project_snapshot.h"
#include "platform/error_numbers.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

// While thousands of files are only looked at, the observer is asked this often.
constexpr qint64 BreatheEveryMs = 20;

const QString UpdateQuestion = QStringLiteral(
    "This will only update card settings, attributes, triggers, and TRL-740 firmware.  DO NOT "
    "continue if you have added or deleted MP3 tracks.  Continue?");
const QString EraseQuestion =
    QStringLiteral("This will erase the contents of the CF card.  Continue?");

// Whether an update of the settings deletes the file before it writes it.
bool isTrimmed(const QString& name) {
    return name == card_name::Project || name == card_name::Settings ||
           name == card_name::Firmware || name == card_name::Calibration;
}

QString rootOf(const CardJob& job) {
    return withLastSeparator(QDir::toNativeSeparators(job.root));
}

// One run from the snapshot of a project to a finished card. Every step sets the step code first
// and throws when it fails; nothing on the card changes before checkTarget() has passed.
class CardRun {
 public:
    CardRun(FileSystem& files, const Drives& drives, CardJob job, CardIdentity card,
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
          report_(report) {
        for (const TrackRecord& record : snapshot_.TrackTable)
            if (isTrackFile(record))
                tracks_.append({record.sourcePath.text(), typeTagText(record)});
    }

    void checkSources();
    void buildImage();
    void checkTarget();
    void trimCard();
    void eraseCard();
    void copyTracks();
    void copyFixedFiles();
    void writeProjectFile();
    void copyProjectFile();
    void settleAndVerify();
    void deleteTemporaryFiles();

 private:
    struct Track {
        QString source;
        QString number;
    };

    void step(int code) { stepCode_ = code; }
    QString work(const char* name) const { return pathIn(job_.workFolder, name); }
    bool hasChime() const { return usesChimeFile(snapshot_); }
    SpacePlan spacePlan(const VolumeGeometry& geometry);
    QList<std::pair<QString, qint64>> settingsFiles() const;

    void beginPhase(RunPhase phase, qint64 total);
    void advance(qint64 bytes);
    void breathe();
    void breatheAtTimes();
    void writeWhole(const QString& path, const QByteArray& bytes);
    void copyToCard(const QString& source, const QString& name);
    void requireSameCard() const;
    void deleteFromCard(const QString& name);
    void removeTree(const QString& folder);

    FileSystem& files_;
    const Drives& drives_;
    const CardJob job_;
    const QString root_;
    const CardIdentity card_;
    const Project snapshot_;
    const bool settingsOnly_;
    int& stepCode_;
    CardRunObserver& observer_;
    CardRunReport& report_;

    QList<Track> tracks_;
    QByteArray hex_;
    QByteArray projectBytes_;
    std::unique_ptr<OutputFile> projectFile_;
    std::unique_ptr<OpenFolder> folder_;  // the card, held open from the first guard on
    QList<WrittenFile> written_;

    RunPhase phase_ = RunPhase::Prepare;
    QElapsedTimer phaseTimer_;
    QElapsedTimer breathTimer_;
    qint64 phaseDone_ = 0;
    qint64 phaseTotal_ = 0;
};

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
    breathe();
}

void CardRun::breathe() {
    if (!observer_.keepGoing())
        throw TessalyError(error_number::Stopped, "The writing of the card was stopped.");
}

void CardRun::breatheAtTimes() {
    if (breathTimer_.isValid() && breathTimer_.elapsed() < BreatheEveryMs)
        return;
    breathe();
    breathTimer_.start();
}

void CardRun::writeWhole(const QString& path, const QByteArray& bytes) {
    const auto file = files_.create(path);
    file->write(bytes);
    file->close();
}

void CardRun::checkSources() {
    beginPhase(RunPhase::Prepare, 0);
    step(200);
    QString tooLarge;
    for (const Track& track : tracks_) {
        const auto size = files_.fileSize(track.source);
        if (!size)
            throw TessalyError(error_number::SourceMissing, "Cannot find file " + track.source);
        if (tooLarge.isEmpty())
            tooLarge = tooLargeForCard(track.source, *size);
        breatheAtTimes();
    }
    step(201);
    const QString firmware = job_.folders.firmwareFile();
    if (!files_.fileSize(firmware))
        throw TessalyError(error_number::FirmwareMissing,
                           "Cannot find firmware file " + firmware + ".");
    step(202);
    const QString calibration = job_.folders.calibrationFile();
    if (!files_.fileSize(calibration))
        throw TessalyError(error_number::CalibrationMissing,
                           "Cannot find calibration file " + calibration + ".");
    for (const LimitViolation& violation : limitViolations(snapshot_)) {
        step(violation.stepCode);
        throw TessalyError(violation.errorNumber, violation.text);
    }
    if (hasChime() && tooLarge.isEmpty())
        tooLarge = tooLargeForCard(snapshot_.txtChimeFileName,
                                   files_.fileSize(snapshot_.txtChimeFileName).value_or(0));
    if (!tooLarge.isEmpty()) {
        step(305);
        throw TessalyError(error_number::SourceTooLarge, tooLarge);
    }
}

void CardRun::buildImage() {
    step(203);
    const auto binary = files_.create(work("tmp.bin"));
    const QByteArray image = composeConfigImage(
        snapshot_, job_.identifier.value_or(randomIdentifier()), [this](int code) { step(code); });
    binary->write(image);
    binary->close();
    hex_ = EncodeImageAsHex(image);
    writeWhole(work("tmp.hex"), hex_);
    breathe();
    projectBytes_ = encodeProject(snapshot_);
    // A work folder without room shall say so now, not when the card is erased.
    writeWhole(work("tmp.crd"), projectBytes_);
    breathe();
}

// The files that every run writes, by card name, with the size that they will have. A missing one
// counts nothing here: its copy will say so.
QList<std::pair<QString, qint64>> CardRun::settingsFiles() const {
    const auto sizeOf = [this](const QString& path) { return files_.fileSize(path).value_or(0); };
    QList<std::pair<QString, qint64>> list = {
        {card_name::Settings, hex_.size()},
        {card_name::Firmware, sizeOf(job_.folders.firmwareFile())},
        {card_name::Calibration, sizeOf(job_.folders.calibrationFile())},
        {card_name::FixedConfiguration, sizeOf(job_.folders.fixedConfigurationFile())},
        {card_name::Project, projectBytes_.size()}};
    if (hasChime())
        list.append({card_name::Chime, sizeOf(snapshot_.txtChimeFileName)});
    return list;
}

SpacePlan CardRun::spacePlan(const VolumeGeometry& geometry) {
    const auto taking = [&](const QString& name) { return fatEntriesOf(name, geometry.fatNames); };
    const auto taken = [&](const QString& name) {
        return geometry.entriesByName.value(name, taking(name));
    };
    SpacePlan plan;
    for (const auto& [name, size] : settingsFiles()) {
        plan.newFiles.append(size);
        const auto old = files_.fileSize(pathIn(root_, name));
        if (settingsOnly_ && old)
            plan.freedBytes += inWholeClusters(*old, geometry.clusterBytes);
        // A file that is written over keeps its entries. One that is deleted before leaves a gap
        // that may be too small: Windows and Linux do not make the same number of entries.
        const bool hasRoom =
            settingsOnly_ && old && (!isTrimmed(name) || taken(name) >= taking(name));
        if (!hasRoom)
            plan.newEntries += taking(name);
    }
    for (const FolderEntry& entry : files_.entries(root_)) {
        plan.presentEntries += taken(entry.name);
        if (settingsOnly_ || entry.name == card_name::SystemFolder)
            plan.stayingEntries += taken(entry.name);
        else
            plan.freedBytes += bytesTaken(files_, root_, entry, geometry);
    }
    if (settingsOnly_)
        return plan;
    for (const Track& track : tracks_) {
        plan.newFiles.append(files_.fileSize(track.source).value_or(0));
        plan.newEntries += taking(card_name::track(track.number));
        breatheAtTimes();
    }
    return plan;
}

void CardRun::checkTarget() {
    step(310);
    if (job_.mustBeRemovableRoot)
        requireRemovableRoot(drives_, root_);
    requireSameCard();
    folder_ = files_.openFolder(root_);
    if (!job_.mustBeRemovableRoot && !settingsOnly_)
        requireErasableFolder(files_, drives_, root_, job_.mayEraseOthers);
    step(311);
    refuseSystemFolder(files_, root_, job_.folders, job_.kept + QStringList(job_.workFolder));
    refuseHoldingMounts(drives_, root_);
    step(312);
    QStringList sources;
    for (const Track& track : tracks_)
        sources.append(track.source);
    if (hasChime())
        sources.append(snapshot_.txtChimeFileName);
    refuseHoldingSources(files_, root_, sources, [this] { breatheAtTimes(); });
    step(313);
    requireWritable(files_, drives_, root_);
    step(314);
    const VolumeGeometry geometry = drives_.geometry(root_);
    const SpacePlan plan = spacePlan(geometry);
    requireSpace(plan, geometry);
    step(315);
    requireRootEntries(plan, geometry);
    step(316);
    if (settingsOnly_)
        requireSameTracks(files_, root_, snapshot_, [this] { breatheAtTimes(); });
    breathe();
}

void CardRun::deleteFromCard(const QString& name) {
    requireSameCard();
    if (files_.fileSize(pathIn(root_, name)))
        folder_->removeFile(name);
}

// The project comes last and is deleted first, so that it seals the card: one that a run did not
// finish is never taken for a good one.
void CardRun::trimCard() {
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
        breathe();
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
        breathe();
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
    const WrittenFile file =
        copyFile(files_, source, *folder_, name, [this](qint64 bytes) { advance(bytes); });
    written_.append(file);
    report_.files.append({name, file.size});
    report_.bytes += file.size;
}

void CardRun::copyTracks() {
    qint64 total = 0;
    for (const auto& file : settingsFiles())
        total += file.second;
    if (!settingsOnly_)
        for (const Track& track : tracks_) {
            total += files_.fileSize(track.source).value_or(0);
            breatheAtTimes();
        }
    beginPhase(RunPhase::Copy, total);
    if (settingsOnly_)
        return;
    step(11);
    int done = 0;
    for (const Track& track : tracks_) {
        if (done > 0)
            observer_.setCaption(
                QString("%1 of %2 files transferred").arg(done).arg(tracks_.size()));
        observer_.setBarValue(++done);
        breathe();
        copyToCard(track.source, card_name::track(track.number));
    }
}

void CardRun::copyFixedFiles() {
    step(15);
    copyToCard(work("tmp.hex"), card_name::Settings);
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
    copyToCard(work("tmp.crd"), card_name::Project);
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

}  // namespace

CardRunReport CardWriter::updateSettings(Project& project, const CardJob& job,
                                         CardRunObserver& observer) {
    if (!running_)
        updateSettingsOnly = true;
    return createCard(project, job, observer);
}

CardRunReport CardWriter::createCard(Project& project, const CardJob& job,
                                     CardRunObserver& observer) {
    CardRunReport report;
    if (running_) {
        report.outcome = CardRunReport::Outcome::Busy;
        return report;
    }
    running_ = true;
    const auto finished = qScopeGuard([this] { running_ = false; });
    project.unsavedChanges = true;
    // The question is about this card and no other that takes its place before the answer.
    const CardIdentity card = cardAt(files_, drives_, rootOf(job));
    if (!observer.confirm(updateSettingsOnly ? UpdateQuestion : EraseQuestion))
        return report;

    trackFileCount = numberTrackFiles(project);
    const Project snapshot = project;
    try {
        CardRun run(files_, drives_, job, card, snapshot, updateSettingsOnly, stepCode, observer,
                    report);
        observer.showProgress("Preparing to create card...");
        run.checkSources();
        run.buildImage();
        observer.setBarMaximum(trackFileCount + 1);
        observer.setBarValue(0);
        run.checkTarget();
        if (updateSettingsOnly)
            run.trimCard();
        else
            run.eraseCard();
        run.copyTracks();
        run.copyFixedFiles();
        run.writeProjectFile();
        // Writing the project's file clears the flag, unless it was edited since the run began.
        if (sameContent(project, snapshot))
            project.unsavedChanges = false;
        run.copyProjectFile();
        run.settleAndVerify();
        observer.hideProgress();
        report.outcome = CardRunReport::Outcome::Done;
        observer.succeeded("Card successfully created!");
        run.deleteTemporaryFiles();
        updateSettingsOnly = false;
    } catch (const TessalyError& error) {
        report.outcome = CardRunReport::Outcome::Failed;
        report.error = error;
        // The message says to create the card anew: the next click must be able to.
        if (error.number == error_number::CardDiffers)
            updateSettingsOnly = false;
        observer.hideProgress();
        observer.failed("Tessaly Error " + QString::number(stepCode),
                        QString("Error # %1 was generated by ").arg(error.number) + error.source +
                            '\r' + error.description,
                        "Card has NOT been created");
    }
    report.stepCode = stepCode;
    return report;
}

}  // namespace tessaly
