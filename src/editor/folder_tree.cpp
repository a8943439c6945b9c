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

class Walk {
 public:
    Walk(const FileSystem& files, AddSummary& summary, const KeepGoing& keepGoing)
        : files_(files), summary_(summary), keepGoing_(keepGoing) {}

    void visit(const QString& folder, int depth);
    QList<Mp3Folder> found;

 private:
    const FileSystem& files_;
    AddSummary& summary_;
    const KeepGoing& keepGoing_;
    std::set<std::array<quint64, 3>> seen_;  // identities of folders: links make circles
    qsizetype count_ = 0;
};

void Walk::visit(const QString& folder, int depth) {
    if (keepGoing_ && !keepGoing_(int(count_), 0))
        summary_.isCancelled = true;
    if (summary_.isCancelled)
        return;
    if (const auto identity = files_.identity(folder);
        identity && !seen_.insert({identity->volume, identity->high, identity->low}).second)
        return summary_.leaveOut(LeftOut::Already, folder);
    if (depth > MostDeep)
        return summary_.leaveOut(LeftOut::Unreadable, folder);
    QList<FolderEntry> entries;
    try {
        entries = orderedEntries(files_, folder);
    } catch (const TessalyError& error) {
        return summary_.leaveOut(LeftOut::Unreadable, folder, error.description);
    }
    Mp3Folder here{.path = QDir::toNativeSeparators(folder), .files = {}};
    for (const FolderEntry& entry : entries) {
        const QString path = pathIn(here.path, entry.name);
        if (entry.isFolder)
            continue;
        if (!isMp3Name(entry.name))
            summary_.leaveOut(LeftOut::NoMp3, path);
        else if (entry.isLink && !files_.fileSize(path))
            summary_.leaveOut(LeftOut::NotFound, path);
        else
            here.files.append(path);
    }
    count_ += here.files.size();
    if (count_ > MostImportedTracks)
        throw tooManyAtOnce(folder);
    if (!here.files.isEmpty())
        found.append(here);
    for (const FolderEntry& entry : entries)
        if (entry.isFolder)
            visit(pathIn(here.path, entry.name), depth + 1);
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

QList<Mp3Folder> mp3FoldersIn(const FileSystem& files, const QString& path, AddSummary& summary,
                              const KeepGoing& keepGoing) {
    Walk walk(files, summary, keepGoing);
    walk.visit(path, 0);
    return walk.found;
}

}  // namespace tessaly
