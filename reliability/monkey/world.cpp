// SPDX-License-Identifier: GPL-3.0-or-later
#include "world.h"

#include <QRegularExpression>
#include <random>

#include "app/create_card_page.h"

namespace tessaly::monkey {

using namespace test;

namespace {

// An MP3 file of nothing but the tag at its end.
QByteArray tagged(const QByteArray& title, int bytes) {
    QByteArray tag = "TAG" + title.leftJustified(30, '\0', true);
    return QByteArray(bytes, 'm') + tag.leftJustified(128, '\0');
}

const QStringList Places = {"src", "music", "playlists", "app"};

}  // namespace

World::World() {
    makeFiles();
    bench.prompts.onAsked = [this](const QString& what) { answer(what); };
    bench.files.failWhen = [this](const QString&) {
        return failOneIn_ > 0 && dice && dice->oneIn(failOneIn_);
    };
    bench.files.onOperation = [this] {
        if (!dice || !isRunning())
            return;
        happenings.ranCard = true;
        if (dice->oneIn(1500))
            setCardPresent(!cardPresent_);
        onRunOperation();
    };
    restart();
    happenings = {};
}

void World::makeFiles() {
    const auto write = [this](const QString& name, const QByteArray& bytes) {
        return bench.scratch.write(name, bytes);
    };
    for (const char* name : {"first.mp3", "second.MP3", "hello.mp3", "missing.mp3", "."})
        mp3s_.append(bench.scratch.path(QString("src/") + name));
    mp3s_ += {write("src/Tagged.mp3", tagged("Ein Lied", 900)), write("src/empty.mp3", {}),
              write(QString("src/Žlutý kůň.mp3"), "outside the code page"),
              write("src/no music.txt", "text")};
    for (int i = 0; i < 5; ++i)
        write(QString("music/Evening/%1 Song.mp3").arg(i),
              tagged(i < 3 ? "Same Title" : QByteArray(), 50 * i));
    write("music/A name longer than sixteen/one.MP3", tagged("A title longer than sixteen", 10));
    write("music/A name longer than sixteen/two.mp3", "untagged");
    write("music/Évolution/.hidden.mp3", "hidden");
    write("music/none/read me.txt", "no music");
    for (int i = 0; i < 40; ++i)
        write(QString("music/Forty/%1.mp3").arg(i), tagged("T" + QByteArray::number(i % 30), 3));
    bench.scratch.makeFolder("music/empty");
    for (const char* name : {"English/01 Welcome", "English/Song A", "Deutsch/01 Welcome",
                             "Deutsch/A name longer than sixteen"})
        write(QString("music/talks/%1.mp3").arg(name), "speech");
    bench.scratch.makeFolder("other card");
    for (const char* name : {"Evening", "A name longer than sixteen", "Évolution", "none", "Forty",
                             "empty", "missing", "Evening/", "talks", "talks/English"})
        folders_.append(bench.scratch.path(QString("music/") + name));

    const QByteArray song = bench.scratch.path("music/Evening/0 Song.mp3").toUtf8();
    playlists_ = {
        write("playlists/plain.m3u", song + '\n' + song + "\nmissing.mp3\n"),
        write("playlists/with names.m3u",
              "#EXTM3U\t\n#EXTINF:1,A - B\n" + song + "\n#EXTINF:2,\nb.mp3\n#EXTINF:3,C\nc.wav\n"),
        write("playlists/tabs.txt", "Album\tA\tY\tG\tN\tT\tL\tS\tP\r\nQ\tB\t1\tF\t1\tLow\t3\t3\t" +
                                        song + "\r\nQ\t\t\t\t\tName only\t\t\t\r\n"),
        write("playlists/names.txt", "Name\tArtist\tLocation\rBell\tC\t" + song + "\rNets\tC\t\r"),
        write("playlists/no list.txt", QByteArray("\0\xFF\tno playlist", 14)),
        write("playlists/empty.m3u", {}),
        bench.scratch.path("playlists/missing.m3u")};

    projects_ = {bench.tourFile, bench.scratch.path("given/missing.crd2"), mp3s_.last()};
    LocalFileSystem files;
    std::mt19937 random(6);
    for (int i = 0; i < 3; ++i) {
        Project other = randomProject(random, 10 + 10 * i);
        projects_.append(bench.scratch.path(QString("given/other %1.crd2").arg(i)));
        bench.scratch.makeFolder("given");
        saveProject(files, projects_.last(), other);
    }
    const QByteArray whole = bench.scratch.read("given/other 2.crd2");
    QByteArray flipped = whole;
    for (qsizetype at = 700; at < flipped.size(); at += 997)
        flipped[at] = char(flipped[at] ^ 0x15);
    projects_ += {write("given/cut.crd2", whole.left(whole.size() * 2 / 3)),
                  write("given/flipped.crd2", flipped), write("given/empty.crd2", {})};
    bench.scratch.makeFolder("mine/a folder.crd2");
    for (const char* name : {"one.crd2", "zwei Wörter.crd2", "three.crd2", "a folder.crd2",
                             "no such folder/four.crd2"})
        targets_.append(bench.scratch.path(QString("mine/") + name));
}

bool World::isRunning() const {
    const auto* page = bench.window ? bench.window->findChild<CreateCardPage*>() : nullptr;
    return page && page->isRunning();
}

void World::restart() {
    happenings.sessionChanged = happenings.keepCopyBeforeDiscard = true;
    bench.window.reset();
    if (dice && dice->oneIn(2)) {  // as if the program had been killed
        QFile mark(bench.scratch.write("user/recovery/running", {}));
        if (mark.open(QIODevice::ReadWrite))
            mark.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000),
                             QFileDevice::FileModificationTime);
    }
    bench.start();
    bench.window->findChild<QTimer*>("tmrRecovery")->stop();  // fires when the monkey says so
    for (const char* step : {"mnuEditUndo", "mnuEditRedo"})
        QObject::connect(bench.find<QAction>(step), &QAction::triggered, bench.window.get(),
                         [this] { happenings.undone = true; });
    for (auto* file : bench.window->findChildren<QAction*>(QRegularExpression("^mnuFileRecent_")))
        QObject::connect(file, &QAction::triggered, bench.window.get(), [this] {
            happenings.sessionChanged = happenings.keepCopyBeforeDiscard = true;
        });
    bench.window->activateWindow();
    bench.window->offerRecovery();
}

