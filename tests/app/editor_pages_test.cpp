// The pages of music and speech through the real window.
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressDialog>

#include "support/window_bench.h"

namespace tessaly {

using namespace test;

TEST(MusicPage, AWholeSessionEndsInTheExpectedFile) {
    StartedBench bench;
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

// The random operator of reliability/monkey compares lists, fields and the other buttons with the
// project after every event.
TEST(MusicPage, TrackButtonsFollowTheSelection) {
    StartedBench bench;
    bench.showPage("Music Files");
    const auto enabled = [&] {
        QStringList names;
        for (const char* name : {"AddMuTrack", "EditMuTrack", "DelMuTrack", "AddMuFile"})
            if (bench.isEnabled(QString("butt") + name))
                names.append(name);
        return names.join(' ');
    };
    bench.type("txtNewMuList", "Rock");
    QTest::keyClick(bench.find<QLineEdit>("txtNewMuList"), Qt::Key_Return);  // the default button
    EXPECT_EQ(enabled(), "");
    bench.type("txtNewMuTrack", "x");
    bench.find<QLineEdit>("txtNewMuTrack")->clear();
    EXPECT_EQ(enabled(), "AddMuTrack") << "an empty name can be added";
    bench.click("buttAddMuTrack");
    EXPECT_EQ(enabled(), "");
    bench.select("lstMuTrack", "");
    EXPECT_EQ(enabled(), "EditMuTrack DelMuTrack AddMuFile");
    bench.find<QListView>("lstMuTrack")->clearSelection();
    EXPECT_FALSE(bench.isEnabled("buttAddMuFile"));
    bench.select("lstMuTrack", "");
    bench.type("txtNewMuList", "y");  // takes the list's selection away
    EXPECT_EQ(enabled(), "") << "nothing of a track can be changed without its list";

    // A track that is selected already can be edited, however it came on view.
    bench.click("buttAddMuList");
    bench.add("txtNewMuTrack", "z", "buttAddMuTrack");
    bench.select("lstMuTrack", "z");
    bench.click("buttDelMuTrack");
    EXPECT_EQ(enabled(), "");
    bench.select("lstMuList", "Rock");
    EXPECT_EQ(enabled(), "EditMuTrack DelMuTrack AddMuFile");

    // Enter presses the button that has the focus, from elsewhere the default one.
    bench.window->activateWindow();
    bench.type("txtNewMuTrack", "last");
    for (const char* focused : {"buttDelMuTrack", "lstMuTrack"}) {
        bench.find<QWidget>(focused)->setFocus();
        QTest::keyClick(bench.window->windowHandle(), Qt::Key_Return);
    }
    EXPECT_EQ(bench.items("lstMuTrack"), QStringList("last"));
}

TEST(MusicPage, ImportsMakeListsOrNothing) {
    StartedBench bench;
    bench.showPage("Music Files");
    const QString tour = QDir::toNativeSeparators(TESSALY_SAMPLES "/tour/Music/Harbour Morning");
    bench.type("txtNewMuList", "half");
    bench.type("txtNewMuTrack", "typed");
    bench.browse("buttAddMuListDir", tour);
    EXPECT_EQ(bench.field("txtNewMuList") + bench.field("txtNewMuTrack"), "");
    EXPECT_FALSE(bench.isEnabled("buttAddMuList") || bench.isEnabled("buttAddMuTrack"));
    EXPECT_EQ(bench.selected("lstMuList"), "Harbour Morning");
    EXPECT_EQ(bench.items("lstMuTrack"),
              (QStringList{"Morning Bell", "Drying Nets", "03 Thin Fog", "Market Boats"}));
    EXPECT_EQ(bench.selected("lstMuTrack"), "Market Boats");
    EXPECT_EQ(bench.text("lblMP3tagArtist"), "Tessaly Samples");
    bench.browse("buttAddMuListDir", bench.scratch.makeFolder("nothing"));
    EXPECT_EQ(bench.prompts.offered[1], tour) << "the last folder is offered again";
    EXPECT_EQ(bench.prompts.takeTexts(), QStringList("Folder contains no MP3 files"));

    bench.browse(
        "buttAddMuItunesPlaylist",
        bench.scratch.write("Party.m3u", "/m/one.mp3\n/m/two.wav\n/m/three.mp3\n/m/x.mp3"));
    EXPECT_EQ(bench.items("lstMuTrack"), (QStringList{"one", "three"}));
    EXPECT_EQ(bench.prompts.shown[0].title, "File type not MP3");
    bench.prompts.shown.clear();
    for (const QString& path :
         {bench.scratch.write("Notes.txt", "no playlist"), bench.scratch.path("gone.m3u")}) {
        bench.browse("buttAddMuItunesPlaylist", path);
        EXPECT_EQ(bench.prompts.takeTexts().size(), 1);
    }
    EXPECT_EQ(bench.items("lstMuList"), (QStringList{"Harbour Morning", "Party"}));

    // Files of one name: the last one is on view, and gets its file when that is wanted.
    for (const char* file : {"Sonatas/Piano Sonata No. 1.mp3", "Sonatas/Piano Sonata No. 2.mp3"})
        bench.scratch.write(file, "x");
    for (const bool give : {false, true}) {
        bench.prompts.answers = {give};
        bench.browse("buttAddMuListDir", bench.scratch.path("Sonatas"));
        EXPECT_EQ(bench.prompts.offered, QStringList("Give each its file"));
        EXPECT_TRUE(bench.prompts.takeTexts().value(0).startsWith("1 track of the music list"));
        EXPECT_EQ(bench.selected("lstMuTrack"), "01 Piano Sonata No.");
        EXPECT_EQ(bench.field("txtMuFile"),
                  give ? bench.scratch.path("Sonatas/Piano Sonata No. 2.mp3") : "");
        bench.click("buttDelMuList");
    }

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
    StartedBench bench;
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
    // A move sets no mark, but the status bar says so, until it is taken back.
    bench.select("lstLangs", "Deutsch");
    for (const char* buttons : {"imgSp", "imgLangs"}) {
        const bool isUpFirst = buttons == QString("imgLangs");
        for (const bool isUp : {isUpFirst, !isUpFirst}) {
            bench.click(buttons + QString(isUp ? "Up" : "Dn"));
            EXPECT_EQ(bench.isShown("lblNotSaved"), isUp == isUpFirst) << buttons;
            EXPECT_FALSE(bench.window->isWindowModified());
        }
    }
}

// The rules themselves are in model/display_text_test.cpp.
TEST(SpeechPage, NamesHaveTheirLimits) {
    StartedBench bench;
    bench.type("txtNewSpTitle", "1234567890abcdefGH");
    EXPECT_EQ(bench.field("txtNewSpTitle"), "1234567890abcdef");
    EXPECT_EQ(bench.prompts.beeps, 2);
    auto* title = bench.find<QLineEdit>("txtNewSpTitle");
    title->selectAll();
    QTest::keyClicks(title, "x");  // refused by the length alone
    EXPECT_EQ(bench.field("txtNewSpTitle"), "1234567890abcdef");
    auto* language = bench.find<QLineEdit>("txtNewLang");
    QGuiApplication::clipboard()->setText("Nederlands");
    QTest::keyClick(language, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(language->text(), "Nederlan");
    EXPECT_EQ(bench.prompts.beeps, 4);
    // AltGr characters come with Ctrl and Alt on some systems.
    QKeyEvent at(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, "@");
    QApplication::sendEvent(language, &at);
    EXPECT_EQ(language->text(), "Nederlan");
    EXPECT_EQ(bench.prompts.beeps, 5);
    // One character of two units, and one that is not seen, take a place each.
    const QString note = QString::fromUtf8("\xF0\x9D\x84\x9E");
    for (const QString& character : {note, QString(QChar(0x200D))}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, character);
        QApplication::sendEvent(language, &press);
        EXPECT_EQ(language->text(), "Nederlan");
    }
    // A move would take from its source what the field refuses.
    QMimeData dropped;
    dropped.setText("Deutsch");
    QDragEnterEvent enter({}, Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(language, &enter);
    QDropEvent drop({}, Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(language, &drop);
    EXPECT_EQ(language->text(), "Nederlan");
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    // An input method replaces what it composed from.
    bench.type("txtNewLang", "Espan");
    QInputMethodEvent composed;
    composed.setCommitString(QString::fromUtf8("ñol"), -1, 1);
    QApplication::sendEvent(language, &composed);
    EXPECT_EQ(language->text(), QString::fromUtf8("Español"));

    for (int i = 0; i < 16; ++i)
        bench.add("txtNewLang", "Latin", "buttAddLang");
    bench.type("txtNewLang", "more");
    EXPECT_FALSE(bench.isEnabled("buttAddLang"));
    EXPECT_EQ(bench.current.lstLangs.last(), "15 Latin");
    bench.select("lstLangs", "Latin");
    bench.click("buttDelLang");
    bench.click("buttAddLang");  // there is room again for what was typed
    EXPECT_EQ(bench.current.lstLangs.last(), "more");
}

}  // namespace tessaly
