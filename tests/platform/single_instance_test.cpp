#include "platform/single_instance.h"

#include <QCoreApplication>
#include <QSysInfo>

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
    // What a process leaves behind that does not run any more: its number, name and machine.
    const QByteArray host = QSysInfo::machineHostName().toUtf8();
    scratch.write("user/tessaly.lock",
                  "99999999\n" + QCoreApplication::applicationName().toUtf8() + '\n' + host + '\n');
    LocalSingleInstance next(scratch.path("user"));
    EXPECT_TRUE(next.isOnlyOne());
}

TEST(SingleInstance, AFolderThatCannotBeMadeKeepsNobodyOut) {
    const ScratchFolder scratch;
    LocalSingleInstance instance(scratch.write("file", "x") + "/user");
    EXPECT_TRUE(instance.isOnlyOne());
}

}  // namespace tessaly
