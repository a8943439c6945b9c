// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_checks.h"

#include <QDir>

#include "card/sound_checks.h"
#include "image/image_limits.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 CapacityMargin = 500000;

// More pairs than the largest image has room for. A damaged file may bring titles and languages by
// the ten thousand.
constexpr qsizetype MostPairs = 32768;

constexpr qsizetype MostProblems = 200;

CheckResult judged(Verdict bad, const QStringList& offenders, const QString& badText,
                   const QString& goodText) {
    if (offenders.isEmpty())
        return {Verdict::Green, goodText, {}, true};
    return {bad, badText, offenders, true};
}

CheckResult judged(bool isGood, const QString& badText, const QString& goodText) {
    return {isGood ? Verdict::Green : Verdict::Red, isGood ? goodText : badText, {}, true};
}

CheckResult checkMusicLists(const Project& project, const TrackIndex& index) {
    QStringList empty;
    for (const QString& list : project.lstMuList)
        if (!index.hasMusicList(list))
            empty.append(list);
    return judged(Verdict::Red, empty, u"The following Music List(s) contain no music tracks:"_s,
                  u"Music Lists OK - All Music Lists contain at least one track."_s);
}

CheckResult checkLanguages(const Project& project, const TrackIndex& index) {
    QStringList empty;
    for (const QString& language : project.lstLangs)
        if (!index.hasLanguage(language))
            empty.append(language);
    return judged(Verdict::Red, empty, u"The following Language(s) contain no Speech Titles:"_s,
                  u"Languages OK - All languages contain at least one speech title."_s);
}

CheckResult checkSpeechTitles(const Project& project, const TrackIndex& index) {
    QStringList pairs;
    for (const QString& title : project.lstSpTitles)
        for (const QString& language : project.lstLangs)
            if (pairs.size() < MostPairs && !index.speech(title, language))
                pairs.append(title + u" - "_s + language);
    return judged(Verdict::Yellow, pairs,
                  u"The following Speech Title - Language pairs have no corresponding MP3 "_s
                  u"file.  This IS allowable, just make sure it's what you want!"_s,
                  u"Speech Titles OK - All speech titles are present in all languages."_s);
}

CheckResult checkSilentTracks(const Project& project, const TrackIndex& index) {
    QStringList silent;
    for (const MusicLine& line : silentTracks(project, index))
        silent.append(shortName(line));
    return judged(Verdict::Yellow, silent, u"These tracks have no MP3 file and stay silent:"_s, {});
}

CheckResult checkEmptyFiles(const SourceFiles& sources) {
    QStringList empty;
    for (const SourceFile& source : sources.tracks)
        if (source.size == 0)
            empty.append(QDir::toNativeSeparators(source.path));
    if (sources.chime && sources.chime->size == 0)
        empty.append(QDir::toNativeSeparators(sources.chime->path));
    empty.removeDuplicates();
    return judged(Verdict::Yellow, empty, u"These MP3 files are empty and play nothing:"_s, {});
}

CheckResult checkFileNumbers(int trackCount) {
    if (trackCount <= limits::FlagFreeNumber)
        return {Verdict::Green, {}, {}, true};
    return {Verdict::Yellow,
            u"File numbers above %1 run into the player's playback flags: the "_s
            u"project has %2 files"_s.arg(limits::FlagFreeNumber)
                .arg(trackCount),
            {},
            true};
}

struct DriveChecks {
    CheckResult selected;
    CheckResult present{Verdict::Grey, u"CF drive not ready - check card"_s, {}, false};
    CheckResult bigEnough{Verdict::Grey, u"CF card too small - delete tracks"_s, {}, false};
    std::optional<bool> updateFirmwareEnabled{};
};

DriveChecks checkDrive(const QString& cfDrive, const Drives& drives, qint64 totalCardBytes) {
    DriveChecks checks;
    checks.selected = judged(!cfDrive.isEmpty(), u"CF Card Drive is NOT SELECTED"_s,
                             u"CF Card Drive is "_s + cfDrive);
    if (cfDrive.isEmpty()) {
        checks.updateFirmwareEnabled = false;
        return checks;
    }
    qint64 size = 0;
    try {
        size = drives.totalBytes(cfDrive);
    } catch (const TessalyError& error) {
        if (error.number == error_number::DriveNotReady) {
            checks.present = judged(false, u"CF Card not inserted"_s, {});
            return checks;
        }
    }
    checks.updateFirmwareEnabled = true;
    checks.present = judged(true, {}, u"CF Card detected"_s);
    checks.bigEnough = judged(size > totalCardBytes + CapacityMargin, checks.bigEnough.text,
                              u"CF Card can hold selected tracks."_s);
    return checks;
}

}  // namespace

