// Places that must never be erased, offered to the window and to the command line as a card. They
// are built in a scratch folder; `make targets` does it with real mounts and a real "/".
#include <QProcess>

#include "platform/paths.h"
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
    QMap<QString, QByteArray> before;

    TargetBench() {
        for (const char* name : {"home/letter.txt", "home/deep/in/it.txt", "projects/other.crd2",
                                 "src/more.mp3", "checkout/.git/HEAD", "checkout/main.cpp",
                                 "outside/precious.txt", "disk/holiday.jpg", "app/keep.txt"})
            scratch.write(name, "precious");
        for (const char* name : {"home", "src", "app", "projects", "outside"})
            QFile::link(scratch.path(name), scratch.path(QString("link to ") + name));
        QFile::link(scratch.path("link to home"), scratch.path("link to link"));
        QFile::link(scratch.path("home/deep"), scratch.path("link to deep"));
        saveProject(files, projectFile, project);
        qputenv("HOME", scratch.path("home").toUtf8());
        QDir::setCurrent(scratch.path("home/deep"));
        before = precious();
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

    void expectUntouched() const {
        EXPECT_EQ(precious(), before);
        for (const QString& operation : files.operations)
            EXPECT_FALSE(operation.startsWith("remove") || operation.startsWith("rmdir") ||
                         (operation.startsWith("create") && !operation.contains("tmp.")))
                << operation.toStdString();
    }

    // Presses a button of the Create Card page with `target` as the drive of the project.
    void press(const QString& button, const QString& target) {
        // Should a guard fail, this test must not do the harm that it looks for.
        files.failWhen = [](const QString& operation) {
            return operation.startsWith("remove") || operation.startsWith("rmdir") ||
                   (operation.startsWith("create") && !operation.contains("tmp."));
        };
        project.cfDrive = target;
        saveProject(files, projectFile, project);
        before = precious();
        start();
        open(projectFile);
        showPage("Create Card");
        EXPECT_EQ(current.cfDrive, target);
        files.operations.clear();
        prompts.shown.clear();
        if (!isEnabled(button))
            return;
        prompts.answers = {true};
        click(button);
        EXPECT_EQ(prompts.shown.size(), 3);
        EXPECT_TRUE(QStringList({"Tessaly Error 310", "Tessaly Error 311", "Tessaly Error 312"})
                        .contains(prompts.shown.value(1).title))
            << prompts.shown.value(1).title.toStdString() << ": "
            << prompts.shown.value(1).text.toStdString();
        EXPECT_EQ(prompts.takeTexts().last(), "Card has NOT been created");
    }
};

struct Target {
    const char* what;
    QString path;
};

QList<Target> targetsIn(const ScratchFolder& scratch) {
    const QString top = scratch.path();
    return {{"the home folder", top + "/home"},
            {"the same with a separator", top + "/home/"},
            {"what holds the home folder", top},
            {"the program's folder", top + "/app"},
            {"the folder of a source", top + "/src"},
            {"the folder of the project", top + "/projects"},
            {"a checkout", top + "/checkout"},
            {"a link to the home folder", top + "/link to home"},
            {"a link to the program", top + "/link to app"},
            {"a link to the sources", top + "/link to src"},
            {"a link to the project", top + "/link to projects"},
            {"a link to a link", top + "/link to link"},
            {"up from inside", top + "/home/deep/.."},
            {"up from a link", top + "/link to deep/.."},
            {"up and down", top + "/src/../home/deep/in/../.."},
            {"dots", top + "/./home/."},
            {"doubled separators", "//" + top.mid(1) + "//home//"},
            {"a trailing blank", top + "/home "},
            {"nothing", ""},
            {"a blank", " "},
            {"up", ".."},
            {"far up", "../.."},
            {"a relative path", "../../src"},
            {"a file", top + "/home/letter.txt"},
            {"no such folder", top + "/gone"},
            {"a drive of Windows", "C:\\"},
            {"without its separator", "C:"},
            {"with the other separator", "C:/"},
            {"its long form", "\\\\?\\C:\\"}};
}

}  // namespace

TEST(WrongTargets, AreRefusedByTheWindow) {
    QList<Target> targets;
    {
        const ScratchFolder names;
        targets = targetsIn(names);
    }
    for (qsizetype i = 0; i <= targets.size(); ++i) {
        for (const char* button : {"buttCreateCard", "buttCreateXD3"}) {
            TargetBench bench;
            const Target target = i < targets.size() ? targetsIn(bench.scratch)[i]
                                                     : Target{"the root of everything", "/"};
            SCOPED_TRACE(std::string(button) + ": " + target.what);
            bench.press(button, target.path);
            bench.expectUntouched();
        }
    }
}

// The same, asked of the machine's own drives: none of them is one.
TEST(WrongTargets, AreNoDrives) {
    const TargetBench bench;
    const LocalDrives drives;
    for (const Target& target : targetsIn(bench.scratch))
        EXPECT_THROW(drives.type(target.path), TessalyError) << target.what;
}

