// SPDX-License-Identifier: GPL-3.0-or-later
// The real window writes a card that is really mounted and really pulled out, at each operation of
// a run in turn. run.sh starts it in a mount namespace of its own and lends it its functions.
#include <QProcess>

#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

/// The machine's drives, which see the mounts; what is mounted here passes for a card.
class MountsAreCards : public LocalDrives {
 public:
    DriveType type(const QString& root) const override {
        LocalDrives::type(root);  // error 71 where nothing is mounted
        return DriveType::Removable;
    }
};

const MountsAreCards TheMounts;

struct PulledBench : WindowBench {
    PulledBench() : WindowBench(nullptr, &TheMounts) {
        scratch.write("card/no card", "");
        handle("insert");
        EXPECT_TRUE(start());
        open(tourFile);
        current.txtChimeFileName = scratch.path("chime.mp3");
        current.buttPlayIntChime = true;
        showPage("Create Card");
        files.operations.clear();
    }
    ~PulledBench() { handle("take_away"); }

    void handle(const QString& function) const {
        EXPECT_EQ(QProcess::execute("bash", {"-c", function + " \"$0\"", scratch.path("card")}), 0);
    }
    QStringList create() {
        prompts.answers = {true};
        prompts.shown.clear();
        click("buttCreateCard");
        return prompts.takeTexts();
    }
};

}  // namespace

TEST(PulledOut, AtEachOperation) {
    const int step = qEnvironmentVariableIntValue("STEP");
    qint64 longest = 0;
    int at = 0;
    for (bool isFinished = false;; at += step) {
        PulledBench bench;
        QElapsedTimer sincePull;
        bench.files.onOperation = [&] {
            if (bench.files.operations.size() - 1 != at)
                return;
            isFinished = bench.files.operations.last().startsWith("remove tmp.");
            bench.handle("pull");
            sincePull.start();
        };
        const QStringList texts = bench.create();
        bench.files.onOperation = [] {};

        if (isFinished || !sincePull.isValid())
            break;
        SCOPED_TRACE(bench.files.operations[at].toStdString());
        longest = std::max(longest, sincePull.elapsed());
        ASSERT_EQ(texts.size(), 3) << texts.join(" | ").toStdString();
        EXPECT_TRUE(texts[1].startsWith("Error # ") && texts[1].contains("/card"))
            << texts[1].toStdString();
        EXPECT_EQ(texts[2], "Card has NOT been created");
        EXPECT_FALSE(bench.isShown("Bar1"));

        // The window works: it sees that there is no card, and writes the next one.
        bench.click("buttCFCheckAgain");
        EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card not inserted");
        EXPECT_FALSE(bench.isEnabled("buttCreateCard"));
        if (at % (8 * step) != 0)
            continue;
        bench.handle("take_away");
        bench.handle("insert");
        bench.click("buttCFCheckAgain");
        EXPECT_EQ(bench.create().last(), "Card successfully created!");
    }
    EXPECT_GT(at, 80);
    EXPECT_LT(longest, 5000) << "milliseconds from the pull to the end";
    printf("the window: %d pulled out, longest end %d ms\n", at / step, int(longest));
}

}  // namespace tessaly
