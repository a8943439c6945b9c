#include "model/recovery.h"

#include <QDir>
#include <QTimeZone>
#include <algorithm>

#include "model/format_limits.h"
#include "model/project_snapshot.h"
#include "platform/error.h"
#include "platform/error_numbers.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

const QString Ending = QStringLiteral(".recovery");
const QString MarkName = QStringLiteral("running");
const QString TimeFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");  // in UTC: no hour comes twice

// The time that the name of a copy tells.
QDateTime timeOf(const QString& name) {
    QDateTime time = QDateTime::fromString(name.chopped(Ending.size()), TimeFormat);
    time.setTimeZone(QTimeZone::utc());
    return time;
}

}  // namespace

QString RecoveryCopy::description() const {
    const auto counted = [](int count, const char* what) {
        return QString("%1 %2%3").arg(count).arg(what, count == 1 ? "" : "s");
    };
    return QString("%1   %2, %3, %4")
        .arg(time.toString("yyyy-MM-dd HH:mm:ss"), counted(lists, "list"), counted(tracks, "track"),
             counted(titles, "title"));
}

RecoveryFolder::RecoveryFolder(FileSystem& files, const QString& folder)
    : files_(files), folder_(folder) {
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
        // The next start offers the newest copy without need, which loses nothing.
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
    if (current_.isEmpty())
        current_ = pathIn(folder_, nextName());
    files_.replaceFile(current_, encodeSnapshot(project));
    for (const QString& name : namesNewestFirst().mid(CopiesKept)) {
        try {
            files_.removeFile(pathIn(folder_, name));
        } catch (const TessalyError&) {
            // One copy too many does no harm.
        }
    }
}

// The time now, but later than every copy there is: a clock that went back must not make the newest
// copy the oldest.
QString RecoveryFolder::nextName() const {
    QDateTime time = QDateTime::currentDateTimeUtc();
    const QStringList names = namesNewestFirst();
    if (!names.isEmpty()) {
        const QDateTime newest = timeOf(names.first());
        if (newest.isValid() && newest >= time)
            time = newest.addMSecs(1);
    }
    return time.toString(TimeFormat) + Ending;
}

void RecoveryFolder::dropCurrentCopy() {
    if (current_.isEmpty())
        return;
    try {
        files_.removeFile(current_);
    } catch (const TessalyError&) {
        // One copy too many does no harm.
    }
    current_.clear();
}

QList<RecoveryCopy> RecoveryFolder::copies() const {
    QList<RecoveryCopy> found;
    for (const QString& name : namesNewestFirst()) {
        RecoveryCopy copy{.path = pathIn(folder_, name), .time = timeOf(name).toLocalTime()};
        try {
            const auto counts =
                countSnapshot(readWholeFile(files_, copy.path, limits::ProjectFileBytes));
            if (!counts)
                continue;
            copy.lists = counts->lists;
            copy.tracks = counts->tracks;
            copy.titles = counts->titles;
            found.append(copy);
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
                           QDir::toNativeSeparators(copy.path) + ": the copy is damaged");
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
