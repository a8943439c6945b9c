#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// A copy that was kept of a project nobody saved.
struct RecoveryCopy {
    QString path;
    QDateTime time;  ///< local time
    int lists = 0;
    int tracks = 0;
    int titles = 0;

    /// "2026-03-01 14:05:09   2 lists, 9 tracks, 8 titles"
    QString description() const;
};

/// The user's recovery folder. It keeps the last ten copies, and knows from a mark in it whether
/// the run before this one ended properly.
class RecoveryFolder {
 public:
    static constexpr int CopiesKept = 10;

    /// Leaves the mark of a running program. Never throws: without a folder nothing is kept.
    RecoveryFolder(FileSystem& files, const QString& folder);

    /// Takes the mark away, unless forgetMark() was called.
    ~RecoveryFolder();

    /// Writes a copy of `project`, over the last one until startNewCopy() is called. Throws when
    /// that fails; the copy before it is then still whole.
    void keep(const Project& project);

    /// The next keep() makes a new copy: the project before it was let go for good.
    void startNewCopy() { current_.clear(); }

    /// Removes the copy that keep() wrote last: what it holds was saved.
    void dropCurrentCopy();

    /// The copies, newest first; files that are no whole copy are left out.
    QList<RecoveryCopy> copies() const;

    /// The project of a copy. Throws when it cannot be read or is damaged.
    Project read(const RecoveryCopy& copy) const;

    /// The newest copy that the run before this one made, if that did not end properly. It is
    /// offered once.
    std::optional<RecoveryCopy> takeCrashedCopy();

    /// As if this run had crashed.
    void forgetMark() { hasMark_ = false; }

 private:
    QStringList namesNewestFirst() const;
    QString nextName() const;

    FileSystem& files_;
    const QString folder_;
    QString current_;
    bool hasMark_ = false;
    std::optional<QDateTime> crashedSince_;  ///< when the run before this one began
};

}  // namespace tessaly
