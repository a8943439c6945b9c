// SPDX-License-Identifier: GPL-3.0-or-later
// What sessions as text cannot hold: names that are no text, other processes, days that pass,
// screens, any bytes, tables.
#include <QElapsedTimer>
#include <QProcess>
#include <QSemaphore>
#include <atomic>

#include "app/keys_window.h"
#include "app/presence.h"
#include "app/program.h"
#include "platform/paths.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

TEST(StartUp, AKilledRunLeavesNoLockBehind) {
    const ScratchFolder scratch;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", scratch.path());
    program.setProcessEnvironment(environment);
    program.start(TESSALY_PROGRAM, QStringList());
    const QString folder = scratch.path("Tessaly");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return QFile::exists(folder + "/recovery/running"); }, 20000));
    EXPECT_FALSE(LocalSingleInstance(folder).isOnlyOne());
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(QFile::exists(folder + "/tessaly.lock"));
    EXPECT_TRUE(LocalSingleInstance(folder).isOnlyOne());
}

TEST(StartUp, OpensTheFileThatItWasStartedWith) {
    const QString name = fromNativePath("Grüße b\xE4.crd2");
    EXPECT_EQ(startArguments({}).projectFile, "");
    EXPECT_EQ(startArguments({"/a b/" + name}).projectFile, "/a b/" + name);
    EXPECT_EQ(startArguments({name}).projectFile, QDir::currentPath() + '/' + name);
    EXPECT_EQ(startArguments({name}).problem, "");
    WindowBench bench;
    const QString odd = pathIn(bench.scratch.path(), name);
    saveProject(bench.files, odd, bench.project);
    bench.start();
    EXPECT_TRUE(bench.find<QTimer>("tmrRecovery")->isActive());
    bench.window->openAtStart(odd);
    EXPECT_EQ(encodeProject(bench.current), encodeProject(bench.project));
    bench.current.txtCardTitle1 = "SAVED";
    bench.current.unsavedChanges = true;
    bench.choose("mnuFileSave");
    EXPECT_EQ(readWholeFile(bench.files, odd, 1 << 20), encodeProject(bench.current));
    EXPECT_TRUE(bench.prompts.told.isEmpty());
    bench.files.removeFile(odd);  // Qt, which cleans up, cannot name it
}

TEST(Remembered, TheWindowStandsWhereItStoodOnAScreenThatIsThere) {
    const QRect left(0, 0, 1920, 1040), right(1920, 0, 1280, 1000);
    const std::tuple<QRect, QList<QRect>, QRect> cases[] = {
        {{100, 50, 900, 620}, {left}, {100, 50, 900, 620}},
        {{1400, 500, 900, 620}, {left, right}, {1020, 420, 900, 620}},
        {{1700, 500, 900, 620}, {left, right}, {1920, 380, 900, 620}},
        {{2500, 10, 900, 620}, {left}, {1020, 10, 900, 620}},
        {{-5000, -5000, 900, 620}, {left, right}, {0, 0, 900, 620}},
        {{10, 10, 4000, 3000}, {right}, {1920, 0, 1280, 1000}},
        {{10, 10, 900, 620}, {}, {10, 10, 900, 620}}};
    for (const auto& [place, screens, expected] : cases)
        EXPECT_EQ(placeOnScreen(place, screens), expected) << place.x() << ", " << place.y();

    WindowBench bench;
    bench.start();
    bench.window->setGeometry(40, 60, 700, 500);
    bench.find<QTabWidget>("Tabs")->setCurrentIndex(2);
    bench.window->close();
    bench.start();
    EXPECT_EQ(bench.window->geometry(), QRect(40, 60, 700, 500));
    EXPECT_EQ(bench.find<QTabWidget>("Tabs")->currentIndex(), 2);
    bench.window->showMaximized();
    bench.window->close();
    bench.window.reset();
    const QString file = bench.scratch.path("user/tessaly.ini");
    const QDateTime written = QFileInfo(file).lastModified();
    bench.start();
    EXPECT_TRUE(bench.window->isMaximized());
    EXPECT_EQ(bench.window->normalGeometry(), QRect(40, 60, 700, 500));
    bench.window->close();
    bench.window.reset();
    EXPECT_EQ(QFileInfo(file).lastModified(), written) << "nothing had changed";
}