TEST(WrongTargets, AreRefusedByTheCommandLine) {
    TargetBench bench;
    // A program in a folder of its own, which --app-folder does not name.
    const QString program = bench.scratch.makeFolder("program") + "/tessaly-cli";
    ASSERT_TRUE(QFile::copy(TESSALY_CLI, program));
    QList<Target> targets = targetsIn(bench.scratch);
    targets.append({"the folder of tessaly-cli", bench.scratch.path("program")});
    bench.before = bench.precious();
    for (const Target& target : targets) {
        for (const QStringList& options : {QStringList{"--erase", "--yes"}, QStringList{"--yes"},
                                           QStringList{"--settings-only", "--erase", "--yes"}}) {
            SCOPED_TRACE(target.what + (' ' + options.join(' ').toStdString()));
            QProcess process;
            process.start(program, QStringList{"--app-folder", bench.scratch.path("app"), "create",
                                               bench.projectFile, "--card", target.path} +
                                       options);
            ASSERT_TRUE(process.waitForFinished(60000));
            EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
            const QString said = QString::fromUtf8(process.readAllStandardError());
            EXPECT_EQ(process.exitCode(), 1) << said.toStdString();
            EXPECT_TRUE(said.contains("step 31") || said.contains("there is no such folder") ||
                        said.contains("which is no file of a card"))
                << said.toStdString();
            EXPECT_EQ(bench.precious(), bench.before);
        }
    }
}

// What the drives of the machine may say of a project's drive, or do to it under way.
TEST(WrongTargets, DrivesThatAreNotWhatTheyWere) {
    const struct {
        const char* what;
        int number, step;
        std::function<void(TargetBench&)> arrange, whileAsked;
    } cases[] = {
        {"a fixed disk", error_number::NotRemovable, 310,
         [](TargetBench& b) { b.drives.driveType = DriveType::Fixed; }, [](TargetBench&) {}},
        {"a share", error_number::NotRemovable, 310,
         [](TargetBench& b) { b.drives.driveType = DriveType::Network; }, [](TargetBench&) {}},
        {"a RAM disk", error_number::NotRemovable, 310,
         [](TargetBench& b) { b.drives.driveType = DriveType::RamDisk; }, [](TargetBench&) {}},
        {"other drives inside", error_number::SystemFolder, 311,
         [](TargetBench& b) { b.drives.mounted = {"/media/me/CARD"}; }, [](TargetBench&) {}},
        {"another card", error_number::DriveNotReady, 310, [](TargetBench&) {},
         [](TargetBench& b) { b.drives.inserted = "card B"; }},
        {"another folder", error_number::DriveNotReady, 310, [](TargetBench&) {},
         [](TargetBench& b) {
             QDir().rename(b.scratch.path("disk"), b.scratch.path("pulled"));
             QDir().rename(b.scratch.path("outside"), b.scratch.path("disk"));
         }},
        {"no card any more", error_number::DriveNotReady, 310, [](TargetBench&) {},
         [](TargetBench& b) { b.drives.isReady = false; }},
    };
    for (const auto& [what, number, step, arrange, whileAsked] : cases) {
        for (const char* button : {"buttCreateCard", "buttCreateXD3"}) {
            SCOPED_TRACE(std::string(button) + ": " + what);
            TargetBench bench;
            arrange(bench);
            int asked = 0;
            bench.prompts.onShown = [&, act = whileAsked](const ScriptedPrompts::Shown& shown) {
                if (shown.isQuestion && asked++ == 0) {
                    act(bench);
                    bench.before = bench.precious();
                }
            };
            bench.press(button, bench.scratch.path("disk"));
            EXPECT_EQ(asked, 1);
            bench.expectUntouched();
        }
    }
}

// A folder on the card becomes a link to somebody's files after the guards have looked.
TEST(WrongTargets, ErasingFollowsNoLinkThatAppears) {
    for (const QString moment : {"list card", "remove old.txt", "list sub", "list deep",
                                 "remove inner.txt", "rmdir deep", "rmdir sub"}) {
        for (const QString victim : {"sub", "sub/deep"}) {
            SCOPED_TRACE(moment.toStdString() + ", " + victim.toStdString());
            CardBench bench;
            bench.files.toDevice = false;
            bench.scratch.write("card/old.txt", "old");
            bench.scratch.write("card/sub/deep/inner.txt", "old");
            bench.scratch.write("outside/deep/inner.txt", "precious");
            bench.scratch.write("outside/inner.txt", "precious");
            const auto outside = bench.scratch.content("outside");
            bool isErasing = false;
            bool isSwapped = false;
            bench.files.onOperation = [&] {
                isErasing = isErasing || bench.observer.progress.stepCode == step_code::ListCard;
                if (!isErasing || isSwapped || bench.files.operations.last() != moment)
                    return;
                const QString place = bench.scratch.path("card/" + victim);
                isSwapped = QFile::rename(place, bench.scratch.path("moved")) &&
                            QFile::link(bench.scratch.path("outside"), place);
            };
            bench.create();
            EXPECT_TRUE(isSwapped || moment == "rmdir sub");
            EXPECT_EQ(bench.scratch.content("outside"), outside);
        }
    }
}

}  // namespace tessaly
