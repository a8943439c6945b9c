#include "support/projects.h"

#include <algorithm>

#include "image/config_image.h"
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
    explicit Dice(std::mt19937& random) : random_(random) {}

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    bool coin() { return upTo(1) == 1; }

    QString text(int longest) {
        QByteArray bytes;
        for (int length = 1 + upTo(longest - 1); length > 0; --length)
            bytes.append(char(32 + upTo(223)));
        return fromCodePage(bytes);
    }

    QStringList names(int count, int longest) {
        UniqueNames unique;
        QStringList list;
        while (list.size() < count)
            list.append(unique.add(text(longest)));
        return list;
    }

    template <typename List>
    auto& anyOf(List& list) {
        return list[upTo(int(list.size()) - 1)];
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
};

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
    project.DefaultLanguageTable.append(makeRecord("lstDefaultLangs", {}, "German", {}));
    project.txtCardTitle1 = "WELCOME";
    setChimeOption(project, &Project::buttPlayIntChime, true);
    for (TrackRecord& text : project.SystemTextTable)
        text.groupName = "";
    return project;
}

Project randomProject(std::mt19937& random, int tracks) {
    Dice dice(random);
    Project project;
    project.lstLangs = dice.names(dice.upTo(16), 8);
    project.lstSpTitles = dice.names(dice.upTo(std::max(1, tracks / 20)), 16);
    for (const QString& list : dice.names(1 + dice.upTo(12), 16)) {
        addMusicList(project, list);
        project.lstMuTrack[project.currentMusicList] = dice.names(1 + dice.upTo(tracks / 13), 16);
    }
    QList<TrackRecord> records;
    for (const QString& list : project.lstMuList)
        for (const QString& track : tracksOfMusicList(project, list))
            records.append(makeRecord("music", track, list, dice.text(60)));
    for (const QString& title : project.lstSpTitles)
        for (const QString& language : project.lstLangs)
            if (dice.upTo(4) > 0)
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
            project.DefaultLanguageTable.append(makeRecord("lstDefaultLangs", {}, language, {}));
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

}  // namespace tessaly::test
