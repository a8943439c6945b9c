// SPDX-License-Identifier: GPL-3.0-or-later
// What can be selected, how it plays, and what plays it: the selector, the attributes, the power-up
// item and the discrete triggers. tests/app/setup_pages_test.cpp follows them into an image.
#include <functional>

#include "model/music_lists.h"
#include "support/projects.h"
#include "support/scratch_folder.h"
#include "triggers/item_settings.h"

namespace tessaly {

using namespace test;
using enum TriggerMode;

namespace {

Project tour() {
    Project project = crossNamedProject();
    addMusicList(project, "Nothing yet");
    return project;
}

// Clicks a mode and the first lines of that text, as an operator would; an empty text is no click.
TriggerSelector clickSelector(Project& project, TriggerMode mode, const QString& left = {},
                              const QString& right = {}) {
    TriggerSelector selector = selectTriggerMode(project, mode);
    if (!left.isEmpty())
        selectTriggerLeft(project, selector, int(selector.lstTrigLeft.indexOf(left)));
    if (!right.isEmpty())
        selectTriggerRight(selector, int(selector.lstTrigRight.indexOf(right)));
    EXPECT_TRUE(left.isEmpty() || selector.leftRow >= 0) << left.toStdString();
    EXPECT_TRUE(right.isEmpty() || selector.rightRow >= 0) << right.toStdString();
    return selector;
}

TriggerSelection selectTrack(Project& project, const QString& list, const QString& track = {}) {
    return selectionOf(clickSelector(project, Music, list, track));
}

TriggerSelection selectTitle(Project& project, const QString& title) {
    return selectionOf(clickSelector(project, Speech, title));
}

// The source files of all records with a flag set.
QStringList filesWith(const Project& project, Boolean16 TrackRecord::*flag) {
    QStringList files;
    for (const TrackRecord& record : project.TrackTable)
        if ((record.*flag).isTrue())
            files.append(record.sourcePath.text());
    return files;
}

// A row as letters: C checked, E enabled; "-" if neither.
QString shortForm(const TriggerRow& row) {
    const QString letters = QString(row.isAssigned ? "C" : "") + (row.isEnabled ? "E" : "");
    return letters.isEmpty() ? "-" : letters;
}

QStringList shortForms(const Project& project, const TriggerSelection& selection) {
    QStringList forms;
    for (const TriggerRow& row : triggerRows(project, selection))
        forms.append(shortForm(row));
    return forms;
}

}  // namespace

TEST(TriggerSelector, ShowsWhatAModeAndALineCallFor) {
    Project project = tour();
    const QStringList lists = {"<Continuous Mix>", "Rock", "Pop", "Nothing yet"};
    EXPECT_EQ(clickSelector(project, Music, "Pop", "Song A"),
              (TriggerSelector{
                  Music, "Music List Names", lists, 2, {"<Play Full List>", "Song A"}, 1, true}));
    EXPECT_EQ(project.MusicListNames[project.currentMusicList], "Pop");
    EXPECT_EQ(clickSelector(project, Speech, "Song A"),
              (TriggerSelector{Speech, "Speech Titles", {"Welcome", "Song A"}, 1, {}, -1, false}));
    EXPECT_EQ(selectTriggerMode(project, Music).leftRow, 0);
    EXPECT_TRUE(clickSelector(project, Music, "Nothing yet").lstTrigRight.isEmpty());
    EXPECT_FALSE(selectTriggerMode(Project(), Music).rightVisible);
    // Going back to the continuous mix takes the tracks away.
    TriggerSelector selector = clickSelector(project, Music, "Rock", "Song A");
    selectTriggerLeft(project, selector, 0);
    EXPECT_TRUE(selector.lstTrigRight.isEmpty());
    EXPECT_EQ(selectionOf(selector).item, SelectedItem::ContinuousMix);
}

// What can be set, as letters: attributes, loop, play. Trigger 1 holds Rock / Song A, 2 the title
// Song A.
TEST(TriggerPage, ControlsFollowTheSelection) {
    Project project = tour(), empty;
    assignTrigger(project, selectTrack(project, "Rock", "Song A"), 0);
    assignTrigger(project, selectTitle(project, "Song A"), 1);
    addTrack(project, "Pop", "<Play Full List>", "d.mp3");
    TriggerSelector misleading = clickSelector(project, Music, "Pop");
    selectTriggerRight(misleading, 2);
    const struct {
        const char* name;
        TriggerSelection selection;
        QString controls;
        QStringList rows;
    } cases[] = {
        {"no lists", selectTrack(empty, {}), "", {"C", "C", "-"}},
        {"no titles", selectTitle(empty, {}), "", {"C", "C", "-"}},
        {"list", selectTrack(project, "Rock"), "", {"C", "C", "-"}},
        {"continuous mix", selectTrack(project, "<Continuous Mix>"), "p", {"C", "C", "E"}},
        {"whole list", selectTrack(project, "Rock", "<Play Full List>"), "p", {"C", "C", "E"}},
        {"track", selectTrack(project, "Rock", "Song A"), "alp", {"CE", "C", "E"}},
        {"track of another list", selectTrack(project, "Pop", "Song A"), "alp", {"C", "C", "E"}},
        {"track called like the whole list", selectionOf(misleading), "alp", {"C", "C", "E"}},
        {"title called like the track", selectTitle(project, "Song A"), "ap", {"C", "CE", "E"}},
    };
    for (const auto& [name, selection, controls, rows] : cases) {
        const AttributeControls enabled = enabledControls(selection);
        EXPECT_EQ(QString(enabled.attributes ? "a" : "") + (enabled.endlessLoop ? "l" : "") +
                      (enabled.play ? "p" : ""),
                  controls)
            << name;
        EXPECT_EQ(shortForms(project, selection), rows) << name;
    }
    const auto rows = triggerRows(project, cases[0].selection);
    EXPECT_EQ(rows[0].words, "Trigger 1: Rock / Song A");
    EXPECT_EQ(rows[1].words, "Trigger 2: Song A");
    EXPECT_EQ(rows[2].words, "Trigger 3: free");
    reset(project);  // the names stay in the slots, the triggers are free
    EXPECT_EQ(shortForms(project, selectTrack(project, {})), QStringList({"-", "-", "-"}));
}

TEST(PlaybackAttributes, ReachEveryRecordOfTheItemAndNoOther) {
    Project project = tour();
    addTrack(project, "Rock", "Song A", "a again.mp3");
    project.TrackTable[2].kind = "empty";  // a deleted track
    const auto rockA = selectTrack(project, "Rock", "Song A");
    const auto welcome = selectTitle(project, "Welcome");
    setEndlessLoop(project, rockA, true);
    setEndlessLoop(project, welcome, true);  // titles do not loop
    EXPECT_FALSE(project.unsavedChanges);
    EXPECT_TRUE(isMarkedBy(project, [&] { setLoudVolume(project, rockA, true); }));
    EXPECT_TRUE(isMarkedBy(project, [&] { setCancelOnInterrupt(project, welcome, true); }));
    setCancelOnInterrupt(project, selectTitle(project, "Song A"), true);  // no track
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
}

TEST(PlaybackAttributes, AreShownAsTheFirstRecordHasThem) {
    Project project = tour();
    const auto welcome = selectTitle(project, "Welcome");
    const AttributeDisplay loud{.loud = true, .cancel = true, .hasRecord = true};
    setLoudVolume(project, welcome, true);
    setCancelOnInterrupt(project, welcome, true);
    EXPECT_EQ(displayedAttributes(project, welcome), loud);
    // A language that came later plays as every new file does, until the attribute is set again.
    addSpeech(project, "Welcome", "French", "f.mp3");
    AttributeDisplay differing = loud;
    differing.differs = true;
    EXPECT_EQ(displayedAttributes(project, welcome), differing);
    setLoudVolume(project, welcome, true);
    setCancelOnInterrupt(project, welcome, true);
    EXPECT_EQ(displayedAttributes(project, welcome), loud);

    setEndlessLoop(project, selectTrack(project, "Rock", "Song B"), true);
    for (const QString track : {"Song B", "Song A", "<Play Full List>"})
        EXPECT_EQ(displayedAttributes(project, selectTrack(project, "Rock", track)).loop,
                  track == "Song B");
    project.lstSpTitles.append("No file");
    EXPECT_EQ(displayedAttributes(project, selectTitle(project, "No file")), AttributeDisplay{});
}

TEST(PowerUpItem, IsOneOfTheWholeProject) {
    Project project = tour();
    const TriggerSelection items[] = {
        selectTrack(project, "<Continuous Mix>"), selectTrack(project, "Rock", "<Play Full List>"),
        selectTrack(project, "Rock", "Song A"),   selectTrack(project, "Pop", "Song A"),
        selectTitle(project, "Song A"),           selectTitle(project, "Welcome")};
    for (const TriggerSelection& chosen : items) {
        setPowerUpItem(project, chosen, true);
        for (const TriggerSelection& item : items) {
            EXPECT_EQ(displayedAttributes(project, item).powerUp, &item == &chosen);
            if (&item != &chosen)
                setPowerUpItem(project, item, false);  // another's box changes nothing
        }
    }
    EXPECT_TRUE(project.PowerUpRecord.groupName.is(u""));  // no list left from an earlier track
    setPowerUpItem(project, TriggerSelection{}, true);
    EXPECT_EQ(powerUpItem(project).words, "At power-up: Welcome");
    setPowerUpItem(project, items[5], false);
    EXPECT_EQ(powerUpItem(project).words, "At power-up: nothing");
    EXPECT_FALSE(project.unsavedChanges);
}

TEST(PowerUpItem, ThatIsGoneIsSaidAndCleared) {
    const struct {
        QString left, right;
        std::function<void(Project&)> edit;
        const char* words;
    } cases[] = {
        {"Rock", "Song A", [](Project& p) { p.lstMuList.removeOne("Rock"); },
         "At power-up: Rock / Song A (the list is gone)"},
        {"Rock", "Song A",
         [](Project& p) { p.lstMuTrack[slotOfMusicList(p, "Rock")].removeOne("Song A"); },
         "At power-up: Rock / Song A (the track is gone)"},
        {"Pop", "<Play Full List>",
         [](Project& p) { p.lstMuTrack[slotOfMusicList(p, "Pop")].clear(); },
         "At power-up: Pop / <Play Full List> (the list has no tracks)"},
        {"<Continuous Mix>", "", [](Project& p) { p.lstMuList.clear(); },
         "At power-up: <Continuous Mix> (there is no music list)"},
        {"", "Welcome", [](Project& p) { p.lstSpTitles.clear(); },
         "At power-up: Welcome (the title is gone)"},
    };
    for (const auto& [left, right, edit, words] : cases) {
        Project project = tour();
        const auto selection =
            left.isEmpty() ? selectTitle(project, right) : selectTrack(project, left, right);
        setPowerUpItem(project, selection, true);
        EXPECT_FALSE(powerUpItem(project).isGone) << words;
        edit(project);
        EXPECT_EQ(powerUpItem(project).words, words);
        EXPECT_TRUE(powerUpItem(project).isGone) << words;
        clearPowerUpItem(project);
        EXPECT_FALSE(hasPowerUpItem(project));
    }
}

TEST(DiscreteTriggers, SlotsKeepWhatTheFormatKnows) {
    Project project = crossNamedProject();
    const struct {
        TriggerSelection selection;
        const char *path, *group, *item;
    } cases[] = {
        {selectTrack(project, "Rock", "Song B"), "music", "Rock", "Song B"},
        {selectTitle(project, "Welcome"), "speech", "Rock", "Welcome"},  // the old group stays
        {selectTrack(project, "Pop", "<Play Full List>"), "music", "Pop", "<Play Full List>"},
        {selectTrack(project, "<Continuous Mix>"), "music", "<Continuous Mix>", ""},
    };
    reset(project);  // kind "empty"
    const TrackRecord& slot = project.TriggerTable[2];
    for (const auto& [selection, path, group, item] : cases) {
        assignTrigger(project, selection, 2);
        TrackRecord expected = makeRecord("dtrig", item, group, path);
        setTypeTag(expected, "2");
        EXPECT_EQ(slot, expected);
    }
    clearTrigger(project, 2);
    EXPECT_EQ(slot.sourcePath.text(), "empty");
    EXPECT_EQ(slot.groupName.text(), "<Continuous Mix>");
    const TrackRecord before = slot;
    assignTrigger(project, TriggerSelection{}, 2);
    EXPECT_EQ(slot, before);
    project.suppressTriggerEvents = true;
    assignTrigger(project, cases[0].selection, 2);
    EXPECT_EQ(slot, before);
}

// Whatever happened to its item, a trigger can be freed: at its item, where View leads, or in its
// own row.
TEST(DiscreteTriggers, NoTriggerIsEverStuck) {
    std::mt19937 random(5);
    const auto coin = [&] { return random() % 2 == 0; };
    int viewed = 0, gone = 0;
    for (int round = 0; round < 300; ++round) {
        Project project = randomProject(random, 60);
        if (coin())
            project.lstMuList.removeFirst();
        if (coin())
            project.lstSpTitles = project.lstSpTitles.mid(1);
        if (coin())
            project.lstMuTrack.first().clear();
        if (round % 10 == 0)
            project.lstMuList.clear();
        for (int slot = 0; slot < TriggerRows; ++slot) {
            if (!isAssigned(project.TriggerTable[size_t(slot)]))
                continue;
            TriggerSelection selection;
            TriggerRow row = triggerRows(project, selection)[size_t(slot)];
            const TrackRecord& trigger = project.TriggerTable[size_t(slot)];
            const bool isGone =
                itemState(project, trigger, trigger.sourcePath) != ItemState::Present;
            EXPECT_EQ(row.isEnabled, isGone) << row.words.toStdString();
            if (!isGone) {
                selection = selectionOf(*viewTrigger(project, slot));
                row = triggerRows(project, selection)[size_t(slot)];
            }
            ASSERT_EQ(shortForm(row), "CE") << row.words.toStdString();
            ++(isGone ? gone : viewed);
            EXPECT_TRUE(isMarkedBy(project, [&] { clearTrigger(project, slot); }));
            row = triggerRows(project, selection)[size_t(slot)];
            EXPECT_EQ(shortForm(row), selection.item == SelectedItem::None ? "-" : "E");
            EXPECT_FALSE(viewTrigger(project, slot));
        }
    }
    EXPECT_GT(viewed, 100);
    EXPECT_GT(gone, 30);
}

}  // namespace tessaly
