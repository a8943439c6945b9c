#include "platform/process.h"

#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(SingleInstance, TheSecondKnowsOfTheFirstUntilThatIsGone) {
    const ScratchFolder scratch;
    const QString folder = scratch.path("user/Łódź");
    {
        LocalSingleInstance first(folder);
        EXPECT_TRUE(first.isOnlyOne());
        EXPECT_TRUE(first.isOnlyOne());
        LocalSingleInstance second(folder);
        EXPECT_FALSE(second.isOnlyOne());
    }
    LocalSingleInstance third(folder);
    EXPECT_TRUE(third.isOnlyOne());
}

TEST(SingleInstance, ACrashedOneDoesNotCount) {
    const ScratchFolder scratch;
    QByteArray lock;
    {
        LocalSingleInstance crashed(scratch.path("user"));
        EXPECT_TRUE(crashed.isOnlyOne());
        lock = scratch.read("user/tessaly.lock");
    }
    // What it leaves behind if it ends without a word: the number of a process that is gone.
    scratch.write("user/tessaly.lock", "99999999" + lock.mid(lock.indexOf('\n')));
    LocalSingleInstance next(scratch.path("user"));
    EXPECT_TRUE(next.isOnlyOne());
}

TEST(SingleInstance, AFolderThatCannotBeMadeKeepsNobodyOut) {
    const ScratchFolder scratch;
    LocalSingleInstance instance(scratch.write("file", "x") + "/user");
    EXPECT_TRUE(instance.isOnlyOne());
}

}  // namespace tessaly
