#include "model/music_lists.h"

namespace tessaly {

QString UniqueNames::add(const QString& name) {
    if (!taken_.contains(name)) {
        taken_.insert(name);
        return name;
    }
    // Names are only ever added, so that the numbers tried before are taken for good.
    Numbering& numbering = numberings_[name];
    if (numbering.next == 1)
        numbering.last = name;
    do {
        const QString number = QString::number(numbering.next).rightJustified(2, '0');
        const QString rest = numbering.next > 1 ? numbering.last.mid(2) : ' ' + name;
        // Put together at its exact length: thousands of equal names are long, and all are kept.
        QString next;
        next.reserve(number.size() + rest.size());
        numbering.last = next.append(number).append(rest);
        ++numbering.next;
    } while (taken_.contains(numbering.last));
    taken_.insert(numbering.last);
    return numbering.last;
}

QString uniqueName(const QString& name, const QStringList& taken) {
    return UniqueNames(taken).add(name);
}

QString addMusicList(Project& project, const QString& name) {
    UniqueNames names(project.lstMuList);
    return addMusicList(project, name, names);
}

QString addMusicList(Project& project, const QString& name, UniqueNames& names) {
    const QString unique = names.add(name);
    project.lstMuList.append(unique);
    project.MusicListNames.last() = unique;
    project.MusicListNames.append(QString());
    project.lstMuTrack.append(QStringList());
    // A list without a name, which only a file brings, lives in the spare slot and moves with it.
    if (!unique.isEmpty() && project.lstMuList.contains(QString()))
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

QString addMusicTrack(Project& project, const QString& name, UniqueNames& names) {
    const QString unique = names.add(name);
    project.lstMuTrack[project.currentMusicList].append(unique);
    return unique;
}

}  // namespace tessaly
