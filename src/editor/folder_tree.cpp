// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/folder_tree.h"

#include <QDir>
#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView Mp3Ending = u".mp3";
constexpr int MostDeep = 64;

// The end of a run of digits, from its first digit on.
qsizetype digitsEnd(const QString& text, qsizetype from) {
    while (from < text.size() && text[from].isDigit())
        ++from;
    return from;
}

class Walker {
 public:
    Walker(const FileSystem& files, const FolderWalk& walk) : files_(files), walk_(walk) {}

    void enter(const QString& folder, int depth);

 private:
    const FileSystem& files_;
    const FolderWalk& walk_;
    std::set<std::array<quint64, 3>> seen_;  // identities of folders: links make circles
    bool isOver_ = false;
};

void Walker::enter(const QString& folder, int depth) {
    isOver_ = isOver_ || !walk_.goesOn();
    if (isOver_)
        return;
    if (const auto identity = files_.identity(folder);
        identity && !seen_.insert({identity->volume, identity->high, identity->low}).second)
        return walk_.leaveOut(LeftOut::Already, folder, {});
    if (depth > MostDeep)
        return walk_.leaveOut(LeftOut::Unreadable, folder, {});
    QList<FolderEntry> entries;
    try {
        entries = orderedEntries(files_, folder);
    } catch (const TessalyError& error) {
        return walk_.leaveOut(LeftOut::Unreadable, folder, error.description);
    }
    walk_.visit(folder, entries);
    for (const FolderEntry& entry : entries)
        if (entry.isFolder)
            enter(pathIn(folder, entry.name), depth + 1);
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

void sortByName(QStringList& paths) {
    QList<std::pair<QString, QString>> named;
    for (const QString& path : std::as_const(paths))
        named.append({lastNameOf(path), path});
    std::sort(named.begin(), named.end(), [](const auto& a, const auto& b) {
        return a.first == b.first ? a.second < b.second : comesBefore(a.first, b.first);
    });
    for (qsizetype i = 0; i < paths.size(); ++i)
        paths[i] = named[i].second;
}

bool isMp3Name(const QString& name) {
    return name.endsWith(Mp3Ending, Qt::CaseInsensitive) && name.size() > Mp3Ending.size();
}

QString nameOfMp3(const QString& file) {
    return file.chopped(Mp3Ending.size()).normalized(QString::NormalizationForm_C);
}

QList<FolderEntry> orderedEntries(const FileSystem& files, const QString& folder) {
    QList<FolderEntry> entries = files.entries(folder);
    for (FolderEntry& entry : entries)
        if (entry.isLink)
            entry.isFolder = files.isFolder(pathIn(folder, entry.name));
    std::sort(entries.begin(), entries.end(), [](const FolderEntry& a, const FolderEntry& b) {
        return comesBefore(a.name, b.name);
    });
    return entries;
}

void walkFolders(const FileSystem& files, const QString& path, const FolderWalk& walk) {
    Walker(files, walk).enter(QDir::toNativeSeparators(path), 0);
}

QList<Mp3Folder> mp3FoldersIn(const FileSystem& files, const QString& path, AddSummary& summary,
                              const KeepGoing& keepGoing) {
    QList<Mp3Folder> found;
    qsizetype count = 0;
    const auto goesOn = [&] {
        if (keepGoing && !keepGoing(int(count), 0))
            summary.isCancelled = true;
        return !summary.isCancelled;
    };
    const auto visit = [&](const QString& folder, const QList<FolderEntry>& entries) {
        Mp3Folder here{.path = folder, .files = {}};
        for (const FolderEntry& entry : entries) {
            const QString file = pathIn(folder, entry.name);
            if (entry.isFolder)
                continue;
            if (!isMp3Name(entry.name))
                summary.leaveOut(LeftOut::NoMp3, file);
            else if (entry.isLink && !files.fileSize(file))
                summary.leaveOut(LeftOut::NotFound, file);
            else
                here.files.append(file);
        }
        count += here.files.size();
        if (count > MostImportedTracks)
            throw tooManyAtOnce(folder);
        if (!here.files.isEmpty())
            found.append(here);
    };
    const auto leaveOut = [&](LeftOut why, const QString& folder, const QString& detail) {
        summary.leaveOut(why, folder, detail);
    };
    walkFolders(files, path, {.goesOn = goesOn, .visit = visit, .leaveOut = leaveOut});
    return found;
}

}  // namespace tessaly