TEST(Remembered, AnyBytesAreReadAndMadeAnew) {
    const ScratchFolder scratch;
    const QString file = scratch.path("tessaly.ini");
    {
        Remembered whole(file);
        whole.keepWindow({.place = {1, 2, 3, 4}, .isMaximized = true, .page = 4});
        whole.keepFolder(FileKind::Chime, "/größe, \"1\"");
        for (int i = 0; i < 12; ++i)
            whole.addRecentProject(QString("/%1.crd2").arg(i % 11));
    }
    const QByteArray bytes = scratch.read("tessaly.ini");
    EXPECT_EQ(Remembered(file).recentProjects().size(), 10);
    EXPECT_EQ(Remembered(file).recentProjects().mid(0, 2), QStringList({"/0.crd2", "/10.crd2"}));
    EXPECT_EQ(Remembered(file).folder(FileKind::Chime), "/größe, \"1\"");
    std::mt19937 random(3);
    for (int round = 0; round < 400; ++round) {
        QByteArray damaged = bytes;
        for (int i = 1 + int(random() % 30); i > 0; --i)
            damaged[qsizetype(random() % size_t(bytes.size()))] = char(random());
        scratch.write("tessaly.ini", round % 4 ? damaged : damaged.left(round));
        {
            Remembered remembered(file);
            EXPECT_LE(remembered.recentProjects().size(), 10);
            remembered.window();
            remembered.addRecentProject("/new.crd2");
        }
        ASSERT_EQ(Remembered(file).recentProjects().value(0), "/new.crd2") << damaged.toStdString();
    }
    QFile::setPermissions(file, QFile::ReadOwner);
    Remembered(file).keepFolder(FileKind::Project, "/here");
    EXPECT_EQ(Remembered(file).folder(FileKind::Project), "/here") << "though it was read-only";
}

TEST(Recent, APathThatDoesNotAnswerHoldsNobodyUp) {
    const auto network = std::make_shared<QSemaphore>();
    std::atomic<int> asked = 0;
    Presence presence([&](const QString& path) {
        if (path == "far") {
            ++asked;
            network->acquire();
        }
        return path != "gone";
    });
    QElapsedTimer timer;
    timer.start();
    presence.ask({"far", "here", "gone"}, 50);
    EXPECT_TRUE(presence.isThere("here"));
    EXPECT_FALSE(presence.isThere("gone") || presence.isThere("far"));
    presence.ask({"far", "here"}, 60000);
    EXPECT_LT(timer.elapsed(), 20000) << "it is waited for once";
    EXPECT_EQ(asked, 1);
    network->release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return presence.isThere("far"); }));
    {
        Presence other([network](const QString&) { return network->tryAcquire(1, 60000); });
        other.ask({"far"}, 0);
    }
    network->release();  // its answer comes when nobody wants it any more
    EXPECT_TRUE(QTest::qWaitFor([&] { return network.use_count() == 1; })) << "its thread is gone";
}

TEST(Keys, TheManualHasThem) {
    QFile manual(TESSALY_MANUAL);
    ASSERT_TRUE(manual.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(manual.readAll());
    QString chapter = text.mid(text.indexOf("\n## Keys\n"));
    chapter = chapter.left(chapter.indexOf("\n## ", 5));
    QString expected;
    for (const KeyGroup& group : programKeys()) {
        expected += "\n### " + group.title + "\n\n| Key | What it does |\n|---|---|\n";
        for (const auto& [keys, what] : group.keys)
            expected += "| " + keys + " | " + what + " |\n";
    }
    EXPECT_TRUE(chapter.endsWith(expected)) << expected.toStdString();
}

TEST(Recovery, EarlierCopiesThinOutWithAge) {
    WindowBench bench;
    QDateTime now(QDate(2026, 3, 1), QTime(8, 0), Qt::UTC);
    RecoveryFolder folder(bench.files, bench.scratch.path("user/recovery"), [&] { return now; });
    const auto work = [&](int minutes) {
        for (int minute = 0; minute < minutes; ++minute) {
            now = now.addSecs(60);
            folder.keep({});
        }
    };
    for (int stretch = 0; stretch < 12; ++stretch) {
        work(2);
        folder.leave();
    }
    const QDateTime begin = now.addSecs(60);
    for (int minutes = 0; minutes < 300; minutes += 7) {
        work(7);
        QList<qint64> ages;  // of this stretch, in minutes
        const auto copies = folder.copies();
        for (const RecoveryCopy& copy : copies)
            if (copy.time >= begin)
                ages.append(copy.time.secsTo(now) / 60);
        for (qsizetype i = 1; i < ages.size(); ++i)
            ASSERT_LE(ages[i], 4 * ages[i - 1] + 2) << "after " << minutes << " minutes";
        ASSERT_TRUE(ages.first() == 0 && ages.last() == begin.secsTo(now) / 60);
        ASSERT_LE(ages.size(), 10);
        ASSERT_EQ(copies.size(), ages.size() + 2 + 8) << "two of the last stretch, one of others";
    }
}

}  // namespace tessaly
