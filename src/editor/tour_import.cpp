// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/tour_import.h"

#include <QDir>
#include <QSet>
#include <algorithm>

#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Mp3Ending = u".mp3"_s;

bool isMp3(const FolderEntry& entry) {
    return !entry.isFolder && entry.name.endsWith(Mp3Ending, Qt::CaseInsensitive) &&
           entry.name.size() > Mp3Ending.size();
}

// As other systems write the same name: e and accent are one.
QString composed(const QString& name) {
    return name.normalized(QString::NormalizationForm_C);
}

QString withoutEnding(const QString& name) {
    return composed(name.chopped(Mp3Ending.size()));
}

// The two folders of a tour; empty where there is none.
struct TourFolders {
    QString speech, music;
    QStringList others;  // what stands beside them

    bool isTour() const { return !speech.isEmpty() || !music.isEmpty(); }
};

// The end of a run of digits, from its first digit on.
qsizetype digitsEnd(const QString& text, qsizetype from) {
    while (from < text.size() && text[from].isDigit())
        ++from;
    return from;
}

QList<FolderEntry> sortedEntries(const FileSystem& files, const QString& folder) {
    QList<FolderEntry> entries = files.entries(folder);
    for (FolderEntry& entry : entries)
        if (entry.isLink)
            entry.isFolder = files.isFolder(pathIn(folder, entry.name));
    std::sort(entries.begin(), entries.end(), [](const FolderEntry& a, const FolderEntry& b) {
        return comesBefore(a.name, b.name);
    });
    return entries;
}

TourFolders tourFoldersIn(const FileSystem& files, const QString& root) {
    TourFolders found;
    const auto take = [](QString& folder, const QString& path) {
        if (!folder.isEmpty())
            throw TessalyError(error_number::BadImport,
                               u"%1 and %2 are two folders for one thing: make one of them."_s.arg(
                                   shownPath(folder), shownPath(path)));
        folder = path;
    };
    for (const FolderEntry& entry : sortedEntries(files, root)) {
        const QString path = pathIn(root, entry.name);
        if (entry.isFolder && entry.name.compare(u"Speech", Qt::CaseInsensitive) == 0)
            take(found.speech, path);
        else if (entry.isFolder && entry.name.compare(u"Music", Qt::CaseInsensitive) == 0)
            take(found.music, path);
        else
            found.others.append(path);
    }
    return found;
}

class FolderImport {
 public:
    FolderImport(const FileSystem& files, const Mp3Tags& tags, bool titlesFromTags,
                 Project& project)
        : files_(files), tags_(tags), titlesFromTags_(titlesFromTags), project_(project) {}

    void importSpeech(const QString& folder);
    void importMusic(const QString& folder);
    void leaveOut(const QString& path, const QString& why);
    ImportReport report;

 private:
    QStringList mp3sOf(const QString& folder);
    QStringList foldersOf(const QString& folder, const QString& what);
    QString trackName(const QString& path, const QString& file) const;
    void noteChange(const QString& what, const QString& whole, const QString& name);
    void addRecord(QStringView kind, const QString& item, const QString& group,
                   const QString& path);

    const FileSystem& files_;
    const Mp3Tags& tags_;
    const bool titlesFromTags_;
    Project& project_;
};

QStringList FolderImport::mp3sOf(const QString& folder) {
    QStringList names;
    for (const FolderEntry& entry : sortedEntries(files_, folder)) {
        if (isMp3(entry))
            names.append(entry.name);
        else
            leaveOut(pathIn(folder, entry.name), u"is no MP3 file"_s);
    }
    return names;
}

QStringList FolderImport::foldersOf(const QString& folder, const QString& what) {
    QStringList names;
    for (const FolderEntry& entry : sortedEntries(files_, folder)) {
        if (entry.isFolder)
            names.append(entry.name);
        else
            leaveOut(pathIn(folder, entry.name), u"stands in no folder of a "_s + what);
    }
    return names;
}

void FolderImport::leaveOut(const QString& path, const QString& why) {
    report.notes.append(u"%1 %2 and was left out."_s.arg(shownPath(path), why));
}

void FolderImport::noteChange(const QString& what, const QString& whole, const QString& name) {
    if (name != whole)
        report.notes.append(u"The %1 \"%2\" became \"%3\"."_s.arg(what, elided(whole), name));
}

void FolderImport::addRecord(QStringView kind, const QString& item, const QString& group,
                             const QString& path) {
    TrackRecord record;
    record.kind = kind;
    record.itemName = item;
    record.groupName = group;
    record.sourcePath = QDir::toNativeSeparators(path);
    project_.TrackTable.append(record);
}

