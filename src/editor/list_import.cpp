// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/list_import.h"

#include <QDir>
#include <algorithm>
#include <optional>
#include <utility>

#include "editor/playlist_parser.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Two lines a track in the longest format, and the first line.
constexpr qsizetype MostLines = 2 * qsizetype(MostImportedTracks) + 1;

ImportResult invalidPlaylist() {
    return {.outcome = ImportResult::Outcome::Invalid,
            .messages = {{.text = u"Invalid playlist format, cannot open"_s,
                          .more = u"Add Files... takes standard playlists (.m3u, .m3u8, .pls), "_s
                                  u"as media players write them for each other."_s}}};
}

// A plain list has paths only: the name is the title tag, else the file's own.
QString plainName(const QString& location, const Mp3Tags& tags) {
    const QString title = tags.read(location).merged().title;
    if (!title.isEmpty())
        return firstCharacters(title, limits::DisplayText);
    const QString file = lastNameOf(location);
    const qsizetype point = file.lastIndexOf(u'.');
    return firstCharacters(point < 0 ? file : file.left(point), limits::DisplayText);
}

// Why an entry cannot be taken; nothing when it can.
std::optional<ImportMessage> rejection(const PlaylistEntry& entry) {
    const auto& [name, location] = entry;
    if (location.isEmpty() && name.isEmpty())
        return ImportMessage{u"Track Name and File location missing"_s,
                             u"Both Track Name and File Location missing, track not added."_s};
    if (location.isEmpty())
        return ImportMessage{u"File location missing"_s,
                             u"File location missing, track not added.\r\nTrack name: "_s + name};
    if (name.isEmpty())
        return ImportMessage{
            u"Track name missing"_s,
            u"Track name missing, track not added.\r\nFile name: "_s + elided(location)};
    if (!location.endsWith(u"mp3", Qt::CaseInsensitive))
        return ImportMessage{u"File type not MP3"_s,
                             u"File type is not .MP3 or .mp3.\r\nTrack not added: "_s + name};
    return std::nullopt;
}

TessalyError tooLong(const QString& path) {
    return {error_number::BadImport,
            u"%1: the playlist is longer than %2 tracks or %3 bytes."_s.arg(
                elided(path), grouped(MostImportedTracks), grouped(MostPlaylistBytes))};
}

constexpr QStringView Mp3Ending = u".mp3";

// In upper case, in which file systems that ignore case compare names: "_" sorts behind letters.
QString sortingKey(QString name) {
    for (QChar& c : name)
        c = c.toUpper();
    return name;
}

QString trackName(const QString& path, const QString& file, const Mp3Tags& tags) {
    QString name = tags.read(path).first.title;
    if (name.isEmpty())
        name = file.left(file.indexOf(Mp3Ending, 0, Qt::CaseInsensitive));
    return firstCharacters(name, limits::DisplayText);
}

}  // namespace

QString playlistListName(const QString& path) {
    const QString file = lastNameOf(path);
    for (const QStringView ending : {u".txt", u".m3u"})
        if (const qsizetype end = file.indexOf(ending, 0, Qt::CaseInsensitive); end >= 0)
            return file.left(end);
    return {};
}

ImportResult importPlaylist(Project& project, FileSystem& files, const Mp3Tags& tags,
                            const QString& path, const KeepGoing& keepGoing) {
    project.unsavedChanges = true;
    if (path.isEmpty())
        return {};
    return importPlaylist(project, readWholeFile(files, path, MostPlaylistBytes), tags, path,
                          keepGoing);
}

ImportResult importPlaylist(Project& project, QByteArrayView bytes, const Mp3Tags& tags,
                            const QString& path, const KeepGoing& keepGoing) {
    project.unsavedChanges = true;
    const QString native = QDir::toNativeSeparators(path);
    const QString folder = native.chopped(lastNameOf(native).size());
    if (bytes.size() > MostPlaylistBytes)
        throw tooLong(native);
    const QString text = decodePlaylist(bytes);
    const QList<QStringView> lines = linesOf(text, MostLines + 1);
    const PlaylistHeader header = parsePlaylistHeader(lines.value(0));
    if (header.playlistFormat == PlaylistFormat::invalid)
        return invalidPlaylist();
    const qsizetype entries = playlistEntries(header.playlistFormat, lines.size());
    if (entries > MostImportedTracks)
        throw tooLong(native);

    QList<ImportedTrack> tracks;
    QList<ImportMessage> leftOut;
    for (qsizetype i = 0; i < entries; ++i) {
        if (keepGoing && !keepGoing(int(i), int(entries)))
            return {};
        PlaylistEntry entry = parsePlaylistEntry(header, lines, i, folder);
        if (header.playlistFormat == PlaylistFormat::m3u)
            entry.name = plainName(entry.location, tags);
        if (auto message = rejection(entry))
            leftOut.append(*message);
        else
            tracks.append({entry.name, entry.location});
    }
    ImportResult result =
        addImportedList(project, playlistListName(native), tracks, RecordNames::AsListed);
    result.leftOut = leftOut;
    return result;
}

QStringList mp3FilesIn(const FileSystem& files, const QString& folder) {
    QList<std::pair<QString, QString>> keyed;
    for (const FolderEntry& entry : files.entries(folder)) {
        if (entry.isFolder || !entry.name.endsWith(Mp3Ending, Qt::CaseInsensitive))
            continue;
        if (!entry.isLink || files.fileSize(pathIn(folder, entry.name)))
            keyed.append({sortingKey(entry.name), entry.name});
    }
    std::sort(keyed.begin(), keyed.end());
    QStringList names;
    for (const auto& [key, name] : keyed)
        names.append(name);
    return names;
}

ImportResult importMusicFolder(Project& project, const FileSystem& files, const Mp3Tags& tags,
                               const QString& folder, const KeepGoing& keepGoing) {
    project.unsavedChanges = true;
    if (folder.isEmpty())
        return {};
    const QString root = QDir::toNativeSeparators(QDir::cleanPath(folder));
    const QStringList names = mp3FilesIn(files, root);
    if (names.isEmpty()) {
        ImportResult result{.outcome = ImportResult::Outcome::NoFiles,
                            .messages = {{.text = u"Folder contains no MP3 files"_s}}};
        selectLastRows(project, result);
        return result;
    }
    QList<ImportedTrack> tracks;
    tracks.reserve(names.size());
    for (const QString& name : names) {
        if (keepGoing && !keepGoing(int(tracks.size()), int(names.size())))
            return {};
        const QString path = pathIn(root, name);
        tracks.append({trackName(path, name, tags), path});
    }
    return addImportedList(project, lastNameOf(root), tracks, RecordNames::AsFound);
}

}  // namespace tessaly
