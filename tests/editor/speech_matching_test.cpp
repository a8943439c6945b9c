// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_matching.h"

#include <algorithm>
#include <random>

#include "editor/speech_editor.h"
#include "platform/local_file_system.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

Project projectOf(const QStringList& titles, const QStringList& languages) {
    Project project;
    project.lstSpTitles = titles;
    project.lstLangs = languages;
    return project;
}

// Whatever a plan does, done by hand, one line after the other.
Project doneByHand(Project project, const SpeechPlan& plan) {
    QList<SpeechPlanLine> lines = plan.lines, byName;
    lines.removeIf([](const SpeechPlanLine& line) {
        return !line.taken || line.obstacle != SpeechPlanLine::Obstacle::None;
    });
    for (const SpeechPlanLine& line : lines)
        if (line.isNewLanguage && !project.lstLangs.contains(line.language))
            addLanguage(project, line.language);
    const Project after = [&] {
        Project applied = project;
        applySpeechPlan(applied, plan);
        return applied;
    }();
    project.lstSpTitles = after.lstSpTitles;  // their order is looked at elsewhere
    for (const SpeechPlanLine& line : lines)
        chooseSpeechFile(project,
                         {int(project.lstSpTitles.indexOf(line.title)),
                          int(project.lstLangs.indexOf(line.language))},
                         line.path);
    return project;
}

}  // namespace