void FolderImport::importSpeech(const QString& folder) {
    struct SpeechFile {
        QString title;  // whole file name
        QString language;
        QString path;
    };
    QList<SpeechFile> found;
    UniqueNames languages;
    for (const QString& name : foldersOf(folder, u"language"_s)) {
        const QString language = languages.add(firstCharacters(name, limits::LanguageName));
        project_.lstLangs.append(language);
        noteChange(u"language"_s, composed(name), language);
        const QString languageFolder = pathIn(folder, name);
        QSet<QString> taken;
        for (const QString& file : mp3sOf(languageFolder)) {
            const QString title = withoutEnding(file), path = pathIn(languageFolder, file);
            if (taken.contains(title)) {
                leaveOut(path, u"is a second file for one title and language"_s);
                continue;
            }
            taken.insert(title);
            found.append({title, language, path});
        }
    }
    QStringList titles;
    for (const SpeechFile& file : found)
        titles.append(file.title);
    titles.removeDuplicates();
    std::sort(titles.begin(), titles.end(), comesBefore);
    UniqueNames unique;
    QHash<QString, QString> names;
    for (const QString& title : titles) {
        const QString name = unique.add(firstCharacters(title, limits::DisplayText));
        names.insert(title, name);
        project_.lstSpTitles.append(name);
        noteChange(u"title"_s, title, name);
    }
    for (const SpeechFile& file : found)
        addRecord(kind::Speech, names.value(file.title), file.language, file.path);
    report.speechFiles = int(found.size());
}

QString FolderImport::trackName(const QString& path, const QString& file) const {
    QString name;
    if (titlesFromTags_) {
        const TagBlocks blocks = tags_.read(path);
        name = blocks.first.title.isEmpty() ? blocks.second.title : blocks.first.title;
    }
    return name.isEmpty() ? withoutEnding(file) : name;
}

void FolderImport::importMusic(const QString& folder) {
    for (const QString& name : foldersOf(folder, u"music list"_s)) {
        const QString listFolder = pathIn(folder, name);
        const QStringList found = mp3sOf(listFolder);
        if (found.isEmpty()) {
            report.notes.append(
                u"%1 holds no MP3 file and makes no list."_s.arg(shownPath(listFolder)));
            continue;
        }
        const QString list = addMusicList(project_, firstCharacters(name, limits::DisplayText));
        noteChange(u"music list"_s, composed(name), list);
        UniqueNames tracks;
        for (const QString& file : found) {
            const QString path = pathIn(listFolder, file);
            const QString whole = trackName(path, file);
            const QString track =
                addMusicTrack(project_, firstCharacters(whole, limits::DisplayText), tracks);
            noteChange(u"track"_s, whole, track);
            addRecord(kind::Music, track, list, path);
            ++report.tracks;
        }
    }
}

}  // namespace

bool comesBefore(const QString& a, const QString& b) {
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            const qsizetype iEnd = digitsEnd(a, i), jEnd = digitsEnd(b, j);
            while (i + 1 < iEnd && a[i] == u'0')
                ++i;
            while (j + 1 < jEnd && b[j] == u'0')
                ++j;
            if (iEnd - i != jEnd - j)
                return iEnd - i < jEnd - j;
            const int order =
                QStringView(a).sliced(i, iEnd - i).compare(QStringView(b).sliced(j, jEnd - j));
            if (order != 0)
                return order < 0;
            i = iEnd;
            j = jEnd;
            continue;
        }
        const QChar x = a[i++].toCaseFolded(), y = b[j++].toCaseFolded();
        if (x != y)
            return x < y;
    }
    if (a.size() - i != b.size() - j)
        return a.size() - i < b.size() - j;
    return a < b;
}

bool isTourFolder(const FileSystem& files, const QString& folder) {
    return tourFoldersIn(files, folder).isTour();
}

ImportReport importFolder(const FileSystem& files, const Mp3Tags& tags, const QString& folder,
                          bool titlesFromTags, Project& project) {
    const QString root = QDir(folder).absolutePath();
    FolderImport run(files, tags, titlesFromTags, project);
    const TourFolders tour = tourFoldersIn(files, root);
    if (!tour.isTour())
        throw TessalyError(
            error_number::BadImport,
            shownPath(root) + u": the folder holds neither a Music nor a Speech folder."_s);
    for (const QString& other : tour.others)
        run.leaveOut(other, u"stands in neither the Music nor the Speech folder"_s);
    // Speech first, as a project file has it: so the MP3 files on the card have the same numbers
    // before the project is saved and after it is opened.
    if (!tour.speech.isEmpty())
        run.importSpeech(tour.speech);
    if (!tour.music.isEmpty())
        run.importMusic(tour.music);
    if (run.report.tracks + run.report.speechFiles == 0)
        throw TessalyError(error_number::BadImport,
                           shownPath(root) + u": there is no MP3 file to import."_s);
    return run.report;
}

}  // namespace tessaly
