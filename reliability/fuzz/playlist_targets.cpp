// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "editor/list_import.h"
#include "editor/playlist_parser.h"
#include "editor/standard_playlist.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/mp3_tags.h"
#include "support/projects.h"
#include "targets.h"

namespace tessaly::fuzz {

namespace {

// Titles of all lengths, by the length of the path.
class SomeTags : public Mp3Tags {
 public:
    TagBlocks read(const QString& path) const override {
        TagBlocks blocks;
        if (path.size() % 3 == 0)
            blocks.first.title = QString(path.size() % 9, 'e') +
                                 QString::fromUtf8("\xCC\x81lie \xF0\x9F\x8E\xB5 au phare");
        if (path.size() % 3 == 1)
            blocks.second.title = path;
        return blocks;
    }
};

const Project& projectBefore() {
    static const Project project = [] {
        Project made;
        for (const char* list : {"Tour", "My playlist"})
            for (const char* track : {"N", "01 N"})
                test::addTrack(made, list, track, "a.mp3");
        return made;
    }();
    return project;
}

void requireOnlyTheFlagChanged(Project project) {
    require(project.unsavedChanges, "an import marks the project");
    project.unsavedChanges = false;
    require(project == projectBefore(), "an import that fails changes nothing");
}

void requireImported(const Project& project, const ImportResult& result, QByteArrayView bytes) {
    const Project& before = projectBefore();
    requireConsistent(project);
    require(project.lstMuList == before.lstMuList + QStringList{result.list}, "one list is new");
    require(result.list == "01 My playlist" && result.listRow == 2, "the list is named");
    for (const QString& list : before.lstMuList)
        require(tracksOfMusicList(project, list) == tracksOfMusicList(before, list),
                "the other lists stay");
    const QStringList tracks = tracksOfMusicList(project, result.list);
    require(tracks.size() == result.tracks && result.trackRow == result.tracks - 1,
            "the tracks are counted");
    require(
        std::equal(before.TrackTable.begin(), before.TrackTable.end(), project.TrackTable.begin()),
        "the records there were stay");
    const QList<TrackRecord> records = project.TrackTable.mid(before.TrackTable.size());
    require(records.size() == tracks.size(), "each track has its record");
    const QString text = decodePlaylist(bytes);
    const qsizetype clashes = tracks.size();  // at most: each adds "01 " or a digit
    for (qsizetype i = 0; i < records.size(); ++i) {
        const TrackRecord& record = records[i];
        require(
            isMusic(record) && record.groupName.is(result.list) && record.itemName.is(tracks[i]),
            "a record is found by its list and track");
        require(record.sourcePath.text().endsWith("mp3", Qt::CaseInsensitive),
                "every track is an MP3 file");
        require(!tracks[i].isEmpty() && tracks[i].size() <= 16 + 3 + clashes,
                "names keep to 16 characters");
        require(tracks[i].isValidUtf16() || !text.isValidUtf16(), "no name is cut in a character");
    }

    const QList<QStringView> lines = linesOf(text, 1'000'000);
    const PlaylistHeader header = parsePlaylistHeader(lines.value(0));
    require(playlistEntries(header.playlistFormat, lines.size()) ==
                result.tracks + result.leftOut.size(),
            "each entry is a track or has its message");
}

// The same bytes as a standard playlist.
void requireStandard(QByteArrayView bytes, const QString& ending) {
    constexpr qsizetype Most = 50;
    const QString folder = "/music/";
    qsizetype characters = 0;
    const auto entries = parseStandardPlaylist(bytes, folder + "My playlist" + ending, Most);
    require(entries.size() <= Most, "no more entries than wanted are read");
    for (const StandardEntry& entry : entries) {
        const QString& path = entry.location;
        const bool hasRoot = path.startsWith('/') || path.startsWith('\\');
        require(entry.isStream ? path.contains("://") : hasRoot || path.indexOf(':') == 1,
                "every path is whole");
        require(entry.title.size() <= 1000 && entry.title == entry.title.trimmed(),
                "titles are short and trimmed");
        characters += path.size();
    }
    require(characters <= bytes.size() + folder.size() * entries.size(),
            "paths hold no more than the file does");
}

}  // namespace

void fuzzPlaylist(QByteArrayView bytes) {
    for (const char* ending : {".m3u8", ".pls"})
        requireStandard(bytes, ending);
    const QString path = "/music/My playlist.txt";
    const SomeTags tags;
    Project project = projectBefore();
    int entries = 0;
    try {
        const ImportResult result = importPlaylist(project, bytes, tags, path, [&](int, int total) {
            entries = total;
            return true;
        });
        require(result.outcome == ImportResult::Outcome::Imported ||
                    result.outcome == ImportResult::Outcome::Invalid,
                "a playlist is imported or refused");
        const bool isImported = result.outcome == ImportResult::Outcome::Imported;
        if (!isImported)
            requireOnlyTheFlagChanged(project);
        if (isImported && isTurn(bytes, 0, 2))
            requireImported(project, result, bytes);
        if (isImported && isTurn(bytes, 1, 2))
            requireSaved(project);
    } catch (const TessalyError& error) {
        require(
            error.number == error_number::BadImport || error.number == error_number::TextTooLong,
            "an import that fails says so");
        if (error.number == error_number::BadImport)
            requireOnlyTheFlagChanged(project);
    }
    if (entries == 0 || !isTurn(bytes, 0, 4))
        return;
    project = projectBefore();
    const ImportResult cancelled = importPlaylist(
        project, bytes, tags, path, [&](int done, int) { return done < entries / 2; });
    require(cancelled.outcome == ImportResult::Outcome::Cancelled, "an import can be cancelled");
    requireOnlyTheFlagChanged(project);
}

void fuzzTags(QByteArrayView bytes) {
    const TagBlocks blocks = LocalMp3Tags().read(fileOf(bytes));
    for (const TagBlock* block : {&blocks.first, &blocks.second})
        for (const QString* text : {&block->title, &block->artist, &block->album})
            require(*text == text->trimmed(), "tags are trimmed");
    require(bytes.size() >= 128 || blocks.second == TagBlock(), "ID3v1 takes 128 bytes");
}

}  // namespace tessaly::fuzz
