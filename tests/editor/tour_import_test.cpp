#include "editor/tour_import.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

QString itemOf(const TrackRecord& record) {
    return record.groupName.text() + '/' + record.itemName.text() + " <- " +
           lastNameOf(record.sourcePath.text());
}

Project import(const QString& folder, bool titlesFromTags = false, QStringList* notes = nullptr) {
    Project project;
    const ImportReport report =
        importFolder(LocalFileSystem(), LocalMp3Tags(), folder, titlesFromTags, project);
    if (notes)
        *notes = report.notes;
    const auto count = [&](bool (*is)(const TrackRecord&)) {
        return int(std::count_if(project.TrackTable.begin(), project.TrackTable.end(), is));
    };
    EXPECT_EQ(report.tracks, count(isMusic));
    EXPECT_EQ(report.speechFiles, count(isSpeech));
    return project;
}

}  // namespace

TEST(FolderImport, NamesAreOrderedAsPeopleDo) {
    QStringList names = {"track 10", "Track 2", "a1b10", "a1b9", "Ä",  "track 1", "B1",
                         "7",        "007",     "b",     "a",    "10", "9"};
    std::sort(names.begin(), names.end(), comesBefore);
    EXPECT_EQ(names, (QStringList{"007", "7", "9", "10", "a", "a1b9", "a1b10", "b", "B1", "track 1",
                                  "Track 2", "track 10", "Ä"}));
    for (const QString& name : names)
        EXPECT_FALSE(comesBefore(name, name));
}

TEST(FolderImport, TheSampleTour) {
    QStringList notes;
    const Project project = import(TESSALY_SAMPLES "/tour", false, &notes);
    EXPECT_EQ(project.lstLangs, (QStringList{"English", "French", "German"}));
    EXPECT_EQ(project.lstMuList, (QStringList{"Evening Lights", "Harbour Morning"}));
    EXPECT_EQ(tracksOfMusicList(project, "Evening Lights").last(), "10 Last Ferry");
    EXPECT_TRUE(project.lstSpTitles.contains("Café Römer"));
    EXPECT_TRUE(project.lstSpTitles.contains("The Lighthouse K"));
    EXPECT_EQ(notes.size(), 1);
    EXPECT_EQ(tracksOfMusicList(import(TESSALY_SAMPLES "/tour", true), "Harbour Morning"),
              (QStringList{"Morning Bell", "Drying Nets", "Thin Fog", "Market Boats"}));
}

TEST(FolderImport, NamesAreCutAndMadeUnique) {
    const ScratchFolder scratch;
    for (const char* name :
         {"Speech/English/A very long title one.mp3", "Speech/English/A very long title two.mp3",
          "Speech/Castellano/A very long title two.MP3", "Speech/Castellano 2/b.mp3",
          "Music/Rock/same name of track 1.mp3", "Music/Rock/same name of track 2.mp3",
          "Music/Rock/cover.jpg", "music.txt", "Music/loose.mp3", "Music/Nothing/read.me",
          "beside.mp3", "Tour 2/c.mp3", "Speech/English/\u00E9.mp3", "Speech/English/e\u0301.mp3"})
        scratch.write(name, "x");
    QStringList notes;
    const Project project = import(scratch.path(), false, &notes);
    EXPECT_EQ(project.lstLangs, (QStringList{"Castella", "01 Castella", "English"}));
    EXPECT_EQ(project.lstSpTitles,
              (QStringList{"A very long titl", "01 A very long titl", "b", "\u00E9"}));
    QStringList items;
    for (const TrackRecord& record : project.TrackTable.mid(1))
        items.append(itemOf(record));
    EXPECT_EQ(items, (QStringList{"Castella/01 A very long titl <- A very long title two.MP3",
                                  "01 Castella/b <- b.mp3",
                                  "English/A very long titl <- A very long title one.mp3",
                                  "English/01 A very long titl <- A very long title two.mp3",
                                  "English/\u00E9 <- e\u0301.mp3",
                                  "Rock/same name of tra <- same name of track 1.mp3",
                                  "Rock/01 same name of tra <- same name of track 2.mp3"}));
    const QString all = notes.join('\n');
    for (const char* passedOver :
         {"cover.jpg", "loose.mp3", "read.me", "holds no MP3", "beside.mp3", "Tour 2", "music.txt",
          "\u00E9.mp3 is a second file", "The language \"Castellano\" became \"Castella\""})
        EXPECT_TRUE(all.contains(passedOver)) << passedOver;
}

TEST(FolderImport, AFolderWithoutMusicOrSpeechIsRefused) {
    const ScratchFolder scratch;
    EXPECT_THROW(import(scratch.path()), TessalyError);
    scratch.write("Music/Rock/a.mp3", "x");
    EXPECT_EQ(import(scratch.path()).TrackTable.size(), 2);
    // Where case counts, there may be two folders of one meaning.
    if (QDir(scratch.path()).mkdir("music")) {
        scratch.write("music/Rock/b.mp3", "x");
        EXPECT_THROW(import(scratch.path()), TessalyError);
    }
}

}  // namespace tessaly
