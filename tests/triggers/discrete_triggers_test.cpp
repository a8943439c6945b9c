#include "triggers/discrete_triggers.h"

#include <functional>

#include "image/config_image.h"
#include "image/config_image_reader.h"
#include "model/card_file.h"
#include "model/music_lists.h"
#include "support/projects.h"
#include "support/scratch_folder.h"
#include "support/trigger_clicks.h"
#include "triggers/playback_attributes.h"

namespace tessaly {

using namespace test;

namespace {

// A row as letters: C checked, E box and label enabled, V View enabled, ! item gone; "-" if none.
QString shortForm(const TriggerRow& row) {
    EXPECT_EQ(row.buttTrigEnabled, row.lblTrigEnabled);
    const QString letters = QString(row.buttTrigChecked ? "C" : "") +
                            (row.buttTrigEnabled ? "E" : "") +
                            (row.buttViewTrigEnabled ? "V" : "") + (row.isGone ? "!" : "");
    return letters.isEmpty() ? "-" : letters;
}

QStringList shortForms(const Project& project, const TriggerSelection& selection) {
    QStringList forms;
    for (const TriggerRow& row : triggerRows(project, selection))
        forms.append(shortForm(row));
    return forms;
}

}  // namespace

TEST(DiscreteTriggers, RowsFollowTheSelection) {
    using enum TriggerMode;
    Project project = crossNamedProject();
    assignTrigger(project, selectTrack(project, "Rock", "Song A"), 0);
    assignTrigger(project, selectTitle(project, "Song A"), 1);
    const struct {
        const char* name;
        TriggerSelection selection;
        QStringList rows;
    } cases[] = {
        {"nothing assignable", selectTrack(project, "Rock"), {"CV", "CV", "-"}},
        {"held by trigger 1", selectTrack(project, "Rock", "Song A"), {"CE", "CV", "E"}},
        {"same track of another list", selectTrack(project, "Pop", "Song A"), {"CV", "CV", "E"}},
        {"title called like the track", selectTitle(project, "Song A"), {"CV", "CE", "E"}},
        {"another title", selectTitle(project, "Welcome"), {"CV", "CV", "E"}},
        {"the whole list", selectTrack(project, "Rock", "<Play Full List>"), {"CV", "CV", "E"}},
        {"continuous mix", selectTrack(project, "<Continuous Mix>"), {"CV", "CV", "E"}},
    };
    for (const auto& [name, selection, rows] : cases)
        EXPECT_EQ(shortForms(project, selection), rows) << name;
    const auto rows = triggerRows(project, cases[0].selection);
    EXPECT_EQ(rows[0].words, "Trigger 1: Rock / Song A");
    EXPECT_EQ(rows[1].words, "Trigger 2: Song A");
    EXPECT_EQ(rows[2].words, "Trigger 3: free");
    EXPECT_EQ(rows[2].lblTrig, "Trigger 3");

    reset(project);  // the names stay in the slots, the triggers are free
    EXPECT_EQ(shortForms(project, select(project, Music)), QStringList({"-", "-", "-"}));
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
        EXPECT_TRUE(slot.kind.is(u"dtrig") && isAssigned(slot));
        EXPECT_EQ(slot.sourcePath.text(), path);
        EXPECT_EQ(slot.groupName.text(), group);
        EXPECT_EQ(slot.itemName, Variant(item)) << item;
        EXPECT_EQ(typeTagText(slot), "2   ");
    }
    clearTrigger(project, 2);
    EXPECT_EQ(slot.sourcePath.text(), "empty");
    EXPECT_EQ(slot.groupName.text(), "<Continuous Mix>");
    const TrackRecord before = slot;
    assignTrigger(project, TriggerSelection{}, 2);
    EXPECT_EQ(slot, before);
}

TEST(DiscreteTriggers, ViewLeadsToTheItem) {
    Project project = crossNamedProject();
    const TriggerSelection items[] = {selectTrack(project, "Pop", "Song A"),
                                      selectTitle(project, "Welcome"),
                                      selectTrack(project, "<Continuous Mix>")};
    for (int slot = 0; slot < TriggerRows; ++slot)
        assignTrigger(project, items[slot], slot);
    for (int slot = 0; slot < TriggerRows; ++slot) {
        const auto selector = viewTrigger(project, slot);
        ASSERT_TRUE(selector);
        EXPECT_EQ(selectionOf(*selector), items[slot]);
    }
    clearTrigger(project, 1);
    EXPECT_FALSE(viewTrigger(project, 1));
    project.lstMuTrack[slotOfMusicList(project, "Pop")] = {"Song C"};
    const TriggerSelector asFar = *viewTrigger(project, 0);
    EXPECT_EQ(asFar.lstTrigLeft[asFar.leftRow], "Pop");
    EXPECT_EQ(asFar.rightRow, -1);
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
            EXPECT_NE(row.isGone, row.buttViewTrigEnabled) << row.words.toStdString();
            if (row.buttViewTrigEnabled) {
                selection = selectionOf(*viewTrigger(project, slot));
                row = triggerRows(project, selection)[size_t(slot)];
            }
            ASSERT_EQ(shortForm(row), row.isGone ? "CE!" : "CE") << row.words.toStdString();
            ++(row.isGone ? gone : viewed);
            clearTrigger(project, slot);
            row = triggerRows(project, selection)[size_t(slot)];
            EXPECT_EQ(shortForm(row), selection.item == SelectedItem::None ? "-" : "E");
        }
    }
    EXPECT_GT(viewed, 100);
    EXPECT_GT(gone, 30);
}

