// The pages of music and speech through the real window.
#include <QClipboard>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>

#include "app/limited_line_edit.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

/// A window with an empty project, and hands to work it with.
struct EditorBench : WindowBench {
    EditorBench() { start(); }
};

}  // namespace

TEST(MusicPage, AWholeSessionEndsInTheExpectedFile) {
    EditorBench bench;
    bench.showPage("Music Files");
    const QString one = bench.scratch.path("src/first.mp3");
    const QString two = bench.scratch.path("src/second.MP3");
    bench.add("txtNewMuList", "Rock", "buttAddMuList");
    bench.add("txtNewMuList", "Rock", "buttAddMuList");
    EXPECT_EQ(bench.items("lstMuList"), (QStringList{"Rock", "01 Rock"}));
    EXPECT_EQ(bench.selected("lstMuList"), "01 Rock");
    EXPECT_EQ(bench.field("txtNewMuList"), "");
    EXPECT_FALSE(bench.isEnabled("buttAddMuList"));

    bench.select("lstMuList", "Rock");
    for (const char* track : {"b", "a", "a", "no file"})
        bench.add("txtNewMuTrack", track, "buttAddMuTrack");
    EXPECT_EQ(bench.items("lstMuTrack"), (QStringList{"b", "a", "01 a", "no file"}));
    EXPECT_EQ(bench.selected("lstMuTrack"), "(none)");
    bench.select("lstMuTrack", "b");
    bench.browse("buttAddMuFile", one);
    EXPECT_EQ(bench.field("txtMuFile"), one);
    bench.select("lstMuTrack", "01 a");
    EXPECT_EQ(bench.field("txtMuFile"), "");
    bench.browse("buttAddMuFile", one);
    bench.browse("buttAddMuFile", two);  // replaces it
    bench.browse("buttAddMuFile", "");   // cancelled
    EXPECT_EQ(bench.field("txtMuFile"), two);
    EXPECT_TRUE(bench.status().contains("Total number of Tracks: 2 "));

    bench.answer("buttEditMuTrack", "renamed");
    EXPECT_EQ(bench.prompts.offered, (QStringList{"Enter new text for Music Track:", "01 a"}));
    EXPECT_EQ(bench.selected("lstMuTrack"), "renamed");
    bench.click("imgMuTrackUp");
    bench.click("imgMuTrackUp");  // its record is the first of all and has no partner: it stays
    EXPECT_EQ(bench.items("lstMuTrack"), (QStringList{"b", "renamed", "a", "no file"}));
    bench.answer("buttEditMuList", "Pop");
    EXPECT_EQ(bench.prompts.offered, (QStringList{"Enter new name of Music List:", "Rock"}));
    EXPECT_EQ(bench.selected("lstMuList"), "(none)");
    EXPECT_EQ(bench.items("lstMuList"), (QStringList{"Pop", "01 Rock"}));
    bench.select("lstMuList", "01 Rock");
    EXPECT_TRUE(bench.items("lstMuTrack").isEmpty());
    bench.click("buttDelMuList");
    EXPECT_EQ(bench.selected("lstMuList"), "Pop");
    EXPECT_EQ(bench.selected("lstMuTrack"), "renamed") << "every list keeps its own selection";

    bench.prompts.paths = {bench.scratch.path("made.crd2")};
    bench.choose("mnuFileSaveAs");
    EXPECT_TRUE(bench.prompts.takeTexts().value(0).contains("Pop / no file"));
    Project expected;
    addTrack(expected, "Pop", "b", one);
    addTrack(expected, "Pop", "renamed", two);
    EXPECT_EQ(bench.scratch.read("made.crd2"), encodeProject(expected));
    bench.open(bench.scratch.path("made.crd2"));
    EXPECT_EQ(bench.items("lstMuTrack"), (QStringList{"b", "renamed"}));
    EXPECT_FALSE(bench.window->isWindowModified());
}

