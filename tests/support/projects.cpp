// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/projects.h"

#include <QSet>
#include <algorithm>

#include "image/config_image.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/text_codec.h"

namespace tessaly::test {

TrackRecord makeRecord(const char* kind, const QString& item, const QString& group,
                       const QString& path) {
    TrackRecord made;
    made.kind = kind;
    made.itemName = item;
    made.groupName = group;
    made.sourcePath = path;
    return made;
}

namespace {

class Dice {
 public:
    Dice(std::mt19937& random, Names kind) : random_(random), kind_(kind) {}

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    bool coin() { return upTo(1) == 1; }

    QString text(int longest) {
        QByteArray bytes;
        for (int length = 1 + upTo(longest - 1); length > 0; --length)
            bytes.append(char(32 + upTo(223)));
        return fromCodePage(bytes);
    }

    bool isPlain() const { return kind_ == Names::Plain; }

    template <typename List>
    auto& anyOf(List& list) {
        return list[upTo(int(list.size()) - 1)];
    }
    /// A name as it is found: in a tag, in a folder, typed in.
    QString name(int longest) {
        static const QStringList Clashing = {"",
                                             "Piano Sonata No.",
                                             "Piano Sonata No.1 in F minor",
                                             "01 Piano Sonata No.",
                                             QStringLiteral("Größe über dem Ärmelkanal"),
                                             "<Play Full List>"};
        return kind_ == Names::Plain || coin() ? text(kind_ == Names::Plain ? longest : 40)
                                               : anyOf(Clashing);
    }

    QStringList names(int count, int longest) {
        QStringList found;
        while (found.size() < count)
            found.append(name(longest));
        return found;
    }

    template <typename List>
    void shuffle(List& list) {
        std::shuffle(list.begin(), list.end(), random_);
    }

    void attributes(TrackRecord& item) {
        item.endlessLoop = Boolean16::of(coin());
        item.cancelOnInterrupt = Boolean16::of(coin());
        item.loudVolume = Boolean16::of(coin());
    }

