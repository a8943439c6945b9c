// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <utility>

#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// A copy that was kept of a project nobody saved.
struct RecoveryCopy {
    QString path;
    QDateTime time;          ///< local time
    bool isEarlier = false;  ///< a later copy of the same stretch of work was kept, too
    int lists = 0;
    int tracks = 0;
    int titles = 0;

    /// "2026-03-01 14:05:09   2 lists, 9 tracks, 8 titles", and "   (earlier)" for one that is.
    QString description() const;
};

/// The copies that belong to the project being worked on.
struct WorkStretch {
    QString name;           ///< of the stretch that its next copy goes to; empty: to a new one
    QStringList leadingUp;  ///< files whose content led to what the project holds now
};

/// The user's recovery folder. The copies of one stretch of work, from one New, Open, Save or
/// Recover to the next, are kept apart, fewer the older they are. A mark in the folder tells
/// whether the run before this one ended properly.
///
/// Copies are named "TIME.STRETCH.recovery": both are times in UTC, the second is that of the
/// stretch's first copy. Without it a copy is a stretch of its own.
class RecoveryFolder {
 public:
    using Clock = std::function<QDateTime()>;

    /// Of so many stretches the newest copy is kept,
    static constexpr int StretchesKept = 10;
    /// and of so many the first and some between, too: as many as it takes for each to be at most
    /// so many times and seconds older than the next, counted from the newest.
    static constexpr int StretchesWithEarlier = 2;
    static constexpr int AgeFactor = 4;
    static constexpr int AgeSeconds = 120;

    /// Leaves the mark of a running program. Never throws: without a folder nothing is kept.
    RecoveryFolder(FileSystem& files, const QString& folder,
                   Clock clock = &QDateTime::currentDateTimeUtc);

    /// Takes the mark away.
    ~RecoveryFolder();

    /// Writes one more copy of `project` and removes those that need not be kept any longer. Throws
    /// when the writing fails; the copies before it are then still there.
    void keep(const Project& project);

    /// The project is let go: what keep() writes next belongs to another one. Returns what
    /// comeBackTo() takes when this one comes back after all.
    WorkStretch leave() { return std::exchange(work_, {}); }
    void comeBackTo(const WorkStretch& work) { work_ = work; }

    /// The project was taken from `copy`: that copy, and the earlier ones of its stretch, led up to
    /// it.
    void continueFrom(const RecoveryCopy& copy);

    /// Removes all copies that led up to the project: what they hold was saved.
    void dropSaved();

    /// The copies, newest first; files that are no whole copy are left out.
    QList<RecoveryCopy> copies() const;

    /// The project of a copy. Throws when it cannot be read or is damaged.
    Project read(const RecoveryCopy& copy) const;

    /// The newest copy that the run before this one made, if that did not end properly. It is
    /// offered once.
    std::optional<RecoveryCopy> takeCrashedCopy();

 private:
    QStringList namesNewestFirst() const;
    QDateTime nextTime() const;
    void remove(const QStringList& names);

    FileSystem& files_;
    const QString folder_;
    const Clock clock_;
    WorkStretch work_;
    bool hasMark_ = false;
    std::optional<QDateTime> crashedSince_;  ///< when the run before this one began
};

}  // namespace tessaly
