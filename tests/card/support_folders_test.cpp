#include "support/support_folders.h"

#include "platform/local_file_system.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(SupportFolders, StandBesideTheProgramOrInTheSystem) {
    const ScratchFolder scratch;
    const QString program = scratch.makeFolder("usr/bin");
    EXPECT_EQ(foldersOfProgram(program, {}).firmwareFile(),
              scratch.path("usr/bin/firmware/0000.hex"));
    scratch.makeFolder("usr/share/tessaly");
    const SupportFolders installed = foldersOfProgram(program, {});
    EXPECT_EQ(installed.appFolder, program);
    EXPECT_EQ(installed.firmwareFile(), scratch.path("usr/share/tessaly/firmware/0000.hex"));
    EXPECT_EQ(installed.manualFile, scratch.path("usr/share/tessaly/manual/manual.html"));
    // A folder that was named is meant, whatever stands near it.
    EXPECT_EQ(supportFoldersIn(program).firmwareFile(), scratch.path("usr/bin/firmware/0000.hex"));
}

TEST(SupportFolders, TheUsersOwnFileComesFirstFileByFile) {
    const ScratchFolder scratch;
    const SupportFolders folders = supportFoldersIn(scratch.makeFolder("app"), scratch.path("own"));
    EXPECT_EQ(folders.firmwareFile(), scratch.path("app/firmware/0000.hex"));
    EXPECT_EQ(folders.chimesStart(), scratch.path("app/Chimes"));
    scratch.write("own/firmware/0000.hex", "x");
    scratch.write("own/files/0007.cfg", "x");
    scratch.makeFolder("own/files/9998.mp3");  // no file
    scratch.makeFolder("own/Chimes");
    EXPECT_EQ(folders.makersFiles(),
              QStringList({"Firmware: " + scratch.path("own/firmware/0000.hex"),
                           "Calibration sound: " + scratch.path("app/files/9998.mp3"),
                           "Configuration: " + scratch.path("own/files/0007.cfg")}));
    EXPECT_EQ(folders.chimesStart(), scratch.path("own/Chimes"));
    QFile::remove(scratch.path("own/firmware/0000.hex"));
    EXPECT_EQ(folders.firmwareFile(), scratch.path("app/firmware/0000.hex"));
}

TEST(SupportFolders, DialogsForProjectsStartWherePeopleMayWrite) {
    const ScratchFolder scratch;
    const LocalFileSystem files;
    EXPECT_EQ(supportFoldersIn(scratch.path()).projectsStart(files), scratch.path());
    EXPECT_NE(supportFoldersIn(scratch.path("gone")).projectsStart(files), scratch.path("gone"));
}

}  // namespace tessaly
