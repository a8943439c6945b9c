// SPDX-License-Identifier: GPL-3.0-or-later
// What a run does before anything on the card changes.
#include "card/card_run.h"
#include "image/config_image.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/card_file.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Whether an update of the settings deletes the file before it writes it.
bool isDeletedBefore(const QString& name) {
    return name == card_name::Project || name == card_name::Settings ||
           name == card_name::Firmware || name == card_name::Calibration;
}

}  // namespace

QString CardRun::work(const QString& name) const {
    return pathIn(job_.workFolder, name);
}

void CardRun::writeWhole(const QString& path, const QByteArray& bytes) {
    const auto file = files_.create(path);
    file->write(bytes);
    file->close();
}

void CardRun::checkSources() {
    beginPhase(RunPhase::Prepare, 0);
    step(step_code::FindSources);
    sources_ = measureSources(snapshot_, files_, [this] { checkForStopAtTimes(); });
    for (const SourceFile& track : sources_.tracks)
        if (!track.size)
            throw TessalyError(error_number::SourceMissing,
                               u"Cannot find file "_s + elided(track.path));
    step(step_code::FindFirmware);
    const QString firmware = job_.folders.firmwareFile();
    if (!files_.fileSize(firmware))
        throw TessalyError(error_number::FirmwareMissing,
                           u"Cannot find firmware file "_s + firmware + u'.');
    step(step_code::FindCalibration);
    const QString calibration = job_.folders.calibrationFile();
    if (!files_.fileSize(calibration))
        throw TessalyError(error_number::CalibrationMissing,
                           u"Cannot find calibration file "_s + calibration + u'.');
    const QList<LimitViolation> violations = limitViolations(snapshot_);
    if (!violations.isEmpty()) {
        step(violations.first().stepCode);
        throwFirst(violations);
    }
    const QStringList tooLarge = updateSummary(sources_).tooLargeFiles;
    if (!tooLarge.isEmpty()) {
        step(step_code::LimitSourceBytes);
        throw TessalyError(error_number::SourceTooLarge, tooLarge.first());
    }
}

void CardRun::buildImage() {
    step(step_code::BeginImage);
    const auto binary = files_.create(work(u"tmp.bin"_s));
    const QByteArray image = composeConfigImage(
        snapshot_, job_.identifier.value_or(randomIdentifier()), [this](int code) { step(code); });
    binary->write(image);
    binary->close();
    hex_ = EncodeImageAsHex(image);
    writeWhole(work(u"tmp.hex"_s), hex_);
    checkForStop();
    projectBytes_ = encodeProject(snapshot_);
    // A work folder without room shall say so now, not when the card is erased.
    writeWhole(work(u"tmp.crd"_s), projectBytes_);
    checkForStop();
}

QList<SourceFile> CardRun::filesToWrite() const {
    return job_.settingsOnly ? settings_ : settings_ + sources_.tracks;
}

SpacePlan CardRun::spacePlan(const VolumeGeometry& geometry) {
    const auto taking = [&](const QString& name) { return fatEntriesOf(name, geometry.fatNames); };
    const auto taken = [&](const QString& name) {
        return geometry.entriesByName.value(name, taking(name));
    };
    SpacePlan plan{.newFiles = filesToWrite()};
    for (const SourceFile& file : settings_) {
        const QString& name = file.cardName;
        const auto old = files_.fileSize(pathIn(root_, name));
        if (job_.settingsOnly && old)
            plan.freedBytes += inWholeClusters(*old, geometry.clusterBytes);
        // A file that is written over keeps its FAT entries. One that is deleted before frees those
        // that it has, which may be too few: Windows needs fewer for some names than Linux.
        const bool hasRoom =
            job_.settingsOnly && old && (!isDeletedBefore(name) || taken(name) >= taking(name));
        if (!hasRoom)
            plan.newEntries += taking(name);
    }
    for (const FolderEntry& entry : files_.entries(root_)) {
        plan.presentEntries += taken(entry.name);
        if (job_.settingsOnly || entry.name == card_name::SystemFolder)
            plan.stayingEntries += taken(entry.name);
        else
            plan.freedBytes += bytesTaken(files_, root_, entry, geometry);
    }
    for (const SourceFile& track : sources_.tracks) {
        if (job_.settingsOnly)
            break;
        plan.newEntries += taking(track.cardName);
        checkForStopAtTimes();
    }
    return plan;
}

void CardRun::checkTarget() {
    step(step_code::GuardTarget);
    if (job_.mustBeRemovableRoot)
        requireRemovableRoot(drives_, root_);
    requireSameCard();
    folder_ = files_.openFolder(root_);
    if (!job_.mustBeRemovableRoot && !job_.settingsOnly)
        requireErasableFolder(files_, drives_, root_, job_.mayEraseOthers);
    step(step_code::GuardFolders);
    refuseSystemFolder(files_, root_, job_.folders,
                       job_.protectedPaths + QStringList(job_.workFolder));
    refuseHoldingProject(files_, root_, job_.projectFile);
    refuseHoldingMounts(drives_, root_);
    step(step_code::GuardSources);
    refuseHoldingSources(files_, root_, sources_, [this] { checkForStopAtTimes(); });
    step(step_code::GuardWritable);
    requireWritable(files_, drives_, root_);
    step(step_code::GuardSpace);
    // A missing file counts nothing here: its copy will say so.
    const auto planned = [this](const QString& path, const QString& name) {
        return SourceFile{path, files_.fileSize(path), name};
    };
    settings_ = {{{}, hex_.size(), card_name::Settings},
                 planned(job_.folders.firmwareFile(), card_name::Firmware),
                 planned(job_.folders.calibrationFile(), card_name::Calibration),
                 planned(job_.folders.fixedConfigurationFile(), card_name::FixedConfiguration),
                 {{}, projectBytes_.size(), card_name::Project}};
    if (sources_.chime)
        settings_.append(*sources_.chime);
    const VolumeGeometry geometry = drives_.geometry(root_);
    const SpacePlan plan = spacePlan(geometry);
    requireSpace(plan, geometry);
    step(step_code::GuardRootEntries);
    requireRootEntries(plan, geometry);
    step(step_code::GuardTracks);
    if (job_.settingsOnly)
        requireSameTracks(files_, root_, sources_.tracks, [this] { checkForStopAtTimes(); });
    checkForStop();
}

}  // namespace tessaly
