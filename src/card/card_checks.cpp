#include "card/card_checks.h"

#include <QDir>

#include "image/image_limits.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"

namespace tessaly {

namespace {

constexpr qint64 CapacityMargin = 500000;

// More pairs than the largest image has room for. A damaged file may bring titles and languages by
// the ten thousand.
constexpr qsizetype MostPairs = 32768;

CheckResult judged(Verdict bad, const QStringList& offenders, const char* badText,
                   const char* goodText) {
    if (offenders.isEmpty())
        return {Verdict::Green, goodText, {}, true};
    return {bad, badText, offenders, true};
}

void checkItems(const Project& project, CardChecks& checks) {
    const TrackIndex index(project);
    QStringList lists, languages, pairs;
    for (const QString& list : project.lstMuList)
        if (!index.hasMusicList(list))
            lists.append(list);
    for (const QString& language : project.lstLangs)
        if (!index.hasLanguage(language))
            languages.append(language);
    for (const QString& title : project.lstSpTitles)
        for (const QString& language : project.lstLangs)
            if (pairs.size() < MostPairs && !index.speech(title, language))
                pairs.append(title + " - " + language);
    checks.musicLists =
        judged(Verdict::Red, lists, "The following Music List(s) contain no music tracks:",
               "Music Lists OK - All Music Lists contain at least one track.");
    checks.languages =
        judged(Verdict::Red, languages, "The following Language(s) contain no Speech Titles:",
               "Languages OK - All languages contain at least one speech title.");
    checks.speechTitles =
        judged(Verdict::Yellow, pairs,
               "The following Speech Title - Language pairs have no corresponding MP3 file.  This "
               "IS allowable, just make sure it's what you want!",
               "Speech Titles OK - All speech titles are present in all languages.");
    QStringList silent;
    for (const MusicLine& line : silentTracks(project, index))
        silent.append(shortName(line));
    checks.silentTracks =
        judged(Verdict::Yellow, silent, "These tracks have no MP3 file and stay silent:", "");
}

void checkSources(const SourceFiles& sources, CardChecks& checks) {
    QStringList empty;
    const auto look = [&](const SourceFile& source) {
        if (source.size == 0)
            empty.append(QDir::toNativeSeparators(source.path));
    };
    for (const SourceFile& source : sources.tracks) {
        look(source);
        if (!source.size)
            checks.missingFiles.append(source.path);
    }
    if (sources.chime)
        look(*sources.chime);
    empty.removeDuplicates();
    checks.emptyFiles =
        judged(Verdict::Yellow, empty, "These MP3 files are empty and play nothing:", "");
}

void checkTrackCount(CardChecks& checks) {
    const int count = checks.totals.trackCount;
    checks.trackCount =
        count > limits::TrackFiles
            ? CheckResult{Verdict::Red, "Too many tracks, limit is 9995", {}, true}
            : CheckResult{Verdict::Green, "Number of tracks is within limit", {}, true};
    checks.fileNumbers = {Verdict::Green, {}, {}, true};
    if (count > limits::FlagFreeNumber)
        checks.fileNumbers = {Verdict::Yellow,
                              QString("File numbers above %1 run into the player's playback flags: "
                                      "the project has %2 files")
                                  .arg(limits::FlagFreeNumber)
                                  .arg(count),
                              {},
                              true};
}

// Whether the drive keeps the card from being written.
bool checkDrive(const QString& cfDrive, const Drives& drives, qint64 totalCardBytes,
                CardChecks& checks) {
    checks.cardPresent = {Verdict::Grey, "CF drive not ready - check card", {}, false};
    checks.cardBigEnough = {Verdict::Grey, "CF card too small - delete tracks", {}, false};
    if (cfDrive.isEmpty()) {
        checks.driveSelected = {Verdict::Red, "CF Card Drive is NOT SELECTED", {}, true};
        checks.updateFirmwareEnabled = false;
        return true;
    }
    checks.driveSelected = {Verdict::Green, "CF Card Drive is " + cfDrive, {}, true};
    qint64 size = 0;
    try {
        size = drives.totalBytes(cfDrive);
    } catch (const TessalyError& error) {
        if (error.number == error_number::DriveNotReady) {
            checks.cardPresent = {Verdict::Red, "CF Card not inserted", {}, true};
            return true;
        }
    }
    checks.updateFirmwareEnabled = true;
    checks.cardPresent = {Verdict::Green, "CF Card detected", {}, true};
    if (size > totalCardBytes + CapacityMargin) {
        checks.cardBigEnough = {Verdict::Green, "CF Card can hold selected tracks.", {}, true};
        return false;
    }
    checks.cardBigEnough = {Verdict::Red, "CF card too small - delete tracks", {}, true};
    return true;
}

}  // namespace

CardChecks runCardChecks(const Project& project, const SourceFiles& sources, const QString& cfDrive,
                         const Drives& drives, qint64 totalCardBytes) {
    CardChecks checks;
    checks.hasItems = !sources.tracks.isEmpty();
    checkItems(project, checks);
    const bool driveBlocks = checkDrive(cfDrive, drives, totalCardBytes, checks);
    checks.totals = updateSummary(sources);
    checkSources(sources, checks);
    checkTrackCount(checks);
    for (const LimitViolation& violation : limitViolations(project))
        if (violation.errorNumber != error_number::TooManyFiles)
            checks.exceededLimits.append(violation.text);
    checks.exceededLimits.append(checks.totals.tooLargeFiles);

    checks.projectBlocked = checks.musicLists.verdict == Verdict::Red ||
                            checks.languages.verdict == Verdict::Red ||
                            checks.trackCount.verdict == Verdict::Red ||
                            checks.totals.missingFileFlag || !checks.exceededLimits.isEmpty();
    checks.blocked = checks.projectBlocked || driveBlocks;
    return checks;
}

QList<CheckResult> warningsOf(const CardChecks& checks) {
    QList<CheckResult> warnings;
    for (const CheckResult* check :
         {&checks.speechTitles, &checks.silentTracks, &checks.emptyFiles, &checks.fileNumbers})
        if (check->verdict == Verdict::Yellow)
            warnings.append(*check);
    return warnings;
}

}  // namespace tessaly
