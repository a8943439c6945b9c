// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/line_notes.h"

#include <QSet>

#include "model/music_lists.h"
#include "model/numbers.h"
#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// How a file is played when that is not the usual way.
QStringList attributesOf(const TrackRecord& record) {
    QStringList words;
    if (record.loudVolume.isTrue())
        words.append(u"loud"_s);
    if (record.cancelOnInterrupt.isTrue())
        words.append(u"cancel"_s);
    if (record.endlessLoop.isTrue())
        words.append(u"loop"_s);
    return words;
}

QString joined(QStringList words) {
    words.removeAll(QString());
    return words.join(u", "_s);
}

QString inMinutesOrNone(qint64 milliseconds) {
    return milliseconds > 0 ? inMinutes(milliseconds) : QString();
}

void add(LineNotes::Sound& all, const LineNotes::Sound& one) {
    all.milliseconds += one.milliseconds;
    all.isWarned |= one.isWarned;
}

QString withSign(const QString& words, const LineNotes::Sound& sound) {
    return sound.isWarned ? WarningSign + words : words;
}

}  // namespace

bool LineNotes::areOf(Project project) const {
    project.unsavedChanges = project_.unsavedChanges;
    project.suppressTriggerEvents = project_.suppressTriggerEvents;
    project.currentMusicList = project_.currentMusicList;
    return project == project_;
}

const LineNotes::Music& LineNotes::music() const {
    if (music_)
        return *music_;
    music_.emplace(Music{.index = TrackIndex(project_), .tracks = {}, .sound = {}});
    const MusicListIndex lists(project_);
    for (const QString& list : project_.lstMuList)
        music_->tracks.insert(list, int(lists.tracks(list).size()));
    for (const TrackRecord& record : project_.TrackTable)
        if (isMusic(record))
            add(music_->sound[record.groupName.text()], soundOf(record));
    return *music_;
}

const LineNotes::Speech& LineNotes::speech() const {
    if (speech_)
        return *speech_;
    Speech& found = speech_.emplace();
    QSet<std::pair<QString, QString>> pairs;
    for (const TrackRecord& record : project_.TrackTable) {
        if (!isSpeech(record))
            continue;
        const std::pair pair(record.itemName.text(), record.groupName.text());
        const qsizetype before = pairs.size();
        pairs.insert(pair);
        if (pairs.size() == before)
            continue;
        ++found.titles[pair.second];
        const Sound sound = soundOf(record);
        add(found.ofLanguage[pair.second], sound);
        add(found.ofTitle[pair.first], sound);
        if (found.languages[pair.first]++ == 0)
            found.firstOfTitle.insert(pair.first, &record);
    }
    return found;
}

LineNote LineNotes::list(const QString& list) const {
    const Sound sound = music().sound.value(list);
    return {withSign(joined({counted(music().tracks.value(list), u"track"_s),
                             inMinutesOrNone(sound.milliseconds),
                             playersOf(kind::Music, list, PlayFullListName.toString())}),
                     sound)};
}

LineNote LineNotes::track(const QString& list, const QString& track,
                          const FileSystem& files) const {
    const TrackRecord* record = music().index.music(list, track);
    const QString players = playersOf(kind::Music, list, track);
    if (!record)
        return {.text = joined({u"no file"_s, players}), .isBad = true};
    LineNote note{.text = {}, .path = record->sourcePath.text()};
    note.record = record;
    note.stamp = files.stamp(note.path);
    note.isBad = !note.stamp;
    note.text = joined(
        {note.isBad ? u"missing"_s : QString(), attributesOf(*record).join(u", "_s), players});
    return note;
}

LineNote LineNotes::title(const QString& title) const {
    const int there = speech().languages.value(title), all = int(project_.lstLangs.size());
    const TrackRecord* record = speech().firstOfTitle.value(title);
    return {.text = withSign(joined({u"%1 of %2"_s.arg(there).arg(all),
                                     record ? attributesOf(*record).join(u", "_s) : QString(),
                                     playersOf(kind::Speech, {}, title)}),
                             speech().ofTitle.value(title)),
            .isBad = there < all};
}

LineNote LineNotes::language(const QString& language) const {
    const int there = speech().titles.value(language), all = int(project_.lstSpTitles.size());
    bool isDefault = false;
    for (const TrackRecord& record : project_.DefaultLanguageTable.mid(1))
        isDefault |= record.groupName.is(language);
    const Sound sound = speech().ofLanguage.value(language);
    return {.text = withSign(
                joined({u"%1 of %2"_s.arg(there).arg(all), inMinutesOrNone(sound.milliseconds),
                        isDefault ? u"default"_s : QString()}),
                sound),
            .path = {},
            .isBad = there < all};
}

// What starts it by itself. A title is named without a group.
QString LineNotes::playersOf(QStringView plays, const QString& group, const QString& item) const {
    const bool isTitle = plays == kind::Speech;
    const auto names = [&](const TrackRecord& record, const Variant& what) {
        return what.is(plays) && record.itemName.is(item) &&
               (isTitle || record.groupName.is(group));
    };
    QStringList words;
    for (size_t slot = 0; slot < project_.TriggerTable.size(); ++slot)
        if (const TrackRecord& trigger = project_.TriggerTable[slot];
            names(trigger, trigger.sourcePath))
            words.append(u"trigger %1"_s.arg(slot + 1));
    if (names(project_.PowerUpRecord, project_.PowerUpRecord.kind))
        words.append(u"power-up"_s);
    return words.join(u", "_s);
}

}  // namespace tessaly
