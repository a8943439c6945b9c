#include "triggers/playback_attributes.h"

#include <functional>

#include "model/music_lists.h"
#include "support/projects.h"
#include "support/scratch_folder.h"
#include "support/trigger_clicks.h"

namespace tessaly {

using namespace test;

namespace {

Project tour() {
    Project project = crossNamedProject();
    addMusicList(project, "Nothing yet");
    return project;
}

// The source files of all records with a flag set.
QStringList filesWith(const Project& project, Boolean16 TrackRecord::*flag) {
    QStringList files;
    for (const TrackRecord& record : project.TrackTable)
        if ((record.*flag).isTrue())
            files.append(record.sourcePath.text());
    return files;
}

}  // namespace

TEST(TriggerSelector, ShowsWhatAModeAndALineCallFor) {
    using enum TriggerMode;
    Project project = tour();
    const QStringList lists = {"<Continuous Mix>", "Rock", "Pop", "Nothing yet"};
    const QStringList titles = {"Welcome", "Song A"};
    const QString music = "Music List Names", speech = "Speech Titles";
    const struct {
        TriggerSelector shown, expected;
    } cases[] = {
        {clickSelector(project, Music), {Music, music, lists, 0, {}, -1, true}},
        {clickSelector(project, Music, "Rock"),
         {Music, music, lists, 1, {"<Play Full List>", "Song A", "Song B"}, -1, true}},
        {clickSelector(project, Music, "Nothing yet"), {Music, music, lists, 3, {}, -1, true}},
        {clickSelector(project, Music, "Pop", "Song A"),
         {Music, music, lists, 2, {"<Play Full List>", "Song A"}, 1, true}},
        {clickSelector(project, Speech), {Speech, speech, titles, 0, {}, -1, false}},
        {clickSelector(project, Speech, "Song A"), {Speech, speech, titles, 1, {}, -1, false}},
    };
    for (const auto& [shown, expected] : cases) {
        EXPECT_EQ(shown, expected) << expected.lstTrigLeft.value(expected.leftRow).toStdString();
    }
    EXPECT_EQ(project.MusicListNames[project.currentMusicList], "Pop");

    Project empty;
    for (const TriggerMode mode : {Music, Speech}) {
        const TriggerSelector selector = selectTriggerMode(empty, mode);
        EXPECT_TRUE(selector.lstTrigLeft.isEmpty());
        EXPECT_FALSE(selector.rightVisible);
        EXPECT_EQ(selectionOf(selector).item, SelectedItem::None);
    }
    // Going back to the continuous mix takes the tracks away.
    TriggerSelector selector = clickSelector(project, Music, "Rock", "Song A");
    selectTriggerLeft(project, selector, 0);
    EXPECT_TRUE(selector.lstTrigRight.isEmpty());
    EXPECT_EQ(selectionOf(selector).item, SelectedItem::ContinuousMix);
}

TEST(PlaybackAttributes, ControlsAreEnabledBySelection) {
    using enum TriggerMode;
    Project project = tour();
    addTrack(project, "Pop", "<Play Full List>", "d.mp3");
    TriggerSelector misleading = clickSelector(project, Music, "Pop");
    selectTriggerRight(misleading, 2);
    const AttributeControls none, playable{.chkPowerUp = true, .triggerRows = true};
    AttributeControls all;
    all.chkEndlessLoop = true;
    all.buttPlayNormVolume = all.buttPlayLoudVolume = true;
    all.buttResumeOnInt = all.buttCancelOnInt = true;
    all.chkPowerUp = all.triggerRows = true;
    AttributeControls allButLoop = all;
    allButLoop.chkEndlessLoop = false;
    Project empty;
    const struct {
        const char* name;
        TriggerSelection selection;
        AttributeControls expected;
    } cases[] = {
        {"no lists", select(empty, Music), none},
        {"no titles", select(empty, Speech), none},
        {"continuous mix", select(project, Music), playable},
        {"list", select(project, Music, "Rock"), none},
        {"list without tracks", select(project, Music, "Nothing yet"), none},
        {"whole list", select(project, Music, "Rock", "<Play Full List>"), playable},
        {"track", select(project, Music, "Rock", "Song B"), all},
        {"track called like the whole list", selectionOf(misleading), all},
        {"title", select(project, Speech, "Welcome"), allButLoop},
    };
    for (const auto& [name, selection, expected] : cases)
        EXPECT_EQ(enabledControls(selection), expected) << name;
}

TEST(PlaybackAttributes, ReachEveryRecordOfTheItemAndNoOther) {
    Project project = tour();
    addTrack(project, "Rock", "Song A", "a again.mp3");
    project.TrackTable[2].kind = "empty";  // a deleted track
    const auto rockA = selectTrack(project, "Rock", "Song A");
    const auto welcome = selectTitle(project, "Welcome");
    setLoudVolume(project, rockA, true);
    setCancelOnInterrupt(project, welcome, true);
    setCancelOnInterrupt(project, selectTitle(project, "Song A"), true);  // no track
    setEndlessLoop(project, rockA, true);
    setEndlessLoop(project, welcome, true);  // titles do not loop
    EXPECT_EQ(filesWith(project, &TrackRecord::loudVolume), QStringList({"a.mp3", "a again.mp3"}));
    EXPECT_EQ(filesWith(project, &TrackRecord::cancelOnInterrupt),
              QStringList({"e.mp3", "g.mp3", "s.mp3"}));
    EXPECT_EQ(filesWith(project, &TrackRecord::endlessLoop), QStringList({"a.mp3", "a again.mp3"}));

    const Project before = project;
    for (const auto& selection :
         {selectTrack(project, "Rock", "<Play Full List>"), selectTrack(project, "Rock"),
          selectTrack(project, {}), selectTrack(project, "Rock", "Song B"), TriggerSelection{}}) {
        setLoudVolume(project, selection, true);
        setCancelOnInterrupt(project, selection, true);
        setEndlessLoop(project, selection, true);
        EXPECT_EQ(project.TrackTable, before.TrackTable);
    }
    setLoudVolume(project, rockA, false);
    EXPECT_EQ(filesWith(project, &TrackRecord::loudVolume), QStringList());
}

TEST(PlaybackAttributes, AreShownAsTheFirstRecordHasThem) {
    Project project = tour();
    const auto welcome = selectTitle(project, "Welcome");
    EXPECT_EQ(displayedAttributes(project, welcome), (AttributeDisplay{.hasRecord = true}));
    setLoudVolume(project, welcome, true);
    setCancelOnInterrupt(project, welcome, true);
    const AttributeDisplay loud{.buttPlayNormVolume = false,
                                .buttPlayLoudVolume = true,
                                .buttResumeOnInt = false,
                                .buttCancelOnInt = true,
                                .hasRecord = true};
    EXPECT_EQ(displayedAttributes(project, welcome), loud);
    // A language that came later plays as every new file does, until the attribute is set again.
    addSpeech(project, "Welcome", "French", "f.mp3");
    EXPECT_TRUE(displayedAttributes(project, welcome).differs);
    EXPECT_TRUE(displayedAttributes(project, welcome).buttPlayLoudVolume);
    setLoudVolume(project, welcome, true);
    setCancelOnInterrupt(project, welcome, true);
    EXPECT_EQ(displayedAttributes(project, welcome), loud);

    const auto track = selectTrack(project, "Rock", "Song B");
    setEndlessLoop(project, track, true);
    EXPECT_TRUE(displayedAttributes(project, track).chkEndlessLoop);
    for (const char* other : {"Song A", "<Play Full List>"})
        EXPECT_FALSE(
            displayedAttributes(project, selectTrack(project, "Rock", other)).chkEndlessLoop);
    project.lstSpTitles.append("No file");
    EXPECT_EQ(displayedAttributes(project, selectTitle(project, "No file")), AttributeDisplay{});
}

TEST(PowerUpItem, IsOneOfTheWholeProject) {
    Project project = tour();
    const TriggerSelection items[] = {
        selectTrack(project, "<Continuous Mix>"), selectTrack(project, "Rock", "<Play Full List>"),
        selectTrack(project, "Rock", "Song A"),   selectTrack(project, "Pop", "Song A"),
        selectTitle(project, "Song A"),           selectTitle(project, "Welcome")};
    const char* words[] = {"<Continuous Mix>", "Rock / <Play Full List>",
                           "Rock / Song A",    "Pop / Song A",
                           "Song A",           "Welcome"};
    for (size_t chosen = 0; chosen < std::size(items); ++chosen) {
        setPowerUpItem(project, items[chosen], true);
        for (size_t i = 0; i < std::size(items); ++i) {
            EXPECT_EQ(displayedAttributes(project, items[i]).chkPowerUp, i == chosen) << words[i];
            if (i != chosen)
                setPowerUpItem(project, items[i], false);  // another item's box changes nothing
        }
        EXPECT_EQ(powerUpItem(project).words, QString("At power-up: ") + words[chosen]);
        EXPECT_FALSE(powerUpItem(project).isGone);
    }
    EXPECT_TRUE(project.PowerUpRecord.groupName.is(u""));  // no list left from an earlier track
    setPowerUpItem(project, TriggerSelection{}, true);
    EXPECT_TRUE(displayedAttributes(project, items[5]).chkPowerUp);
    setPowerUpItem(project, items[5], false);
    EXPECT_FALSE(hasPowerUpItem(project));
    EXPECT_EQ(powerUpItem(project).words, "At power-up: nothing");
}

TEST(PowerUpItem, ThatIsGoneIsSaidAndCleared) {
    const Project whole = tour();
    const struct {
        TriggerMode mode;
        const char *left, *right;
        std::function<void(Project&)> edit;
        const char* words;
    } cases[] = {
        {TriggerMode::Music, "Rock", "Song A", [](Project& p) { p.lstMuList.removeOne("Rock"); },
         "At power-up: Rock / Song A (the list is gone)"},
        {TriggerMode::Music, "Rock", "Song A",
         [](Project& p) { p.lstMuTrack[slotOfMusicList(p, "Rock")].removeOne("Song A"); },
         "At power-up: Rock / Song A (the track is gone)"},
        {TriggerMode::Music, "Pop", "<Play Full List>",
         [](Project& p) { p.lstMuTrack[slotOfMusicList(p, "Pop")].clear(); },
         "At power-up: Pop / <Play Full List> (the list has no tracks)"},
        {TriggerMode::Music, "<Continuous Mix>", "", [](Project& p) { p.lstMuList.clear(); },
         "At power-up: <Continuous Mix> (there is no music list)"},
        {TriggerMode::Speech, "Welcome", "", [](Project& p) { p.lstSpTitles.clear(); },
         "At power-up: Welcome (the title is gone)"},
    };
    for (const auto& [mode, left, right, edit, words] : cases) {
        Project project = whole;
        setPowerUpItem(project, select(project, mode, left, right), true);
        EXPECT_FALSE(powerUpItem(project).isGone) << words;
        edit(project);
        EXPECT_EQ(powerUpItem(project).words, words);
        EXPECT_TRUE(powerUpItem(project).isGone) << words;
        clearPowerUpItem(project);
        EXPECT_FALSE(hasPowerUpItem(project));
        EXPECT_FALSE(powerUpItem(project).isGone);
    }
}

}  // namespace tessaly
