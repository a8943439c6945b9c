// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/music_files.h"

#include <QDir>
#include <functional>
#include <utility>

#include "editor/folder_tree.h"
#include "editor/list_import.h"
#include "editor/standard_playlist.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct FoundList {
    QString name;  // whole
    QList<StandardEntry> tracks;
    bool isPlaylist = false;
};

// Finds the MP3 files of all that was given, and what they are called.
class Gathering {
 public:
    Gathering(FileSystem& files, const Mp3Tags& tags, const KeepGoing& keepGoing)
        : files_(files), tags_(tags), keepGoing_(keepGoing) {}

    void gather(QStringList paths);
    void nameTracks();

    int count() const { return int(count_); }

    AddSummary summary;
    QList<FoundList> lists;

 private:
    void addLoose(const QStringList& paths);
    void addPlaylist(const QString& path);
    void addList(FoundList list, const QString& origin);
    void findFile(StandardEntry& entry);
    QString nameOf(const StandardEntry& entry) const;

    FileSystem& files_;
    const Mp3Tags& tags_;
    const KeepGoing& keepGoing_;
    qsizetype count_ = 0;
};

void Gathering::gather(QStringList paths) {
    for (QString& path : paths)
        path = QDir::toNativeSeparators(QDir::cleanPath(path));
    sortByName(paths);
    QStringList loose, folders, playlists;
    for (const QString& path : paths)
        (files_.isFolder(path)      ? folders
         : isStandardPlaylist(path) ? playlists
                                    : loose)
            .append(path);
    addLoose(loose);
    for (const QString& folder : folders) {
        const auto found = mp3FoldersIn(files_, folder, summary, keepGoing_);
        if (found.isEmpty() && !summary.isCancelled)
            summary.note(wholePath(folder) + u" holds no MP3 file."_s);
        for (const Mp3Folder& inside : found) {
            FoundList list{.name = lastNameOf(inside.path), .tracks = {}};
            for (const QString& file : inside.files)
                list.tracks.append({.title = {}, .location = file});
            addList(list, folder);
        }
    }
    for (const QString& playlist : playlists)
        addPlaylist(playlist);
}

void Gathering::addLoose(const QStringList& paths) {
    FoundList list;
    for (const QString& path : paths) {
        if (!isMp3Name(lastNameOf(path)))
            summary.leaveOut(files_.fileSize(path) ? LeftOut::NoMp3 : LeftOut::NotFound, path);
        else if (!files_.fileSize(path))
            summary.leaveOut(LeftOut::NotFound, path);
        else
            list.tracks.append({.title = {}, .location = path});
    }
    if (!list.tracks.isEmpty()) {
        list.name = lastNameOf(
            QDir::toNativeSeparators(QDir::cleanPath(list.tracks.first().location + u"/.."_s)));
        addList(list, list.tracks.first().location);
    }
}

void Gathering::addPlaylist(const QString& path) {
    QByteArray bytes;
    try {
        bytes = readWholeFile(files_, path, MostPlaylistBytes);
    } catch (const TessalyError& error) {
        return summary.leaveOut(LeftOut::Unreadable, path, error.description);
    }
    FoundList list{.name = nameOfPlaylist(path), .tracks = {}, .isPlaylist = true};
    const auto entries = parseStandardPlaylist(bytes, path, MostImportedTracks + 1);
    if (entries.size() > MostImportedTracks)
        throw tooManyAtOnce(path);
    for (const StandardEntry& entry : entries) {
        if (entry.isStream)
            summary.leaveOut(LeftOut::Stream, entry.location);
        else if (!isMp3Name(lastNameOf(entry.location)))
            summary.leaveOut(LeftOut::NoMp3, entry.location);
        else if (entry.location.contains(QChar(u'\0')) || entry.location.size() > limits::TextBytes)
            summary.leaveOut(LeftOut::Unreadable, entry.location);
        else
            list.tracks.append(entry);
    }
    if (list.tracks.isEmpty())
        return summary.note(wholePath(path) + u" names no MP3 file."_s);
    addList(list, path);
}

void Gathering::addList(FoundList list, const QString& origin) {
    count_ += list.tracks.size();
    if (count_ > MostImportedTracks)
        throw tooManyAtOnce(origin);
    lists.append(std::move(list));
}

