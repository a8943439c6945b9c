// The whole way: the sample tour built by hand in the window, and its card against the command
// line's.
#include <QCheckBox>
#include <QLineEdit>
#include <QProcess>

#include "editor/tour_import.h"
#include "image/intel_hex.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

struct TourBench : StartedBench {
    void buildSpeech(const QString& folder) {
        showPage("Speech Files");
        const QDir speech(folder);
        for (const QString& language : speech.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            add("txtNewLang", language, "buttAddLang");
            for (const QString& file : QDir(speech.filePath(language)).entryList({"*.mp3"})) {
                const QString title = file.chopped(4).left(16);
                if (!current.lstSpTitles.contains(title))
                    add("txtNewSpTitle", title, "buttAddSpTitle");
                select("lstSpTitles", title);
                select("lstLangs", language);
                browse("buttAddSpFile", speech.filePath(language + '/' + file));
            }
        }
    }
    void buildMusic(const QString& folder) {
        showPage("Music Files");
        const QDir music(folder);
        QStringList lists = music.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        browse("buttAddMuListDir", music.filePath(lists.takeFirst()));  // one as a folder
        for (const QString& list : lists) {                             // the others by hand
            add("txtNewMuList", list, "buttAddMuList");
            for (const QString& file : QDir(music.filePath(list)).entryList({"*.mp3"})) {
                add("txtNewMuTrack", file.chopped(4), "buttAddMuTrack");
                select("lstMuTrack", file.chopped(4));
                browse("buttAddMuFile", music.filePath(list + '/' + file));
            }
        }
    }
    void buildSettings() {
        showPage("Triggers && Attributes");
        select("lstTrigLeft", "Harbour Morning");
        select("lstTrigRight", "03 Thin Fog");
        click("buttPlayLoudVolume");
        click("buttTrig_1");
        click("buttTrigSpeech");
        select("lstTrigLeft", "Welcome");
        click("chkPowerUp");
        click("buttTrig_0");
        showPage("Setup Items");
        QTest::keyClicks(find<QLineEdit>("txtCardTitle1"), "Harbour Tour");
        find<QListWidget>("lstDefaultLangs")->item(2)->setSelected(true);
        click("buttPlayIntChime");
        browse("buttGetChimeFile", scratch.path("chime.mp3"));
        click("buttAdvancedSettings");
        find<QLineEdit>("txtSystemText_7")->setText("(Zurück)");
        click("buttSystemTextSave");
    }
};

// The image of a card's settings without what is drawn at random.
QByteArray imageOf(const QByteArray& settings) {
    return decodeHexFile(settings).image.mid(2);
}

}  // namespace

TEST(Tour, TheWindowsCardIsTheCommandLinesCard) {
    TourBench bench;
    bench.buildSpeech(TESSALY_SAMPLES "/tour/Speech");
    bench.buildMusic(TESSALY_SAMPLES "/tour/Music");
    bench.buildSettings();
    const QString saved = bench.scratch.path("built.crd2");
    bench.prompts.paths = {saved};
    bench.choose("mnuFileSaveAs");
    bench.open(saved);
    bench.showPage("Create Card");
    bench.prompts.paths = {bench.job.root};
    bench.click("buttSelectCF");
    bench.prompts.answers = {true};
    bench.click("buttCreateCard");
    ASSERT_EQ(bench.prompts.takeTexts().last(), "Card successfully created!");
    const QString own = bench.current.cfDrive;
    bench.choose("mnuFileSave");

    bench.scratch.makeFolder("other");
    QProcess cli;
    cli.start(TESSALY_CLI, {"--app-folder", bench.scratch.path("app"), "create", saved, "--card",
                            bench.scratch.path("other"), "--yes"});
    ASSERT_TRUE(cli.waitForFinished());
    ASSERT_EQ(cli.exitCode(), 0) << cli.readAllStandardError().toStdString();
    auto window = bench.card(), other = bench.scratch.content("other");
    EXPECT_EQ(window.size(), 32 + 6);
    EXPECT_EQ(imageOf(window.take("0000.xd3")), imageOf(other.take("0000.xd3")));
    EXPECT_EQ(window.keys(), other.keys());
    for (const QString& name : window.keys())
        EXPECT_EQ(window[name], other[name]) << name.toStdString();
    EXPECT_EQ(own, withLastSeparator(bench.job.root));
}

}  // namespace tessaly
