// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/image_limits.h"

#include <algorithm>

#include "image/config_image.h"
#include "image/image_layout.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

QString tooMany(const QString& what, qint64 found, qint64 allowed) {
    return u"The project has %1 %2, the card can hold %3."_s.arg(grouped(found), what,
                                                                 grouped(allowed));
}

// The lines of all track lists.
qsizetype musicLines(const Project& project) {
    const MusicListIndex lists(project);
    qsizetype lines = 0;
    for (const QString& list : project.lstMuList)
        lines += lists.tracks(list).size();
    return lines;
}

// How much has to go so that the image, which has `tracks` tracks, has `excess` bytes less.
QString howToShrink(const Project& project, qsizetype tracks, qsizetype excess) {
    const qsizetype titleBytes =
        image_layout::TitleWidth + 2 * (qsizetype(project.lstLangs.size()) + 1);
    QStringList ways;
    const auto add = [&](qsizetype bytesEach, qsizetype present, const QString& what) {
        const qsizetype needed = (excess + bytesEach - 1) / bytesEach;
        if (needed <= present)
            ways.append(grouped(needed) + what + (needed == 1 ? QString() : u"s"_s));
    };
    add(image_layout::TrackEntryBytes, tracks, u" music track"_s);
    add(titleBytes, project.lstSpTitles.size(), u" speech title"_s);
    return ways.isEmpty() ? u"Remove music tracks and speech titles."_s
                          : u"Remove "_s + ways.join(u" or "_s) + u'.';
}

// What keeps an item from being named by a reference, in words; empty when nothing does.
QString referenceProblem(const Project& project, const TrackRecord& item, const QString& kind,
                         const QString& who) {
    const QString name = item.itemName.text();
    if (kind == kind::Speech) {
        const qsizetype title = project.lstSpTitles.indexOf(name) + 1;
        if (title > limits::ReferenceTitle)
            return u"%1 plays speech title %2 (\"%3\"), it can name titles up to %4 only."_s.arg(
                who, grouped(title), elided(name), grouped(limits::ReferenceTitle));
        return {};
    }
    const QString listName = item.groupName.text();
    const qsizetype list = project.lstMuList.indexOf(listName) + 1;
    if (listName == ContinuousMixName || list == 0)
        return {};
    if (list > limits::ReferenceList)
        return u"%1 plays music list %2 (\"%3\"), it can name lists up to %4 only."_s.arg(
            who, grouped(list), elided(listName), grouped(limits::ReferenceList));
    const qsizetype track = tracksOfMusicList(project, listName).indexOf(name) + 1;
    if (name != PlayFullListName && track > limits::ReferenceTrack)
        return u"%1 plays track %2 of list \"%3\", it can name tracks up to %4 only."_s.arg(
            who, grouped(track), elided(listName), grouped(limits::ReferenceTrack));
    return {};
}

qsizetype imageSizeWith(const Project& project, qsizetype tracks) {
    using namespace image_layout;
    const qsizetype languages = project.lstLangs.size();
    const qsizetype titles = project.lstSpTitles.size();
    const qsizetype lists = project.lstMuList.size();
    qsizetype size = FirstSection + LanguageWidth * (languages + 1) + TitleWidth * (titles + 1) +
                     TitleWidth * (lists + 1);
    size += 2 * lists + TrackEntryBytes * (LeadingTrackEntries * lists + tracks);
    size += 2 * (titles + 1) * (languages + 1);
    size += TitleWidth * (LastDisplayText - FirstDisplayText + 1) + 2 * TriggerSlots;
    return size;
}

}  // namespace

qsizetype configImageSize(const Project& project) {
    return imageSizeWith(project, musicLines(project));
}

QList<LimitViolation> imageLimitViolations(const Project& project) {
    using namespace error_number;
    QList<LimitViolation> found;
    const qsizetype tracks = musicLines(project);
    const qsizetype size = imageSizeWith(project, tracks);
    const qsizetype excess = size - limits::ImageBytes;
    if (excess > 0)
        found.append(
            {ImageTooLarge, step_code::LimitImage,
             u"The settings of this project take %1 bytes, the player can hold %2: "_s
             u"%3 too many. %4"_s.arg(grouped(size), grouped(limits::ImageBytes), grouped(excess),
                                      howToShrink(project, tracks, excess))});
    if (project.lstLangs.size() > limits::Languages)
        found.append({TooManyLanguages, step_code::LimitLanguages,
                      tooMany(u"languages"_s, project.lstLangs.size(), limits::Languages)});
    if (project.lstMuList.size() > limits::MusicLists)
        found.append({TooManyLists, step_code::LimitLists,
                      tooMany(u"music lists"_s, project.lstMuList.size(), limits::MusicLists)});
    const auto files =
        std::count_if(project.TrackTable.begin(), project.TrackTable.end(), isTrackFile);
    if (files > limits::TrackFiles)
        found.append({TooManyFiles, step_code::LimitFiles,
                      tooMany(u"MP3 files"_s, files, limits::TrackFiles)});
    return found;
}

QList<LimitViolation> limitViolations(const Project& project) {
    QList<LimitViolation> found = imageLimitViolations(project);
    const auto check = [&](const TrackRecord& item, const Variant& kind, const QString& who) {
        const QString problem = referenceProblem(project, item, kind.text(), who);
        if (!problem.isEmpty())
            found.append({error_number::ReferenceTooHigh, step_code::LimitReferences, problem});
    };
    if (hasPowerUpItem(project))
        check(project.PowerUpRecord, project.PowerUpRecord.kind, u"The power-up item"_s);
    for (int slot = 0; slot < TriggerSlots; ++slot) {
        const TrackRecord& trigger = project.TriggerTable[size_t(slot)];
        if (isAssigned(trigger))
            check(trigger, trigger.sourcePath, u"Trigger %1"_s.arg(slot + 1));
    }
    return found;
}

void throwFirst(const QList<LimitViolation>& violations) {
    if (!violations.isEmpty())
        throw TessalyError(violations.first().errorNumber, violations.first().text);
}

}  // namespace tessaly