TEST(DiscreteTriggers, EachHandlerMarksTheProjectAsItDoes) {
    Project project = crossNamedProject();
    const auto track = selectTrack(project, "Rock", "Song A");
    const struct {
        const char* handler;
        std::function<void(Project&)> run;
        bool marks;
    } cases[] = {
        {"volume", [&](Project& p) { setLoudVolume(p, track, true); }, true},
        {"volume, nothing selected", [](Project& p) { setLoudVolume(p, {}, false); }, true},
        {"interrupt", [&](Project& p) { setCancelOnInterrupt(p, track, true); }, true},
        {"endless loop", [&](Project& p) { setEndlessLoop(p, track, true); }, false},
        {"power-up", [&](Project& p) { setPowerUpItem(p, track, true); }, false},
        {"power-up cleared", [&](Project& p) { setPowerUpItem(p, track, false); }, false},
        {"power-up of a gone item", [](Project& p) { clearPowerUpItem(p); }, true},
        {"assign", [&](Project& p) { assignTrigger(p, track, 0); }, true},
        {"clear", [](Project& p) { clearTrigger(p, 0); }, true},
        {"view", [](Project& p) { viewTrigger(p, 0); }, true},
        {"selecting", [](Project& p) { selectTitle(p, "Welcome"); }, false},
    };
    for (const auto& [handler, run, marks] : cases) {
        project.unsavedChanges = false;
        run(project);
        EXPECT_EQ(project.unsavedChanges, marks) << handler;
    }
    Project quiet = crossNamedProject();
    quiet.suppressTriggerEvents = true;
    const Project before = quiet;
    assignTrigger(quiet, track, 0);
    clearTrigger(quiet, 0);
    EXPECT_EQ(quiet, before);
}

TEST(DiscreteTriggers, ASessionArrivesInTheImage) {
    Project project = crossNamedProject();
    setLoudVolume(project, selectTrack(project, "Pop", "Song A"), true);
    setEndlessLoop(project, selectTrack(project, "Rock", "Song B"), true);
    setCancelOnInterrupt(project, selectTitle(project, "Welcome"), true);
    setPowerUpItem(project, selectTitle(project, "Welcome"), true);
    setPowerUpItem(project, selectTrack(project, "Pop", "<Play Full List>"), true);
    assignTrigger(project, selectTitle(project, "Song A"), 0);
    assignTrigger(project, selectTrack(project, "<Continuous Mix>"), 1);
    assignTrigger(project, selectTrack(project, "Rock", "Song A"), 2);
    clearTrigger(project, 0);
    assignTrigger(project, selectTrack(project, "Rock", "Song B"), 0);

    Project read;
    reset(read);
    applyRecords(parseRecords(encodeProject(project)).records, read);
    for (Project* each : {&project, &read}) {
        const DecodedImage image = decodeConfigImage(BuildConfigImage(*each, 1));
        using Kind = DecodedReference::Kind;
        EXPECT_EQ(image.powerUp,
                  (DecodedReference{.value = 1025, .kind = Kind::WholeList, .list = 2}));
        EXPECT_EQ(image.triggers[0],
                  (DecodedReference{.value = 515, .kind = Kind::Track, .list = 1, .track = 1}));
        EXPECT_EQ(image.triggers[1], (DecodedReference{.value = 0, .kind = Kind::ContinuousMix}));
        EXPECT_EQ(image.triggers[2],
                  (DecodedReference{.value = 514, .kind = Kind::Track, .list = 1, .track = 0}));
        EXPECT_EQ(image.triggers[3], DecodedReference{});
        const auto flagsOf = [](const DecodedWord& word) { return word.value & 0xF000; };
        EXPECT_EQ(flagsOf(image.lists[0].tracks[0].word), 0x0000);
        EXPECT_EQ(flagsOf(image.lists[0].tracks[1].word), 0x1000);
        EXPECT_EQ(flagsOf(image.lists[1].tracks[0].word), 0x8000);
        EXPECT_EQ(flagsOf(image.speech[0][0]), 0x6000);
        EXPECT_EQ(flagsOf(image.speech[1][0]), 0x6000);
        EXPECT_EQ(flagsOf(image.speech[0][1]), 0x2000);
    }
}

}  // namespace tessaly
