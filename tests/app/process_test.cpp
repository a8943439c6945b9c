// SPDX-License-Identifier: GPL-3.0-or-later
// What sessions as text cannot hold: names that are no text, other processes, days that pass.
#include <QProcess>

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
