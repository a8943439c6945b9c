// What a run does before anything on the card changes.
#include <QDir>

#include "card/card_names.h"
#include "card/card_run.h"
#include "card/card_summary.h"
#include "image/config_image.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

// Whether an update of the settings deletes the file before it writes it.
bool isTrimmed(const QString& name) {
    return name == card_name::Project || name == card_name::Settings ||
           name == card_name::Firmware || name == card_name::Calibration;
}

}  // namespace

void CardRun::checkSources() {
    beginPhase(RunPhase::Prepare, 0);
    step(200);
    sources_ = measureSources(snapshot_, files_, [this] { breatheAtTimes(); });
    for (const SourceFile& track : sources_.tracks)
        if (!track.size)
            throw TessalyError(error_number::SourceMissing,
                               "Cannot find file " + elided(track.path));
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
    const QStringList tooLarge = updateSummary(sources_).tooLargeFiles;
    if (!tooLarge.isEmpty()) {
        step(305);
        throw TessalyError(error_number::SourceTooLarge, tooLarge.first());
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
    checkForStop();
    projectBytes_ = encodeProject(snapshot_);
    // A work folder without room shall say so now, not when the card is erased.
    writeWhole(work("tmp.crd"), projectBytes_);
    checkForStop();
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
    if (sources_.chime)
        list.append({card_name::Chime, sources_.chime->size.value_or(0)});
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
    for (const SourceFile& track : sources_.tracks) {
        plan.newFiles.append(track.size.value_or(0));
        plan.newEntries += taking(card_name::track(track.number()));
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
    refuseHoldingProject(files_, root_, job_.projectFile);
    refuseHoldingMounts(drives_, root_);
    step(312);
    refuseHoldingSources(files_, root_, sources_, [this] { breatheAtTimes(); });
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
        requireSameTracks(files_, root_, sources_.tracks, [this] { breatheAtTimes(); });
    checkForStop();
}

}  // namespace tessaly