TEST(MusicPage, ButtonsFollowTheSelection) {
    EditorBench bench;
    bench.showPage("Music Files");
    const auto enabled = [&] {
        QStringList names;
        for (const char* name :
             {"buttAddMuList", "buttEditMuList", "buttDelMuList", "buttAddMuTrack",
              "buttEditMuTrack", "buttDelMuTrack", "buttAddMuFile"})
            if (bench.isEnabled(name))
                names.append(QString(name).mid(4));
        return names.join(' ');
    };
    EXPECT_EQ(enabled(), "");
    bench.type("txtNewMuList", "Rock");
    EXPECT_EQ(enabled(), "AddMuList");
    EXPECT_TRUE(bench.find<QPushButton>("buttAddMuList")->isDefault());
    QTest::keyClick(bench.find<QLineEdit>("txtNewMuList"), Qt::Key_Return);  // the default button
    EXPECT_EQ(bench.items("lstMuList"), QStringList("Rock"));
    EXPECT_EQ(enabled(), "EditMuList DelMuList");
    bench.type("txtNewMuTrack", "x");
    bench.find<QLineEdit>("txtNewMuTrack")->clear();
    EXPECT_EQ(enabled(), "EditMuList DelMuList AddMuTrack") << "an empty name can be added";
    bench.click("buttAddMuTrack");
    EXPECT_EQ(bench.items("lstMuTrack"), QStringList(""));
    EXPECT_EQ(enabled(), "EditMuList DelMuList");
    bench.select("lstMuTrack", "");
    EXPECT_EQ(enabled(), "EditMuList DelMuList EditMuTrack DelMuTrack AddMuFile");
    bench.type("txtNewMuList", "y");  // takes the list's selection away
    EXPECT_EQ(bench.selected("lstMuList"), "(none)");
    EXPECT_EQ(enabled(), "AddMuList EditMuTrack DelMuTrack") << "no file without its list";
    const Project before = bench.current;
    bench.click("buttDelMuTrack");
    EXPECT_EQ(bench.current, before) << "without a list there is no track to delete";
    bench.find<QLineEdit>("txtNewMuList")->clear();
    bench.select("lstMuList", "Rock");
    bench.click("buttDelMuTrack");
    EXPECT_EQ(enabled(), "EditMuList DelMuList");

    bench.current.unsavedChanges = false;
    bench.add("txtNewMuTrack", "p", "buttAddMuTrack");
    bench.add("txtNewMuTrack", "q", "buttAddMuTrack");
    bench.current.unsavedChanges = false;
    bench.select("lstMuTrack", "p");
    QTest::keyClick(bench.find<QListWidget>("lstMuTrack"), Qt::Key_Down, Qt::AltModifier);
    bench.click("imgMuTrackDn");
    EXPECT_FALSE(bench.current.unsavedChanges) << "moves and selections are no edits";

    bench.answer("buttEditMuList", "Pop");  // left unselected
    EXPECT_FALSE(bench.isEnabled("buttEditMuList") || bench.isEnabled("buttDelMuList") ||
                 bench.isEnabled("buttAddMuFile"));
    bench.select("lstMuList", "Pop");
    bench.click("buttDelMuList");  // the last one
    EXPECT_FALSE(bench.isEnabled("buttEditMuList") || bench.isEnabled("buttDelMuList"));
}

TEST(MusicPage, ShowsTheListOnViewAndNothingStale) {
    EditorBench bench;
    bench.open(bench.tourFile);
    bench.showPage("Music Files");
    bench.add("txtNewMuList", "M", "buttAddMuList");
    bench.add("txtNewMuTrack", "m", "buttAddMuTrack");
    bench.select("lstMuList", "L");
    bench.select("lstMuTrack", "two");
    bench.answer("buttEditMuList", "Renamed");  // left unselected
    bench.showPage("Triggers && Attributes");
    bench.select("lstTrigLeft", "M");
    bench.showPage("Music Files");
    EXPECT_EQ(bench.items("lstMuTrack"), QStringList("m"));
    EXPECT_EQ(bench.selected("lstMuTrack"), "(none)");
    EXPECT_EQ(bench.field("txtMuFile"), "");
    bench.select("lstMuList", "Renamed");
    EXPECT_EQ(bench.selected("lstMuTrack"), "two");
    bench.find<QListWidget>("lstMuTrack")->clearSelection();
    EXPECT_FALSE(bench.isEnabled("buttAddMuFile"));

    bench.prompts.answers = {true};
    bench.choose("mnuFileNew");
    for (const char* button : {"buttEditMuList", "buttDelMuList", "buttAddMuFile"})
        EXPECT_FALSE(bench.isEnabled(button)) << button;
}