void World::setCardPresent(bool present) {
    if (present == cardPresent_)
        return;
    cardPresent_ = present;
    const QString card = bench.scratch.path("card"), pulled = bench.scratch.path("pulled");
    present ? QDir().rename(pulled, card) : QDir().rename(card, pulled);
    bench.drives.isReady = present;
}

QString World::change() {
    const int kind = dice->below(8);
    test::FakeDrives& drives = bench.drives;
    if (kind == 0) {
        failOneIn_ = 5 + dice->below(60);
        return QString("one in %1 file operations fails").arg(failOneIn_);
    }
    if (kind == 1) {
        setCardPresent(false);
        return "the card is pulled";
    }
    if (kind == 2) {
        drives.driveType = dice->oneIn(2) ? DriveType::Fixed : DriveType::Network;
        return "the drive is not removable";
    }
    if (kind == 3) {
        drives.volume.freeBytes = dice->below(20000);
        return "the card has little room";
    }
    if (bench.player.isPlaying() && kind < 7) {
        bench.player.report({.what = SoundReport::What(dice->below(4)),
                             .file = dice->below(bench.player.count()),
                             .seconds = dice->below(3),
                             .why = "of some reason"});
        return "the sound goes on or ends";
    }
    failOneIn_ = 0;
    setCardPresent(true);
    drives.driveType = DriveType::Removable;
    drives.volume.freeBytes = 64000000;
    return "all is well outside";
}