 private:
    std::mt19937& random_;
    const Names kind_;
};

QStringList numbered(const QStringList& found) {
    UniqueNames unique;
    QStringList names;
    for (const QString& name : found)
        names.append(unique.add(name));
    return names;
}

// Lets `item` name something of the project.
void pointAtSomething(Dice& dice, const Project& project, TrackRecord& item, Variant& kind) {
    if (dice.coin() && !project.lstSpTitles.isEmpty()) {
        kind = "speech";
        item.itemName = dice.anyOf(project.lstSpTitles);
    } else if (!project.lstMuList.isEmpty()) {
        kind = "music";
        const QString list = dice.anyOf(project.lstMuList);
        const QStringList tracks = tracksOfMusicList(project, list);
        item.groupName = dice.upTo(5) == 0 ? ContinuousMixName.toString() : list;
        item.itemName = dice.upTo(3) == 0 ? PlayFullListName.toString() : dice.anyOf(tracks);
    }
}

}  // namespace

void addTrack(Project& project, const QString& list, const QString& track, const QString& path) {
    if (!project.lstMuList.contains(list))
        addMusicList(project, list);
    selectMusicList(project, list);
    QStringList& lines = project.lstMuTrack[project.currentMusicList];
    if (!lines.contains(track))
        lines.append(track);
    project.TrackTable.append(makeRecord("music", track, list, path));
}

void addSpeech(Project& project, const QString& title, const QString& language,
               const QString& path) {
    if (!project.lstSpTitles.contains(title))
        project.lstSpTitles.append(title);
    if (!project.lstLangs.contains(language))
        project.lstLangs.append(language);
    project.TrackTable.append(makeRecord("speech", title, language, path));
}

void addDefaultLanguage(Project& project, const QString& language) {
    TrackRecord record;
    record.kind = "lstDefaultLangs";
    record.groupName = language;
    project.DefaultLanguageTable.append(record);
}

Project crossNamedProject() {
    Project project;
    addTrack(project, "Rock", "Song A", "a.mp3");
    addTrack(project, "Rock", "Song B", "b.mp3");
    addTrack(project, "Pop", "Song A", "c.mp3");
    addSpeech(project, "Welcome", "English", "e.mp3");
    addSpeech(project, "Welcome", "German", "g.mp3");
    addSpeech(project, "Song A", "English", "s.mp3");
    return project;
}

Project exampleProject() {
    Project project;
    addTrack(project, "Rock", "Song A", "C:\\a.mp3");
    addTrack(project, "Rock", "Song B", "C:\\b.mp3");
    addSpeech(project, "Welcome", "English", "C:\\e.mp3");
    addSpeech(project, "Welcome", "German", "C:\\g.mp3");
    addDefaultLanguage(project, "German");
    project.txtCardTitle1 = "WELCOME";
    setChimeOption(project, &Project::buttPlayIntChime, true);
    for (TrackRecord& text : project.SystemTextTable)
        text.groupName = "";
    return project;
}

Project randomProject(std::mt19937& random, int tracks, Names names) {
    Dice dice(random, names);
    Project project;
    if (!dice.isPlain() && dice.coin())
        reset(project);
    project.lstLangs = numbered(dice.names(dice.upTo(16), 8));
    project.lstSpTitles = numbered(dice.names(dice.upTo(std::max(1, tracks / 20)), 16));
    QList<TrackRecord> records;
    for (const QString& list : numbered(dice.names(1 + dice.upTo(12), 16))) {
        addMusicList(project, list);
        const QStringList found = dice.names(1 + dice.upTo(tracks / 13), 16);
        QStringList& lines = project.lstMuTrack[project.currentMusicList];
        lines = numbered(found);
        const bool isAsFound = !dice.isPlain() && dice.coin();  // as a folder's import leaves it
        for (qsizetype i = 0; i < lines.size(); ++i)
            if (i == 0 || dice.isPlain() || dice.upTo(3) > 0)
                records.append(
                    makeRecord("music", isAsFound ? found[i] : lines[i], list, dice.text(60)));
        if (!dice.isPlain() && dice.coin())
            dice.shuffle(lines);
    }
    for (const QString& title : project.lstSpTitles)
        for (const QString& language : project.lstLangs)
            if (dice.upTo(4) > 0 && !title.isEmpty())
                records.append(makeRecord("speech", title, language, dice.text(60)));
    dice.shuffle(records);
    for (TrackRecord& item : records)
        dice.attributes(item);
    if (dice.coin())
        records.append(makeRecord("empty", "deleted", "item", "gone.mp3"));
    project.TrackTable.append(records);
    dice.shuffle(project.lstMuList);
    for (const QString& language : project.lstLangs)
        if (dice.coin())
            addDefaultLanguage(project, language);
    project.txtCardTitle1 = dice.coin() ? dice.text(20) : QString();
    project.txtCardTitle2 = dice.text(16);
    setChimeOption(project, dice.coin() ? &Project::buttChimeAlways : &Project::buttChimeOnce,
                   true);
    setChimeOption(project, dice.coin() ? &Project::buttPlayIntChime : &Project::buttPlayExtChime,
                   true);
    for (int slot = 0; slot < SystemTextsUsed; ++slot)
        project.SystemTextTable[size_t(slot)].groupName = dice.text(16);
    if (dice.coin())
        pointAtSomething(dice, project, project.PowerUpRecord, project.PowerUpRecord.kind);
    for (TrackRecord& trigger : project.TriggerTable)
        if (dice.coin())
            pointAtSomething(dice, project, trigger, trigger.sourcePath);
    return project;
}

QStringList inconsistencies(const Project& project, Origin origin) {
    QStringList wrong;
    const auto require = [&](bool holds, const QString& sentence) {
        if (!holds)
            wrong.append(sentence);
    };
    const auto hasSpareSlot = [](const QList<TrackRecord>& table) {
        return !table.isEmpty() && table[0] == TrackRecord();
    };
    require(hasSpareSlot(project.TrackTable), "slot 0 of the tracks is not blank");
    require(hasSpareSlot(project.DefaultLanguageTable), "slot 0 of the languages is not blank");
    require(project.lstMuTrack.size() == project.MusicListNames.size(),
            "lists and their names differ in number");
    require(
        project.currentMusicList >= 0 && project.currentMusicList < project.MusicListNames.size(),
        "there is no such current list");
    QStringList used = project.MusicListNames, shown = project.lstMuList;
    used.removeAll("");
    // A list without a name, which only a file brings, lives in the spare slot.
    const bool hasNameless = origin == Origin::AnyFile && shown.removeAll("") > 0;
    require(project.MusicListNames.last().isEmpty() &&
                (hasNameless || project.lstMuTrack.last().isEmpty()),
            "the spare list is in use");
    used.sort();
    shown.sort();
    require(used == shown, "lists " + shown.join('|') + " are not slots " + used.join('|'));
    require(shown.removeDuplicates() == 0, "two lists have the same name");
    for (QStringList lines : project.lstMuTrack)
        require(lines.removeDuplicates() == 0, "two tracks of a list have one name");
    const int sounds =
        project.buttPlayExtChime + project.buttPlayIntChime + project.buttDisableChime;
    require(!(project.buttChimeAlways && project.buttChimeOnce) && sounds <= 1,
            "the chime has two settings");
    if (origin == Origin::AnyFile)
        return wrong;

    require(project.lstLangs.size() <= limits::Languages, "there are too many languages");
    QHash<QString, QSet<QString>> tracks;
    for (const QString& list : project.lstMuList) {
        const QStringList lines = tracksOfMusicList(project, list);
        tracks[list] = {lines.begin(), lines.end()};
    }
    const QSet<QString> titles(project.lstSpTitles.begin(), project.lstSpTitles.end());
    const QSet<QString> languages(project.lstLangs.begin(), project.lstLangs.end());
    require(titles.size() == project.lstSpTitles.size(), "two titles have the same name");
    require(languages.size() == project.lstLangs.size(), "two languages have the same name");
    for (const TrackRecord& record : project.TrackTable) {
        const QString item = record.itemName.text(), group = record.groupName.text();
        if (isMusic(record))
            require(tracks.value(group).contains(item), "no line for " + group + " / " + item);
        else if (isSpeech(record))
            require(titles.contains(item) && languages.contains(group),
                    "no lines for " + item + " in " + group);
    }
    for (const TrackRecord& record : project.DefaultLanguageTable.mid(1))
        require(languages.contains(record.groupName.text()),
                "no language " + record.groupName.text());
    for (int slot = 0; slot < TriggerSlots; ++slot)
        require(typeTagNumber(project.TriggerTable[size_t(slot)]) == slot,
                QString("trigger %1 has another's number").arg(slot));
    require((project.buttChimeAlways || project.buttChimeOnce) && sounds == 1,
            "the chime has no setting");
    return wrong;
}

}  // namespace tessaly::test
