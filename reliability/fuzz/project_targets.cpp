// SPDX-License-Identifier: GPL-3.0-or-later
#include <sys/mman.h>
#include <unistd.h>
#include <xxhash.h>

#include <QSet>
#include <algorithm>

#include "image/config_image.h"
#include "image/config_image_reader.h"
#include "image/image_limits.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/project_snapshot.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/projects.h"
#include "targets.h"

namespace tessaly::fuzz {

namespace {

struct Reading {
    Project project;
    ReadReport report;
};

Reading readBytes(QByteArrayView bytes) {
    LocalFileSystem files;
    Reading reading;
    reading.report = readProject(files, fileOf(bytes), reading.project);
    return reading;
}

void requireRecordsToBeTheBytes(QByteArrayView bytes, const ParsedRecords& parsed) {
    require(parsed.stoppedAt >= 0 && parsed.stoppedAt <= bytes.size(), "the end is in the file");
    require(parsed.isComplete == parsed.stopReason.isEmpty(), "what is cut short says why");
    require(parsed.isComplete == (parsed.stoppedAt == bytes.size()), "what is whole has no rest");
    QByteArray again;
    for (const TrackRecord& record : parsed.records)
        encodeRecord(again, record);
    require(again == bytes.first(parsed.stoppedAt), "records are their bytes");
    // A file that was cut gives the records before the cut.
    const ParsedRecords half = parseRecords(bytes.first(bytes.size() / 2));
    require(half.records.size() <= parsed.records.size() &&
                std::equal(half.records.begin(), half.records.end(), parsed.records.begin()),
            "a half file gives the records of its half");
}

// Numbering may keep a record from being found by its line, but there is a line for it.
void requireEveryFileToBeListed(const Project& project) {
    qsizetype lines = 0;
    for (const QString& list : project.lstMuList)
        lines += tracksOfMusicList(project, list).size();
    require(lines == std::count_if(project.TrackTable.begin(), project.TrackTable.end(), isMusic),
            "each music file has its line");
}

bool hasTracksOfOneName(const Project& project) {
    QSet<std::pair<QString, QString>> names;
    qsizetype tracks = 0;
    for (const TrackRecord& record : project.TrackTable)
        if (isMusic(record)) {
            names.insert({record.groupName.text(), record.itemName.text()});
            ++tracks;
        }
    return names.size() < tracks;
}

void requireImageOf(Project project) {
    if (!imageLimitViolations(project).isEmpty())
        return;
    const QByteArray bytes = BuildConfigImage(project, 0x1234);
    require(bytes.size() == configImageSize(project), "an image has the size it was said to have");
    const DecodedImage image = decodeConfigImage(bytes);
    require(image.lists.size() == project.lstMuList.size() &&
                image.titles.size() == project.lstSpTitles.size() &&
                image.languages.size() == project.lstLangs.size(),
            "an image holds the project's lists, titles and languages");
    for (qsizetype i = 0; i < image.lists.size(); ++i)
        require(
            image.lists[i].tracks.size() == tracksOfMusicList(project, project.lstMuList[i]).size(),
            "an image holds every track");
}

// Then its tracks belong to no list, as the format has it; only a file from elsewhere is like that.
bool beginsWithoutList(const QList<TrackRecord>& records) {
    const auto first = std::find_if(records.begin(), records.end(), isMusic);
    return first != records.end() && first->groupName.text().isEmpty();
}

}  // namespace

QString fileOf(QByteArrayView bytes) {
    static const int file = ::memfd_create("input", MFD_CLOEXEC);
    require(file >= 0 && ::ftruncate(file, 0) == 0 &&
                ::pwrite(file, bytes.data(), size_t(bytes.size()), 0) == bytes.size(),
            "there is memory for a file");
    return QString("/proc/self/fd/%1").arg(file);
}

void requireConsistent(const Project& project) {
    const QStringList wrong = test::inconsistencies(project, test::Origin::AnyFile);
    require(wrong.isEmpty(), qPrintable(wrong.join(u"; ")));
}

void requireSaved(const Project& project) {
    const QByteArray saved = encodeProject(project);
    const auto [reopened, report] = readBytes(saved);
    require(report.isComplete, "a saved project opens");
    // Records of one name are put together step by step: those of a list by the first save, those
    // of a track by the second. Only a file from elsewhere has them apart.
    const QByteArray second = encodeProject(reopened);
    require(second == saved || hasTracksOfOneName(project), "a saved project comes back as it was");
    require(encodeProject(readBytes(second).project) == second, "a saved project stays as it is");
    requireConsistent(reopened);
    const auto files = [](const Project& p) {
        return std::count_if(p.TrackTable.begin(), p.TrackTable.end(), isTrackFile);
    };
    require(files(project) == files(reopened), "a save keeps every file");
}

void fuzzProject(QByteArrayView bytes) {
    const ParsedRecords parsed = parseRecords(bytes);
    if (isTurn(bytes, 0, 4))
        requireRecordsToBeTheBytes(bytes, parsed);

    const auto [project, report] = readBytes(bytes);
    require(report.records <= parsed.records.size(), "only records are applied");
    require(report.isComplete == report.stopReason.isEmpty(), "what is cut short says why");
    require(!report.isComplete || report.stoppedAt == bytes.size(), "what is whole has no rest");
    if (beginsWithoutList(parsed.records))
        return;
    requireConsistent(project);
    requireEveryFileToBeListed(project);
    if (!report.isComplete) {
        const Reading again = readBytes(bytes.first(report.stoppedAt));
        require(
            again.report.stoppedAt == report.stoppedAt && again.report.records == report.records,
            "a report names the byte behind the last good record");
        require(again.project == project, "damage takes nothing of what stands before it");
    }
    if (isTurn(bytes, 1, 4))
        requireSaved(project);
    if (isTurn(bytes, 2, 4)) {
        const auto copy = decodeSnapshot(encodeSnapshot(project));
        require(copy && sameContent(*copy, project), "a recovery copy holds the project");
    }
    if (isTurn(bytes, 3, 4))
        requireImageOf(project);
}

void fuzzSnapshot(QByteArrayView bytes) {
    const QByteArray plain = bytes.toByteArray();
    require(!decodeSnapshot(plain) || plain.startsWith("tessaly snapshot 2\n"),
            "bytes without the magic text are no snapshot");
    XXH64_canonical_t checksum;
    XXH64_canonicalFromHash(&checksum, XXH3_64bits(plain.data(), size_t(plain.size())));
    const QByteArray whole =
        "tessaly snapshot 2\n" +
        QByteArray(reinterpret_cast<const char*>(checksum.digest), sizeof(checksum.digest)) + plain;
    const auto project = decodeSnapshot(whole);
    if (!project)
        return;
    require(project->lstMuTrack.size() == project->MusicListNames.size() &&
                project->currentMusicList >= 0 &&
                project->currentMusicList < project->lstMuTrack.size(),
            "the list on view is one");
    require(!project->TrackTable.isEmpty() && !project->DefaultLanguageTable.isEmpty(),
            "the tables have their slot 0");
    const auto again = decodeSnapshot(encodeSnapshot(*project));
    require(again && *again == *project, "a snapshot that was read is written as it was");
    require(countSnapshot(encodeSnapshot(*project))->lists == project->lstMuList.size(),
            "a snapshot tells its lists");
}

}  // namespace tessaly::fuzz