void World::answer(const QString& what) {
    if (!dice)
        return;
    if (what.startsWith("You will lose") || what == "Recover" || what.startsWith("save ") ||
        what.startsWith("Tessaly was not closed"))
        happenings.sessionChanged = true;
    if (what.startsWith("open TRL"))
        happenings.sessionChanged = happenings.keepCopyBeforeDiscard = true;
    ReadyPrompts& prompts = bench.prompts;
    // Timers run on while a box is open.
    if (auto* timer = bench.window->findChild<QTimer*>("tmrRecovery"); timer && dice->oneIn(10))
        QMetaObject::invokeMethod(timer, "timeout");
    prompts.yes = !dice->oneIn(3);
    prompts.path = dice->oneIn(5) ? QString() : pathFor(what);
    prompts.line = dice->oneIn(3) ? -1 : dice->below(qMax(1, prompts.lineCount));
    prompts.text = dice->oneIn(5) ? QString() : text();
    if (what.startsWith("You will lose") && prompts.yes)
        happenings.keepCopyBeforeDiscard = true;
    if (what == "Recover" && prompts.line >= 0)
        happenings.keepCopyBeforeDiscard = true;
}

QString World::pathFor(const QString& what) {
    if (what == "drive")
        return dice->oneIn(6) ? bench.scratch.path("other card/") : bench.job.root;
    if (what.startsWith("save "))
        return dice->anyOf(targets_);
    if (what.startsWith("open TRL"))
        return dice->oneIn(2) ? dice->anyOf(targets_) : dice->anyOf(projects_);
    if (what.startsWith("open TXT"))
        return dice->anyOf(playlists_);
    if (what.startsWith("Save With Files")) {
        const QString folder = bench.scratch.path(QString("mine/packed %1").arg(dice->below(3)));
        if (dice->oneIn(2))
            QDir(folder).removeRecursively();
        return folder;
    }
    return what.startsWith("open ") ? dice->anyOf(mp3s_) : dice->anyOf(folders_);
}

QStringList World::droppedPaths() {
    QStringList paths;
    for (int left = 1 + dice->below(dice->oneIn(3) ? 6 : 2); left > 0; --left)
        paths.append(dice->anyOf(dice->oneIn(2) ? mp3s_ : dice->oneIn(3) ? playlists_ : folders_));
    return paths;
}

QString World::text() {
    static const QStringList usual =
        QString("A,B,C,01 A,Rock,Welcome,English,Deutsch,Song A,Late Show").split(',');
    static const QStringList odd =
        QStringLiteral(
            ", ,    ,exactly sixteen.,this is more than sixteen,Žlutý kůň,日本語のうた,"
            "e\u0301a\u0308 combined,\U0001F3B5 note,nul \uFFFD tab \t bell \a,line\r\nbreak,"
            "<Continuous Mix>,<Play Full List>,&ampersand && <b>bold</b>,C:\\Music\\a.mp3,"
            "\u200Fright\u202Eto left,half \uE000")
            .replace(QChar(0xFFFD), QChar(0))
            .replace(QChar(0xE000), QChar(0xD83C))  // half a character
            .split(',');
    if (!dice->oneIn(4))
        return dice->anyOf(usual);
    return dice->oneIn(40) ? QString(300 + dice->below(700), 'x') : dice->anyOf(odd);
}

QMap<QString, QByteArray> World::untouchables() const {
    QMap<QString, QByteArray> all;
    for (const QString& place : Places) {
        const auto content = bench.scratch.content(place);
        for (auto it = content.begin(); it != content.end(); ++it)
            if (!it.key().startsWith("files/tmp."))
                all.insert(place + '/' + it.key(), it.value());
    }
    return all;
}

QStringList World::places() const {
    QStringList names = QDir(bench.scratch.path())
                            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    names.removeAll("pulled");
    names.removeAll("card");
    return names;
}

}  // namespace tessaly::monkey
