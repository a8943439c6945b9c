// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/recovery.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTimeZone>
#include <algorithm>

#include "model/format_limits.h"
#include "model/numbers.h"
#include "model/project_snapshot.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Ending = u".recovery"_s;
const QString MarkName = u"running"_s;
const QString TimeFormat = u"yyyyMMdd-HHmmss-zzz"_s;  // in UTC: no hour comes twice

// The time that the name of a copy tells.
QDateTime timeOf(const QString& name) {
    QDateTime time = QDateTime::fromString(name.section(u'.', 0, 0), TimeFormat);
    time.setTimeZone(QTimeZone::utc());
    return time;
}

// The stretch of work that the name of a copy tells.
QString stretchOf(const QString& name) {
    return name.chopped(Ending.size()).section(u'.', -1);
}

// Which of the copies of one stretch, newest first, may go. A copy may go when its two neighbours
// lie close enough together for their age. How far apart they may lie grows with their age, so this
// stays true later.
QStringList superfluousEarlier(const QStringList& copies) {
    const auto age = [&](qsizetype i) { return timeOf(copies[i]).secsTo(timeOf(copies.first())); };
    QStringList found;
    qint64 newer = 0;
    for (qsizetype i = 1; i + 1 < copies.size(); ++i) {
        if (age(i + 1) <= RecoveryFolder::AgeFactor * newer + RecoveryFolder::AgeSeconds)
            found.append(copies[i]);
        else
            newer = age(i);
    }
    return found;
}

// The copies that need not be kept.
QStringList superfluous(const QStringList& namesNewestFirst) {
    QHash<QString, QStringList> copies;  // by stretch, newest first
    QStringList stretches;               // likewise
    for (const QString& name : namesNewestFirst) {
        QStringList& ofStretch = copies[stretchOf(name)];
        if (ofStretch.isEmpty())
            stretches.append(stretchOf(name));
        ofStretch.append(name);
    }
    QStringList found;
    for (qsizetype i = 0; i < stretches.size(); ++i) {
        const QStringList& all = copies[stretches[i]];
        if (i < RecoveryFolder::StretchesWithEarlier)
            found += superfluousEarlier(all);
        else
            found += all.mid(i < RecoveryFolder::StretchesKept ? 1 : 0);
    }
    return found;
}

}  // namespace

QString RecoveryCopy::description() const {
    return u"%1   %2, %3, %4%5"_s.arg(time.toString(u"yyyy-MM-dd HH:mm:ss"_s),
                                      counted(lists, u"list"_s), counted(tracks, u"track"_s),
                                      counted(titles, u"title"_s),
                                      isEarlier ? u"   (earlier)"_s : u""_s);
}

RecoveryFolder::RecoveryFolder(FileSystem& files, const QString& folder, Clock clock)
    : files_(files), folder_(folder), clock_(std::move(clock)) {
    QDir().mkpath(folder);
    const QString mark = pathIn(folder_, MarkName);
    try {
        if (files_.fileSize(mark))
            crashedSince_ = files_.openForReading(mark)->modificationTime();
        files_.replaceFile(mark, {});
        hasMark_ = true;
    } catch (const TessalyError&) {
        // A folder that cannot be written keeps nothing; the program runs all the same.
    }
}

RecoveryFolder::~RecoveryFolder() {
    if (!hasMark_)
        return;
    try {
        files_.removeFile(pathIn(folder_, MarkName));
    } catch (const TessalyError&) {
        // The next start takes this one for a crash and offers the newest copy: no harm.
    }
}

QStringList RecoveryFolder::namesNewestFirst() const {
    QStringList names;
    try {
        for (const FolderEntry& entry : files_.entries(folder_))
            if (entry.name.endsWith(Ending))
                names.append(entry.name);
    } catch (const TessalyError&) {
        return {};
    }
    std::sort(names.begin(), names.end(), std::greater<>());  // names are times
    return names;
}

void RecoveryFolder::keep(const Project& project) {
    const QString time = nextTime().toString(TimeFormat);
    const QString stretch = work_.name.isEmpty() ? time : work_.name;
    const QString name = time + u'.' + stretch + Ending;
    files_.replaceFile(pathIn(folder_, name), encodeSnapshot(project));
    work_.name = stretch;
    work_.leadingUp.append(name);
    remove(superfluous(namesNewestFirst()));
}

// The time now, but later than every copy there is: a clock that went back must not make the newest
// copy the oldest.
QDateTime RecoveryFolder::nextTime() const {
    const QDateTime time = clock_();
    const QStringList names = namesNewestFirst();
    const QDateTime newest = names.isEmpty() ? QDateTime() : timeOf(names.first());
    return newest.isValid() && newest >= time ? newest.addMSecs(1) : time;
}

void RecoveryFolder::remove(const QStringList& names) {
    for (const QString& name : names) {
        try {
            files_.removeFile(pathIn(folder_, name));
        } catch (const TessalyError&) {
            // One copy too many does no harm.
        }
    }
}

void RecoveryFolder::continueFrom(const RecoveryCopy& copy) {
    const QString from = QFileInfo(copy.path).fileName();
    work_ = {};
    for (const QString& name : namesNewestFirst())
        if (stretchOf(name) == stretchOf(from) && name <= from)
            work_.leadingUp.append(name);
}

void RecoveryFolder::dropSaved() {
    QStringList saved = namesNewestFirst();
    saved.removeIf([&](const QString& name) { return !work_.leadingUp.contains(name); });
    remove(saved);
    work_ = {};
}

QList<RecoveryCopy> RecoveryFolder::copies() const {
    QList<RecoveryCopy> found;
    QSet<QString> stretches;
    for (const QString& name : namesNewestFirst()) {
        RecoveryCopy copy{.path = pathIn(folder_, name),
                          .time = timeOf(name).toLocalTime(),
                          .isEarlier = stretches.contains(stretchOf(name))};
        try {
            const auto counts =
                countSnapshot(readWholeFile(files_, copy.path, limits::ProjectFileBytes));
            if (!counts)
                continue;
            copy.lists = counts->lists;
            copy.tracks = counts->tracks;
            copy.titles = counts->titles;
            found.append(copy);
            stretches.insert(stretchOf(name));
        } catch (const TessalyError&) {
            continue;
        }
    }
    return found;
}

Project RecoveryFolder::read(const RecoveryCopy& copy) const {
    const auto project = decodeSnapshot(readWholeFile(files_, copy.path, limits::ProjectFileBytes));
    if (!project)
        throw TessalyError(error_number::BadProject,
                           QDir::toNativeSeparators(copy.path) + u": the copy is damaged"_s);
    return *project;
}

std::optional<RecoveryCopy> RecoveryFolder::takeCrashedCopy() {
    const auto since = std::exchange(crashedSince_, std::nullopt);
    const QList<RecoveryCopy> all = since ? copies() : QList<RecoveryCopy>();
    if (all.isEmpty() || all.first().time < *since)
        return std::nullopt;
    return all.first();
}

}  // namespace tessaly