// A file of a playlist need not be there. Some players write escapes without file:// before them.
void Gathering::findFile(StandardEntry& entry) {
    if (files_.fileSize(entry.location))
        return;
    const QString other = withoutEscapes(entry.location);
    if (other != entry.location && files_.fileSize(other)) {
        entry.location = other;
        return;
    }
    ++summary.missing;
    summary.note(wholePath(entry.location) + u" is not there and was added all the same."_s);
}

QString Gathering::nameOf(const StandardEntry& entry) const {
    if (!entry.title.isEmpty())
        return entry.title;
    const QString title = tags_.read(entry.location).merged().title;
    return title.isEmpty() ? nameOfMp3(lastNameOf(entry.location)) : title;
}

void Gathering::nameTracks() {
    int done = 0;
    for (FoundList& list : lists)
        for (StandardEntry& entry : list.tracks) {
            if (keepGoing_ && !keepGoing_(done++, int(2 * count_))) {  // half of the work
                summary.isCancelled = true;
                return;
            }
            if (list.isPlaylist)
                findFile(entry);
            entry.title = nameOf(entry);
        }
}

// Names that the tracks of a list must not have: those of its lines, and of records whose line is
// gone, for the line would play their file.
UniqueNames namesTakenIn(const Project& project, const QString& list) {
    QStringList taken = project.lstMuTrack[project.currentMusicList];
    for (const TrackRecord& record : project.TrackTable)
        if (isMusic(record) && record.groupName.is(list))
            taken.append(record.itemName.text());
    return UniqueNames(taken);
}

constexpr qsizetype AppendedAtOnce = 500;

// Appends what was found to the current list.
void append(Project& project, const QString& list, const FoundList& found, UniqueNames& names,
            qsizetype& characters, AddSummary& summary, const std::function<bool()>& keepGoing) {
    for (qsizetype first = 0; first < found.tracks.size(); first += AppendedAtOnce) {
        const QList<StandardEntry> entries = found.tracks.mid(first, AppendedAtOnce);
        QList<ImportedTrack> tracks;
        for (const StandardEntry& entry : entries)
            tracks.append({firstCharacters(entry.title, limits::DisplayText), entry.location});
        const QStringList lines =
            appendTracks(project, list, tracks, RecordNames::AsListed, names, characters);
        for (qsizetype i = 0; i < lines.size(); ++i)
            summary.noteName(wholePath(entries[i].location) + u':', entries[i].title, lines[i],
                             limits::DisplayText);
        summary.added += int(lines.size());
        if (!keepGoing()) {
            summary.isCancelled = true;
            return;
        }
    }
}

}  // namespace

AddSummary addMusicFiles(Project& project, FileSystem& files, const Mp3Tags& tags,
                         const QStringList& paths, const MusicTarget& target,
                         const KeepGoing& keepGoing) {
    Gathering found(files, tags, keepGoing);
    found.gather(paths);
    if (!found.summary.isCancelled)
        found.nameTracks();
    AddSummary summary = found.summary;
    if (summary.isCancelled)
        return {.isCancelled = true};
    if (found.lists.isEmpty())
        return summary;
    // On a copy, so that a failure on the way leaves the project whole.
    Project grown = project;
    qsizetype characters = 0;
    const auto goOn = [&] {
        return !keepGoing || keepGoing(found.count() + summary.added, 2 * found.count());
    };
    if (const auto list = lineAt(grown.lstMuList, target.listRow)) {
        selectMusicList(grown, *list);
        UniqueNames names = namesTakenIn(grown, *list);
        for (const FoundList& each : found.lists)
            append(grown, *list, each, names, characters, summary, goOn);
        summary.listRow = target.listRow;
    } else {
        UniqueNames lists(grown.lstMuList);
        for (const FoundList& each : found.lists) {
            const QString cut = firstCharacters(each.name, limits::DisplayText);
            const QString name = addMusicList(grown, cut.isEmpty() ? u"Music"_s : cut, lists);
            if (!cut.isEmpty())
                summary.noteName(u"The music list"_s, each.name, name, limits::DisplayText);
            UniqueNames names(grown.lstMuTrack[grown.currentMusicList]);
            append(grown, name, each, names, characters, summary, goOn);
        }
        summary.lists = int(found.lists.size());
        summary.listRow = int(grown.lstMuList.size()) - 1;
    }
    if (summary.isCancelled)
        return {.isCancelled = true};
    summary.trackRow = int(grown.lstMuTrack[grown.currentMusicList].size()) - 1;
    grown.unsavedChanges = true;
    project = std::move(grown);
    return summary;
}

}  // namespace tessaly