TEST(SpeechMatching, FilesFindTheirTitlesAndLanguages) {
    const struct {
        QStringList titles, languages, files;  // the project's, and what is there
        QStringList given;
        QStringList wanted;  // language: title, for each line
        std::optional<QString> language = {}, title = {};
    } cases[] = {
        // A language is called by its name, its code or its letters, in any language.
        {{"Quay"},
         {"German", "English", "Spanish", "Castella", "Norsk"},
         {"x/Deutsch/quay.mp3", "x/en/Quay.mp3", "x/Español/QUAY.mp3", "x/Castellano/1 quay.mp3",
          "x/G/quay.mp3", "x/Engli/quay.mp3", "x/Norwegian/quay.mp3"},
         {"x"},
         {"Castella: Quay", "German: Quay", "English: Quay", "Engli: Quay", "Spanish: Quay",
          "G: Quay", "Norsk: Quay"}},
        // Loose files tell it by their end; a code must be set off, and the rest is the folder's.
        {{"Quay", "Lo que"},
         {"German", "Spanish"},
         {"Box/Lo que es.mp3", "Box/Quay_de.mp3", "Box/B-GER.mp3", "Box/C (es).mp3",
          "Box/D Spanish.mp3", "Box/E [Deutsch].mp3", "Box/F_fr.mp3"},
         {"Box"},
         {"German: B", "Spanish: C", "Spanish: D", "German: E", "Box: F_fr", "Box: Lo que es",
          "German: Quay"}},
        // Without a language in the project, all names together tell.
        {{},
         {},
         {"Box/A_de.mp3", "Box/A_fr.mp3", "Box/B_fr.mp3"},
         {"Box"},
         {"German: A", "French: A", "French: B"}},
        {{},
         {},
         {"Box/How_it_is.mp3", "Box/A_fr.mp3", "Box/B.mp3"},
         {"Box"},
         {"Box: A_fr", "Box: B", "Box: How_it_is"}},
        {{},
         {},
         {"Box/How_it_is.mp3", "Box/What_is.mp3"},
         {"Box"},
         {"Box: How_it_is", "Box: What_is"}},
        // Files beside the folders of languages: their own folder is their language.
        {{}, {}, {"Box/Tower.mp3", "Box/German/Quay.mp3"}, {"Box"}, {"German: Quay", "Box: Tower"}},
        // Numbers in front count where nothing else tells two files apart.
        {{"Stairs"},
         {"en"},
         {"en/1 Stairs.mp3", "en/02_stairs_en.mp3", "en/3 Quay.mp3"},
         {"en"},
         {"en: 1 Stairs", "en: 02_stairs", "en: Quay"}},
        {{"01 Stairs", "02 Stairs", "Quay"},
         {"en"},
         {"en/1-stairs.mp3", "en/2-stairs.mp3", "en/7 Quay.mp3"},
         {"en"},
         {"en: 01 Stairs", "en: 02 Stairs", "en: Quay"}},
        {{"05 Stairs"},
         {"en"},
         {"en/stairs.mp3", "en/1848 Stairs.mp3", "en/2.5 Miles.mp3"},
         {"en"},
         {"en: 2.5 Miles", "en: 1848 Stairs", "en: 05 Stairs"}},
        {{"Quay", "quay!"},
         {"en"},
         {"en/A-B.mp3", "en/A_B.mp3", "en/QUAY.mp3"},
         {"en"},
         {"en: A-B", "en: A_B", "en: Quay"}},
        // Cut titles are found again, if there are as many of both.
        {{"A very long titl", "01 A very long titl"},
         {"en"},
         {"en/A very long title one.mp3", "en/A very long title two.mp3"},
         {"en"},
         {"en: A very long titl", "en: 01 A very long titl"}},
        {{"A very long titl"},
         {"en"},
         {"en/A very long title one.mp3", "en/A very long title two.mp3"},
         {"en"},
         {"en: 01 A very long titl", "en: 02 A very long titl"}},
        // Dropped on a language, or on a title.
        {{"Quay"},
         {"German"},
         {"x/Quay.mp3", "x/More.mp3"},
         {"x/More.mp3", "x/Quay.mp3"},
         {"German: More", "German: Quay"},
         "German"},
        {{"Quay"},
         {"German", "French"},
         {"x/Hafen_de.mp3", "x/French.mp3"},
         {"x/Hafen_de.mp3", "x/French.mp3"},
         {"French: Quay", "German: Quay"},
         {},
         "Quay"},
        // Composed or not, an é is an é; a language folder has all that is below it.
        {{"Caf\u00e9"},
         {"en"},
         {"English/Hall 1/Cafe\u0301.mp3", "English/Hall 2/x.mp3"},
         {"English"},
         {"en: Caf\u00e9", "en: x"}},
    };
    for (const auto& [titles, languages, names, given, wanted, language, title] : cases) {
        const ScratchFolder scratch;
        for (const QString& name : names)
            scratch.write(name, "x");
        QStringList paths, found;
        for (const QString& path : given)
            paths.append(scratch.path(path));
        const Project project = projectOf(titles, languages);
        const SpeechPlan plan = planSpeech(project, LocalFileSystem(), paths, language, title);
        for (const SpeechPlanLine& line : plan.lines) {
            found.append(line.language + ": " + line.title);
            EXPECT_EQ(line.isNewTitle, !titles.contains(line.title));
            EXPECT_EQ(line.isNewLanguage, !languages.contains(line.language));
            EXPECT_EQ(line.obstacle, SpeechPlanLine::Obstacle::None);
        }
        EXPECT_EQ(found, wanted);
    }
}