TEST(MusicPage, ImportsMakeListsOrNothing) {
    EditorBench bench;
    bench.showPage("Music Files");
    const QString tour = QDir::toNativeSeparators(TESSALY_SAMPLES "/tour/Music/Harbour Morning");
    bench.browse("buttAddMuListDir", tour);
    EXPECT_EQ(bench.prompts.offered, (QStringList{"Select folder containing MP3 files", ""}));
    EXPECT_EQ(bench.selected("lstMuList"), "Harbour Morning");
    EXPECT_EQ(bench.items("lstMuTrack"),
              (QStringList{"Morning Bell", "Drying Nets", "03 Thin Fog", "Market Boats"}));
    EXPECT_EQ(bench.selected("lstMuTrack"), "Market Boats");
    EXPECT_EQ(bench.text("lblMP3tagArtist"), "Tessaly Samples");
    bench.browse("buttAddMuListDir", bench.scratch.makeFolder("nothing"));
    EXPECT_EQ(bench.prompts.offered[1], tour) << "the last folder is offered again";
    EXPECT_EQ(bench.prompts.takeTexts(), QStringList("Folder contains no MP3 files"));
    EXPECT_EQ(bench.items("lstMuList"), QStringList("Harbour Morning"));

    const QString list = bench.scratch.write(
        "Party.m3u", "/music/one.mp3\r\n/music/two.wav\r\n/music/three.mp3\r\n/never.mp3");
    bench.browse("buttAddMuItunesPlaylist", list);
    EXPECT_EQ(bench.items("lstMuTrack"), (QStringList{"one", "three"}));
    EXPECT_EQ(bench.prompts.shown[0].title, "File type not MP3");
    bench.prompts.shown.clear();
    bench.browse("buttAddMuItunesPlaylist", bench.scratch.write("Notes.txt", "no playlist"));
    EXPECT_EQ(bench.prompts.shown[0].icon, Message::Icon::Exclamation);
    EXPECT_EQ(bench.prompts.takeTexts(), QStringList("Invalid playlist format, cannot open"));
    EXPECT_EQ(bench.items("lstMuList"), (QStringList{"Harbour Morning", "Party"}));

    // Cancelled in the middle: nothing is left of the list.
    for (int i = 0; i < 30; ++i)
        bench.scratch.write(QString("many/%1.mp3").arg(i), "x");
    QTimer cancel;
    QObject::connect(&cancel, &QTimer::timeout, [&] {
        if (auto* dialog = bench.window->findChild<QProgressDialog*>())
            dialog->cancel();
    });
    cancel.start(0);
    const auto before = bench.current.TrackTable;
    bench.files.onOperation = [] { QCoreApplication::processEvents(); };
    bench.browse("buttAddMuListDir", bench.scratch.path("many"));
    EXPECT_EQ(bench.items("lstMuList").size(), 2);
    EXPECT_EQ(bench.current.TrackTable, before);
}

