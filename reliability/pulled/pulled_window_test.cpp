// The real window writes a card that is really mounted and really pulled out, at each operation of
// a run in turn. run.sh starts it in a mount namespace of its own.
#include <sys/mount.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <csignal>

#include "platform/paths.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

constexpr qint64 LongestEnd = 5000;  // milliseconds from the pull to the end of the run

/// The machine's drives, which see the mounts; what is mounted here passes for a card.
class MountsAreCards : public LocalDrives {
 public:
    DriveType type(const QString& root) const override {
        LocalDrives::type(root);  // error 71 where nothing is mounted
        return DriveType::Removable;
    }
};

/// A card that can be put in and pulled out, in the memory of the machine or through FUSE.
class RealCard {
 public:
    RealCard(QString mountPoint, bool isFuse) : folder_(std::move(mountPoint)), isFuse_(isFuse) {}
    ~RealCard() { remove(); }

    void insert() {
        QDir().mkpath(folder_);
        if (!isFuse_) {
            ASSERT_EQ(::mount("card", path(), "tmpfs", 0, nullptr), 0);
            return;
        }
        const QString image = folder_ + ".img";
        QFile::remove(image);
        ASSERT_EQ(QProcess::execute("truncate", {"-s", "2M", image}), 0);
        QProcess format;
        format.start("mkfs.vfat", {image});
        ASSERT_TRUE(format.waitForFinished());
        driver_.start("fusefat", {"-f", "-o", "rw+", image, folder_});
        ASSERT_TRUE(driver_.waitForStarted());
        const LocalDrives drives;
        QElapsedTimer waited;
        for (waited.start(); waited.elapsed() < LongestEnd && !isMounted(drives);)
            QTest::qWait(5);
        ASSERT_TRUE(isMounted(drives));
    }
    void pull() {
        if (isFuse_)
            ::kill(pid_t(driver_.processId()), SIGKILL);
        else
            ASSERT_EQ(::umount2(path(), MNT_DETACH), 0);
    }
    void remove() {
        ::umount2(path(), MNT_DETACH);
        if (driver_.state() != QProcess::NotRunning) {
            driver_.kill();
            driver_.waitForFinished();
        }
    }

 private:
    const char* path() {
        native_ = toNativePath(folder_);
        return native_.constData();
    }
    bool isMounted(const Drives& drives) const {
        try {
            drives.totalBytes(folder_);
            return true;
        } catch (const TessalyError&) {
            return false;
        }
    }

    QString folder_;
    QByteArray native_;
    bool isFuse_;
    QProcess driver_;
};

struct PulledBench : WindowBench {
    MountsAreCards mounts;
    Services real{files, mounts, prompts, tags, instance, services.appFolder, services.userFolder};
    RealCard card;

    explicit PulledBench(bool isFuse) : card(scratch.path("card"), isFuse) {
        card.insert();
        window = std::make_unique<MainWindow>(session, real);
        EXPECT_TRUE(window->startUp());
        window->show();
        open(tourFile);
        current.txtChimeFileName = scratch.path("chime.mp3");
        current.buttPlayIntChime = true;
        showPage("Create Card");
        files.operations.clear();
    }
    QStringList create() {
        prompts.answers = {true};
        prompts.shown.clear();
        click("buttCreateCard");
        return prompts.takeTexts();
    }
};

QStringList operationsOfARun(bool isFuse) {
    PulledBench bench(isFuse);
    EXPECT_EQ(bench.create().last(), "Card successfully created!");
    return bench.files.operations;
}

// Pulls at every `step`th operation and looks what the window makes of it.
void pullAtEach(bool isFuse, qsizetype step) {
    const QStringList operations = operationsOfARun(isFuse);
    ASSERT_GT(operations.size(), 80);
    qint64 longest = 0;
    int pulled = 0;
    for (qsizetype at = 0; at < operations.size(); at += step) {
        SCOPED_TRACE(operations[at].toStdString());
        if (operations[at].startsWith("remove tmp."))
            break;  // the card is finished
        PulledBench bench(isFuse);
        QElapsedTimer sincePull;
        bench.files.onOperation = [&] {
            if (bench.files.operations.size() - 1 == at) {
                bench.card.pull();
                sincePull.start();
            }
        };
        const QStringList texts = bench.create();
        bench.files.onOperation = [] {};
        ASSERT_TRUE(sincePull.isValid());
        longest = std::max(longest, sincePull.elapsed());
        ++pulled;
        ASSERT_EQ(texts.size(), 3) << texts.join(" | ").toStdString();
        EXPECT_TRUE(texts[1].startsWith("Error # ")) << texts[1].toStdString();
        EXPECT_TRUE(texts[1].contains("/card")) << "it names no file: " << texts[1].toStdString();
        EXPECT_EQ(texts[2], "Card has NOT been created");
        EXPECT_FALSE(bench.isShown("Bar1"));
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

        // The window works: it sees that there is no card, edits, and writes the next one.
        bench.click("buttCFCheckAgain");
        EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card not inserted");
        EXPECT_FALSE(bench.isEnabled("buttCreateCard"));
        bench.showPage("Setup Items");
        bench.showPage("Create Card");
        bench.card.remove();
        EXPECT_TRUE(bench.CardBench::card().isEmpty()) << "something was left on the disk";
        if (at % (8 * step) != 0)
            continue;
        bench.card.insert();
        bench.click("buttCFCheckAgain");
        EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card detected");
        EXPECT_EQ(bench.create().last(), "Card successfully created!");
    }
    EXPECT_LT(longest, LongestEnd);
    printf("%d runs pulled out (%s), the longest end took %lld ms\n", pulled,
           isFuse ? "FUSE driver killed" : "lazily unmounted", static_cast<long long>(longest));
}

}  // namespace

TEST(PulledOut, OfTheMountTable) {
    pullAtEach(false, 1);
}

TEST(PulledOut, WithItsDriver) {
    if (!QFile::exists("/dev/fuse") || QStandardPaths::findExecutable("fusefat").isEmpty())
        GTEST_SKIP() << "no FUSE here";
    pullAtEach(true, 5);
}

}  // namespace tessaly
