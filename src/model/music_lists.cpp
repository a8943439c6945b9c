// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/music_lists.h"

#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

UniqueNames::UniqueNames(const QStringList& taken) {
    for (const QString& name : taken)
        taken_.insert(toCodePage(name));
}

bool UniqueNames::isTaken(const QString& name) const {
    return taken_.contains(toCodePage(name));
}

QString UniqueNames::add(const QString& name) {
    const QByteArray saved = toCodePage(name);
    if (!taken_.contains(saved)) {
        taken_.insert(saved);
        return name;
    }
    // Names are only ever added, so that the numbers tried before are taken for good.
    Numbering& numbering = numberings_[saved];
    QString unique;
    QByteArray uniqueSaved;
    do {
        const QString number = QString::number(numbering.next++).rightJustified(2, u'0');
        numbering.prefix = number + numbering.prefix.mid(2);
        // Put together at its exact length: thousands of equal names are long, and all are kept.
        unique = QString();
        unique.reserve(numbering.prefix.size() + 1 + name.size());
        unique.append(numbering.prefix).append(u' ').append(name);
        uniqueSaved = toCodePage(unique);
    } while (taken_.contains(uniqueSaved));
    taken_.insert(uniqueSaved);
    return unique;
}

QString uniqueName(const QString& name, const QStringList& taken) {
    return UniqueNames(taken).add(name);
}

QString addMusicList(Project& project, const QString& name) {
    UniqueNames names(project.lstMuList);
    return addMusicList(project, name, names);
}

QString addMusicList(Project& project, const QString& name, UniqueNames& names) {
    Q_ASSERT(project.lstMuList.isEmpty() || names.isTaken(project.lstMuList.last()));
    QString unique = names.add(name);
    project.lstMuList.append(unique);
    project.MusicListNames.last() = unique;
    project.MusicListNames.append(QString());
    project.lstMuTrack.append(QStringList());
    // A list without a name, which only a file brings, lives in the spare slot and moves with it.
    if (!unique.isEmpty() && names.isTaken(QString()))
        project.lstMuTrack.swapItemsAt(project.lstMuTrack.size() - 2,
                                       project.lstMuTrack.size() - 1);
    selectMusicList(project, unique);
    return unique;
}

void selectMusicList(Project& project, const QString& list) {
    const int slot = slotOfMusicList(project, list);
    if (slot >= 0)
        project.currentMusicList = slot;
    if (project.lstMuList.isEmpty())
        project.lstMuTrack[project.currentMusicList].clear();
}

QList<MusicLine> silentTracks(const Project& project, const TrackIndex& index) {
    QList<MusicLine> silent;
    const MusicListIndex lists(project);
    for (const QString& list : project.lstMuList)
        for (const QString& track : lists.tracks(list))
            if (!index.music(list, track))
                silent.append({list, track});
    return silent;
}

QString shortName(const QString& name) {
    constexpr qsizetype Longest = 60;
    return name.size() > Longest ? name.left(Longest) + u"..."_s : name;
}

QString shortName(const MusicLine& line) {
    return shortName(line.list) + u" / "_s + shortName(line.track);
}

QString addMusicTrack(Project& project, const QString& name, UniqueNames& names) {
    QStringList& tracks = project.lstMuTrack[project.currentMusicList];
    Q_ASSERT(tracks.isEmpty() || names.isTaken(tracks.last()));
    QString unique = names.add(name);
    tracks.append(unique);
    return unique;
}

}  // namespace tessaly