// Names of a project, written as people write them, lead back to the project.
TEST(SpeechMatching, DressedUpNamesAreUndressed) {
    std::mt19937 random(3);
    const auto draw = [&](int below) { return int(random() % unsigned(below)); };
    const QStringList languages = {"German", "English", "Français", "it"};
    const QStringList folders = {"Deutsch", "1 English", "fr", "Italiano"};
    const QStringList codes = {"de", "ENG", "Fre", "it"};
    const QStringList words = {"Old", "Quay", "of", "the", "Storm", "Café", "7", "Rope's", "End"};
    for (int run = 0; run < 60; ++run) {
        const ScratchFolder scratch;
        QStringList titles;
        for (int i = 0; i < 12; ++i) {
            QString title = words[draw(6)];
            for (int more = draw(3); more > 0; --more)
                title += ' ' + words[draw(9)];
            if (title.size() <= 16 && !titles.contains(title, Qt::CaseInsensitive))
                titles.append(title);
        }
        const bool isFlat = draw(3) == 0;
        QHash<QString, std::pair<int, QString>> wanted;  // by path
        for (int language = 0; language < 4; ++language)
            for (const QString& title : titles) {
                if (draw(4) == 0)
                    continue;
                QString name = draw(2) == 0 ? title.toUpper() : title;
                if (draw(2) == 0)
                    name.replace(' ', QStringList{"_", "  ", " - "}[draw(3)]);
                if (isFlat || draw(2) == 0)
                    name += QStringList{"_%1", "-%1", " (%1)", ".%1"}[draw(4)].arg(codes[language]);
                const QString number = QString::number(1 + titles.indexOf(title));
                name =
                    QStringList{"", "%1 ", "0%1_", "%1-", "%1. "}[draw(5)].replace("%1", number) +
                    name;
                const QString folder = isFlat ? "Box" : "Box/" + folders[language];
                wanted.insert(scratch.write(folder + '/' + name + ".mp3", "x"), {language, title});
            }
        Project project = projectOf(titles, languages);
        addSpeech(project, titles[0], languages[0], "other.mp3");
        SpeechPlan plan = planSpeech(project, LocalFileSystem(), {scratch.path("Box")});
        EXPECT_EQ(plan.lines.size(), wanted.size());
        for (const SpeechPlanLine& line : plan.lines) {
            const auto& [language, title] = wanted[line.path];
            EXPECT_EQ(line.language, languages[language]) << line.path.toStdString();
            EXPECT_EQ(line.title, title) << line.path.toStdString();
            EXPECT_EQ(line.replaces, language == 0 && title == titles[0]);
        }
        for (SpeechPlanLine& line : plan.lines)
            line.taken = draw(5) > 0;
        judgeSpeechPlan(project, plan);
        const Project byHand = doneByHand(project, plan);
        const AddSummary summary = applySpeechPlan(project, plan);
        EXPECT_TRUE(project == byHand);
        EXPECT_EQ(inconsistencies(project), QStringList());
        // Once more there is nothing to do but what was left.
        const SpeechPlan again = planSpeech(project, LocalFileSystem(), {scratch.path("Box")});
        EXPECT_EQ(applySpeechPlan(project, again).added, wanted.size() - summary.added);
        project.unsavedChanges = false;
        const Project before = project;
        EXPECT_EQ(applySpeechPlan(project, again).leftOut[size_t(LeftOut::Already)], wanted.size());
        EXPECT_TRUE(project == before);
    }
}

TEST(SpeechMatching, WhatCannotBeTakenIsSaid) {
    const ScratchFolder scratch;
    for (int i = 0; i < 18; ++i)
        for (const char* name : {"10 Quay.mp3", "9 Rope, long and longer.mp3"})
            scratch.write(QStringLiteral("Sprache %1/").arg(i) + name, "x");
    scratch.write("Sprache 0/read.me", "x");
    Project project = projectOf({"Tower"}, {"German"});
    SpeechPlan plan = planSpeech(project, LocalFileSystem(), {scratch.path(), scratch.path("-")});
    ASSERT_EQ(plan.lines.size(), 36);
    plan.lines[0].title = plan.lines[1].title;
    plan.lines[2].title.clear();
    plan.lines[3].language = "German";
    plan.lines[4].language = "Mine";
    const AddSummary summary = applySpeechPlan(project, plan);
    EXPECT_EQ(summary.text(),
              "28 added, 2 new titles, 15 new languages, 1 name cut to 16 characters, 14 languages "
              "cut to 8 characters, 13 names numbered, 9 left out: 1 no MP3, 1 not found, 1 second "
              "for one title and language, 6 no room for a 17th language");
    EXPECT_EQ(project.lstSpTitles, (QStringList{"Tower", "Quay", "Rope, long and l"}));
    EXPECT_EQ(project.lstLangs.first(4),
              (QStringList{"German", "Sprache ", "Mine", "02 Sprache "}));
    EXPECT_EQ(project.lstLangs.size(), 16);
    EXPECT_EQ(summary.lines.last(),
              "The title \"Rope, long and longer\" became \"Rope, long and l\".");
    EXPECT_TRUE(project.unsavedChanges);
}

}  // namespace tessaly
