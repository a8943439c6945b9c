#include "image/image_lines.h"

#include <algorithm>

#include "image/config_image.h"
#include "image/image_layout.h"
#include "model/text_codec.h"

namespace tessaly {

namespace {

using Tracks = QList<const TrackRecord*>;

QByteArray imageText(const QString& name) {
    return fixedWidthText(name, image_layout::TitleWidth);
}

// A name that the image holds as `name` and no project file can hold: the code page lacks its end.
QString lineWithoutFile(const QString& name, qsizetype line) {
    return name.leftJustified(image_layout::TitleWidth) + QChar::ReplacementCharacter +
           QString::number(line);
}

// The tracks that lines are looked up for: the first of each name, by list.
QHash<QString, Tracks> tracksByList(const Project& project) {
    const TrackIndex index(project);
    QHash<QString, Tracks> tracks;
    for (const TrackRecord& record : project.TrackTable) {
        const QString list = record.groupName.text();
        if (isMusic(record) && index.music(list, record.itemName.text()) == &record)
            tracks[list].append(&record);
    }
    return tracks;
}

// A project file has its tracks in the order of their lines: one that the image has too late counts
// as missing there.
QStringList linesOf(const QList<DecodedTrack>& entries, const Tracks& tracks) {
    QHash<std::pair<QByteArray, quint16>, QList<qsizetype>> places;  // by how the image shows one
    for (qsizetype i = 0; i < tracks.size(); ++i)
        places[{imageText(tracks[i]->itemName.text()), trackWord(*tracks[i])}].append(i);
    QList<bool> isShown(tracks.size(), false);
    qsizetype next = 0;
    QStringList lines;
    for (const DecodedTrack& entry : entries) {
        const QList<qsizetype> known = places.value({imageText(entry.name), entry.word.value});
        const auto place = std::lower_bound(known.begin(), known.end(), next);
        if (place == known.end()) {
            lines.append(lineWithoutFile(entry.name, lines.size()));
            continue;
        }
        lines.append(tracks[*place]->itemName.text());
        isShown[*place] = true;
        next = *place + 1;
    }
    for (qsizetype i = 0; i < tracks.size(); ++i)
        if (!isShown[i])
            lines.append(tracks[i]->itemName.text());
    return lines;
}

// A trigger may name a line without a file, by its whole name.
void nameLine(Project& project, const TrackRecord& item, const DecodedReference& reference) {
    const QString list = item.groupName.text(), name = item.itemName.text();
    if (reference.kind != DecodedReference::Kind::Track ||
        project.lstMuList.indexOf(list) != reference.list - 1)
        return;
    QStringList& lines = project.lstMuTrack[slotOfMusicList(project, list)];
    if (reference.track < lines.size() && !lines.contains(name) &&
        imageText(lines[reference.track]) == imageText(name))
        lines[reference.track] = name;
}

}  // namespace

void takeLinesFromImage(Project& project, const DecodedImage& image) {
    // A list without a name that comes first is none to a reader of project files.
    if (image.lists.size() > project.lstMuList.size() && image.lists[0].name.isEmpty())
        project.lstMuList.prepend(QString(""));
    const QHash<QString, Tracks> tracks = tracksByList(project);
    const qsizetype lists = std::min(image.lists.size(), project.lstMuList.size());
    for (qsizetype i = 0; i < lists; ++i) {
        const QString& list = project.lstMuList[i];
        project.lstMuTrack[slotOfMusicList(project, list)] =
            linesOf(image.lists[i].tracks, tracks.value(list));
    }
    nameLine(project, project.PowerUpRecord, image.powerUp);
    for (qsizetype i = 0; i < std::min<qsizetype>(image.triggers.size(), TriggerSlots); ++i)
        nameLine(project, project.TriggerTable[size_t(i)], image.triggers[i]);
}

}  // namespace tessaly
