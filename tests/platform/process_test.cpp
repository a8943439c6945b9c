// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process.h"

#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(SingleInstance, TheSecondKnowsOfTheFirstUntilThatIsGone) {
    const ScratchFolder scratch;
    const QString folder = scratch.path("user/Łódź");
    const auto isOnlyOne = [](const QString& inFolder) {
        return LocalSingleInstance(inFolder).isOnlyOne();
    };
    QByteArray lock;
    {
        LocalSingleInstance first(folder);
        EXPECT_TRUE(first.isOnlyOne() && first.isOnlyOne());
        EXPECT_FALSE(isOnlyOne(folder));
        lock = scratch.read("user/Łódź/tessaly.lock");
    }
    EXPECT_TRUE(isOnlyOne(folder));
    // What a crashed one leaves behind: the number of a process that is gone.
    scratch.write("user/Łódź/tessaly.lock", "99999999" + lock.mid(lock.indexOf('\n')));
    EXPECT_TRUE(isOnlyOne(folder));
    EXPECT_TRUE(isOnlyOne(scratch.write("file", "x") + "/user")) << "where no folder can be made";
}

}  // namespace tessaly
