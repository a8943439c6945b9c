#include "editor/folder_as_list.h"

#include <QDir>
#include <algorithm>
#include <utility>

#include "editor/entry_fields.h"
#include "model/format_limits.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

constexpr QStringView Mp3Ending = u".mp3";

// Upper case, as file systems without regard to case compare: "_" comes behind the letters.
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
                            .messages = {{.icon = ImportMessage::Icon::Exclamation,
                                          .title = {},
                                          .text = "Folder contains no MP3 files"}}};
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
