// SPDX-License-Identifier: GPL-3.0-or-later
// What is different on Linux: names are bytes, files have rights and links stand anywhere.
#include <sys/stat.h>

#include <cerrno>

#include "platform/error.h"
#include "platform/paths.h"
#include "support/file_questions.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(LinuxFiles, NamesOfAnyBytesSurvive) {
    for (const QByteArray& name :
         {QByteArray("plain"), QByteArray("Grüße 🎵"), QByteArray("\xFF\xFE"),
          QByteArray("half \xC3"), QByteArray("a\x80/\xE4z")})
        EXPECT_EQ(toNativePath(fromNativePath(name)), name);
}

// As the files of /proc, whose size is 0, and others that somebody writes meanwhile.
TEST(LinuxFiles, AFileThatIsLongerThanItSaidHasALimit) {
    LocalFileSystem files;
    EXPECT_EQ(errorOf([&] { readWholeFile(files, "/proc/version", 10); }).number,
              error_number::FileTooLarge);
}

TEST(LinuxFiles, AFileOfAnyNameIsReplaced) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString odd = pathIn(scratch.path(), fromNativePath("b\xE4.crd2"));
    files.replaceFile(odd, "first, and rather long");
    ::chmod(toNativePath(odd).constData(), 0640);
    files.replaceFile(odd, "second");
    EXPECT_EQ(readWholeFile(files, odd, 100), "second");
    EXPECT_EQ(namesIn(files, scratch.path()), QStringList(fromNativePath("b\xE4.crd2")));
    struct stat status {};
    ASSERT_EQ(::stat(toNativePath(odd).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    const QString roundabout = scratch.path("x/..") + odd.mid(scratch.path().size());
    EXPECT_EQ(files.canonicalPath(roundabout), "");
    scratch.makeFolder("x");
    EXPECT_EQ(toNativePath(files.canonicalPath(roundabout)), toNativePath(odd));
    files.removeFile(odd);
    const QString nowhere = pathIn(scratch.path(), fromNativePath("\xE4/x"));
    EXPECT_EQ(errorOf([&] { files.replaceFile(nowhere, "x"); }).number, ENOENT);
}

}  // namespace tessaly