TEST(SpeechPage, AWholeSessionEndsInTheExpectedFile) {
    EditorBench bench;
    const QString path = bench.scratch.path("src/hello.mp3");
    for (const char* title : {"Hello", "Bye", "Bye"})
        bench.add("txtNewSpTitle", title, "buttAddSpTitle");
    for (const char* language : {"English", "German", "Danish"})
        bench.add("txtNewLang", language, "buttAddLang");
    EXPECT_EQ(bench.items("lstSpTitles"), (QStringList{"Hello", "Bye", "01 Bye"}));
    EXPECT_EQ(bench.selected("lstSpTitles"), "(none)");
    bench.select("lstSpTitles", "Hello");
    EXPECT_FALSE(bench.isEnabled("buttAddSpFile"));
    for (const char* language : {"English", "German"}) {
        bench.select("lstLangs", language);
        bench.browse("buttAddSpFile", path);
        EXPECT_EQ(bench.field("txtSpeechFile"), path);
    }
    bench.answer("buttEditSpTitle", "Welcome");
    EXPECT_EQ(bench.selected("lstSpTitles"), "(none)");
    EXPECT_FALSE(bench.isEnabled("buttEditSpTitle") || bench.isEnabled("buttDelSpTitle"));
    EXPECT_EQ(bench.field("txtSpeechFile"), "");
    bench.select("lstLangs", "Danish");
    bench.click("buttDelLang");
    bench.answer("buttEditLang", "Deutsch");
    bench.select("lstSpTitles", "01 Bye");
    bench.click("buttDelSpTitle");
    EXPECT_EQ(bench.selected("lstSpTitles"), "Bye");
    bench.click("imgSpUp");
    EXPECT_EQ(bench.items("lstSpTitles"), (QStringList{"Bye", "Welcome"}));
    bench.prompts.paths = {bench.scratch.path("made.crd2")};
    bench.choose("mnuFileSaveAs");
    Project expected;
    expected.lstSpTitles = {"Bye", "Welcome"};
    expected.lstLangs = {"English", "Deutsch"};
    expected.TrackTable << makeRecord("speech", "Welcome", "English", path)
                        << makeRecord("speech", "Welcome", "Deutsch", path);
    EXPECT_EQ(bench.scratch.read("made.crd2"), encodeProject(expected));
}

TEST(SpeechPage, NamesHaveTheirLimits) {
    EditorBench bench;
    bench.type("txtNewSpTitle", "1234567890abcdefGH");
    EXPECT_EQ(bench.field("txtNewSpTitle"), "1234567890abcdef");
    EXPECT_EQ(bench.prompts.beeps, 2);
    auto* title = bench.find<QLineEdit>("txtNewSpTitle");
    title->selectAll();
    QTest::keyClicks(title, "x");  // refused by the length alone
    EXPECT_EQ(bench.field("txtNewSpTitle"), "1234567890abcdef");
    QTest::keyClick(title, Qt::Key_Backspace);
    EXPECT_EQ(bench.field("txtNewSpTitle"), "");
    bench.type("txtNewLang", "Castellano");
    EXPECT_EQ(bench.field("txtNewLang"), "Castella");
    bench.find<QLineEdit>("txtNewLang")->clear();
    bench.prompts.beeps = 0;
    QGuiApplication::clipboard()->setText("Nederlands");
    QTest::keyClick(bench.find<QLineEdit>("txtNewLang"), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(bench.field("txtNewLang"), "Nederlan");
    EXPECT_EQ(bench.prompts.beeps, 1);

    // AltGr characters come with Ctrl and Alt on some systems.
    bench.type("txtNewLang", "12345678");
    QKeyEvent at(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, "@");
    QApplication::sendEvent(bench.find<QLineEdit>("txtNewLang"), &at);
    EXPECT_EQ(bench.field("txtNewLang"), "12345678");
    EXPECT_EQ(bench.prompts.beeps, 2);
    // An input method replaces what it composed from.
    bench.type("txtNewLang", "Espan");
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("ñol"), -1, 1);
    QApplication::sendEvent(bench.find<QLineEdit>("txtNewLang"), &composed);
    EXPECT_EQ(bench.field("txtNewLang"), QString::fromUtf8("Español"));

    for (int i = 0; i < 16; ++i)
        bench.add("txtNewLang", QString::number(i), "buttAddLang");
    bench.type("txtNewLang", "more");
    EXPECT_FALSE(bench.isEnabled("buttAddLang"));
    EXPECT_EQ(bench.current.lstLangs.size(), 16);
    bench.select("lstLangs", bench.current.lstLangs.first());
    bench.click("buttDelLang");
    bench.click("buttAddLang");  // there is room again for what was typed
    EXPECT_EQ(bench.current.lstLangs.last(), "more");
}

}  // namespace tessaly
