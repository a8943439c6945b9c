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
        if (numbering.next > 1)
            numbering.last.replace(0, 2, number);
        else
            numbering.last.prepend(number + ' ');
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
