// SPDX-License-Identifier: GPL-3.0-or-later
// What can be selected, how it plays, and what plays it: the selector, the attributes, the power-up
// item and the discrete triggers. The sessions at the window show the rest.
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

}  // namespace

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
