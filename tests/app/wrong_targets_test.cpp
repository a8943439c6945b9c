// SPDX-License-Identifier: GPL-3.0-or-later
// Places that must never be erased, offered to the window and to the command line as a card. They
// are built in a scratch folder; `make targets` does it with real mounts and a real "/".
#include <QProcess>

#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

/// A window and a command line beside a home folder, a program folder, sources, a project and a
/// checkout, all full of things that nobody wants to lose.
struct TargetBench : WindowBench {
    const QByteArray homeBefore = qgetenv("HOME");
    const QString folderBefore = QDir::currentPath();
    const QString projectFile = scratch.path("projects/tour.crd2");
    const QString program = scratch.makeFolder("program") + "/tessaly-cli";

    TargetBench() {
        for (const char* name : {"home/letter.txt", "home/deep/in/it.txt", "projects/other.crd2",
                                 "src/more.mp3", "checkout/.git/HEAD", "app/keep.txt"})
            scratch.write(name, "precious");
        for (const char* name : {"home", "src", "app", "projects", "home/deep"})
            QFile::link(scratch.path(name), scratch.path("link to " + QFileInfo(name).fileName()));
        QFile::link(scratch.path("link to home"), scratch.path("link to link"));
        EXPECT_TRUE(QFile::copy(TESSALY_CLI, program));  // which --app-folder does not name
        qputenv("HOME", scratch.path("home").toUtf8());
        QDir::setCurrent(scratch.path("home/deep"));
        // Should a guard fail, this test must not do the harm that it looks for.
        files.failWhen = [](const QString& operation) {
            return operation.startsWith("remove") || operation.startsWith("rmdir") ||
                   (operation.startsWith("create") && !operation.contains("tmp."));
        };
    }
    ~TargetBench() {
        qputenv("HOME", homeBefore);
        QDir::setCurrent(folderBefore);
    }

    // All but what belongs to the window: its temporary files and its own folder.
    QMap<QString, QByteArray> precious() const {
        auto found = scratch.content("");
        found.removeIf([](const auto& file) {
            return file.key().contains("/tmp.") || file.key().startsWith("user");
        });
        return found;
    }

    // Presses both buttons of the Create Card page; they may as well be disabled.
    void tryWindow() {
        start();
        open(projectFile);
        showPage("Create Card");
        for (const char* button : {"buttCreateCard", "buttCreateXD3"}) {
            if (!isEnabled(button))
                continue;
            prompts.shown.clear();
            files.operations.clear();
            prompts.answers = {true};
            click(button);
            EXPECT_TRUE(QStringList({"Tessaly Error 310", "Tessaly Error 311", "Tessaly Error 312"})
                            .contains(prompts.shown.value(1).title))
                << prompts.shown.value(1).text.toStdString();
            EXPECT_EQ(prompts.takeTexts().last(), "Card has NOT been created");
            const QRegularExpression harm(QStringLiteral("^(remove|rmdir) (?!tmp)"));
            EXPECT_EQ(files.operations.filter(harm), QStringList());
        }
    }

    void tryCommandLine(const QString& target) const {
        for (const QStringList& options : {QStringList{"--erase", "--yes"}, QStringList{"--yes"},
                                           QStringList{"--settings-only", "--erase", "--yes"}}) {
            QProcess process;
            process.start(program, QStringList{"--app-folder", scratch.path("app"), "create",
                                               projectFile, "--card", target} +
                                       options);
            ASSERT_TRUE(process.waitForFinished(60000));
            const QString said = QString::fromUtf8(process.readAllStandardError());
            EXPECT_EQ(process.exitCode(), 1) << said.toStdString();
            EXPECT_TRUE(said.contains("step 31") || said.contains("there is no such folder") ||
                        said.contains("which is no file of a card"))
                << said.toStdString();
        }
    }
};

}  // namespace

TEST(WrongTargets, AreRefusedByTheWindowAndTheCommandLine) {
    TargetBench bench;
    const QString top = bench.scratch.path();
    QStringList targets = {top,
                           "",
                           " ",
                           "..",
                           "../..",
                           "../../src",
                           "C:\\",
                           "C:",
                           "C:/",
                           "\\\\?\\C:\\",
                           "//" + top.mid(1) + "//home//"};
    for (const char* inside :
         {"home", "home/", "app", "program", "src", "projects", "checkout", "link to home",
          "link to app", "link to src", "link to projects", "link to link", "home/deep/..",
          "link to deep/..", "src/../home/deep/in/../..", "./home/.", "home ", "home/letter.txt",
          "gone"})
        targets.append(top + '/' + inside);
    for (const QString& target : targets + QStringList("/")) {
        SCOPED_TRACE(target.toStdString());
        bench.project.cfDrive = target;
        LocalFileSystem files;
        saveProject(files, bench.projectFile, bench.project);
        const auto before = bench.precious();
        if (!target.endsWith("/program"))  // that of the command line alone
            bench.tryWindow();
        if (target != "/") {  // which the machine would miss, should the guard fail
            bench.tryCommandLine(target);
            EXPECT_THROW(LocalDrives().type(target), TessalyError);
        }
        EXPECT_EQ(bench.precious(), before);
    }
}

}  // namespace tessaly