CardChecks runCardChecks(const Project& project, const SourceFiles& sources, const QString& cfDrive,
                         const Drives& drives, qint64 totalCardBytes, const SoundBook* book) {
    const TrackIndex index(project);
    const DriveChecks drive = checkDrive(cfDrive, drives, totalCardBytes);
    CardChecks checks;
    checks.hasItems = !sources.tracks.isEmpty();
    checks.totals = updateSummary(sources);
    checks.musicLists = checkMusicLists(project, index);
    checks.languages = checkLanguages(project, index);
    checks.speechTitles = checkSpeechTitles(project, index);
    checks.driveSelected = drive.selected;
    checks.cardPresent = drive.present;
    checks.cardBigEnough = drive.bigEnough;
    checks.trackCount =
        judged(checks.totals.trackCount <= limits::TrackFiles, u"Too many tracks, limit is 9995"_s,
               u"Number of tracks is within limit"_s);
    checks.silentTracks = checkSilentTracks(project, index);
    checks.emptyFiles = checkEmptyFiles(sources);
    checks.fileNumbers = checkFileNumbers(checks.totals.trackCount);
    if (book)
        checks.sound = checkSound(soundsOf(project, sources, *book));
    for (const SourceFile& source : sources.tracks)
        if (!source.size)
            checks.missingFiles.append(source.path);
    for (const LimitViolation& violation : limitViolations(project))
        if (violation.errorNumber != error_number::TooManyFiles)
            checks.exceededLimits.append(violation.text);
    checks.exceededLimits.append(checks.totals.tooLargeFiles);

    checks.updateFirmwareEnabled = drive.updateFirmwareEnabled;
    checks.projectBlocked = checks.musicLists.verdict == Verdict::Red ||
                            checks.languages.verdict == Verdict::Red ||
                            checks.trackCount.verdict == Verdict::Red ||
                            checks.totals.missingFileFlag || !checks.exceededLimits.isEmpty();
    checks.blocked = checks.projectBlocked || drive.bigEnough.verdict != Verdict::Green;
    return checks;
}

QList<CheckResult> warningsOf(const CardChecks& checks) {
    QList<CheckResult> warnings;
    for (const CheckResult* check : {&checks.speechTitles, &checks.silentTracks, &checks.emptyFiles,
                                     &checks.fileNumbers, &checks.sound})
        if (check->verdict == Verdict::Yellow)
            warnings.append(*check);
    return warnings;
}

CardControls cardControls(const CardChecks& checks, bool updateFirmware, bool canGiveFiles) {
    const bool isAnySilent = checks.silentTracks.verdict == Verdict::Yellow;
    return {.buttCreateCard = !checks.blocked,
            .buttCreateXD3 = !checks.blocked,
            .buttUpdateFirmware = checks.updateFirmwareEnabled.value_or(updateFirmware),
            .buttGiveFiles = isAnySilent && canGiveFiles,
            .buttFindMissing = !checks.missingFiles.isEmpty(),
            .fraSilentTracks = checks.hasItems && isAnySilent,
            .fraEmptyFiles = checks.emptyFiles.verdict == Verdict::Yellow,
            .fraSound = checks.hasItems && !checks.sound.text.isEmpty(),
            .fraCC7 = problemsOf(checks).verdict == Verdict::Red};
}

CheckResult problemsOf(const CardChecks& checks) {
    QStringList lines = checks.exceededLimits;
    for (const QString& path : checks.missingFiles)
        lines.append(u"Cannot find file "_s + path);
    const qsizetype more = lines.size() - MostProblems;
    if (more > 0) {
        lines.resize(MostProblems);
        lines.append(u"... and %1 more"_s.arg(more));
    }
    return judged(Verdict::Red, lines, u"These keep the card from being written:"_s, {});
}

QString selectCardDrive(Project& project, const Drives& drives, const QString& root) {
    try {
        const DriveType type = drives.type(root);
        if (type != DriveType::Removable)
            return u"Sorry, that is a %1 drive!"_s.arg(driveTypeName(type));
    } catch (const TessalyError& error) {
        if (error.number != error_number::DriveNotReady)
            return {};
    }
    project.cfDrive = root;
    return {};
}

}  // namespace tessaly
