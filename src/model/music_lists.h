// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

#include "model/project.h"

namespace tessaly {

/// The text of a row of a list box, counted from 0; nothing where there is no such row.
inline std::optional<QString> lineAt(const QStringList& lines, int row) {
    return row >= 0 && row < lines.size() ? std::optional(lines[row]) : std::nullopt;
}

/// Makes names unique among those given before. A name that clashes gets a two-digit number and a
/// blank in front: Rock, 01 Rock, 02 Rock. Names are compared as a project file holds them, in
/// Windows-1252: two of five Cyrillic letters each are saved as the same five question marks, and
/// one of them would lose its files when the project is opened again.
class UniqueNames {
 public:
    UniqueNames() = default;
    explicit UniqueNames(const QStringList& taken);

    /// The unique form of `name`, which is taken from now on.
    QString add(const QString& name);

    /// Whether a name that is saved as `name` is taken.
    bool isTaken(const QString& name) const;

 private:
    // Where the numbering of a name stands, so that a thousand equal names stay cheap.
    struct Numbering {
        QString prefix;
        int next = 1;
    };

    QSet<QByteArray> taken_;  // in Windows-1252
    QHash<QByteArray, Numbering> numberings_;
};

/// The unique form of `name` among `taken`; see UniqueNames.
QString uniqueName(const QString& name, const QStringList& taken);

/// Appends a music list under a unique form of `name`, makes it the current one and returns its
/// final name.
QString addMusicList(Project& project, const QString& name);

/// The same for many lists in a row: `names` must know the lists there are.
QString addMusicList(Project& project, const QString& name, UniqueNames& names);

/// Makes the list of that name the current one; without such a list nothing changes. The empty
/// name, that of no selected list, leads to the spare slot, which shows no track.
void selectMusicList(Project& project, const QString& list);

/// A track as a list box shows it.
struct MusicLine {
    QString list;
    QString track;
};

/// The tracks that no record names, list by list in the order of the list boxes: the player shows
/// them and plays nothing. `index` is the project's.
QList<MusicLine> silentTracks(const Project& project, const TrackIndex& index);

/// A name as a list of names shows it: cut where it was numbered so often that it is too long.
QString shortName(const QString& name);

/// "list / track", both short.
QString shortName(const MusicLine& line);

/// Appends a track to the current list under the unique form of `name` that `names` finds, and
/// returns that. `names` must know the tracks of the current list. The track has no record yet.
QString addMusicTrack(Project& project, const QString& name, UniqueNames& names);

}  // namespace tessaly
