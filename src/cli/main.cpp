// SPDX-License-Identifier: GPL-3.0-or-later
#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <algorithm>
#include <iostream>
#include <new>

#include "cli/commands.h"
#include "cli/console.h"
#include "platform/paths.h"
#include "platform/process.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

// A number from 1 to 65535, decimal or with 0x in front.
std::optional<quint16> identifierOf(const std::string& text) {
    const QString number = QString::fromStdString(text);
    const bool isHex = number.startsWith(u"0x", Qt::CaseInsensitive);
    bool ok = false;
    const uint value = number.toUInt(&ok, isHex ? 16 : 10);
    if (!ok || value < 1 || value > 65535)
        return std::nullopt;
    return quint16(value);
}

// What tessaly-cli understands. Help, completion and man page are compared by a test.
class CommandLine {
 public:
    CommandLine() {
        app_.name("tessaly-cli");
        app_.require_subcommand(1);
        app_.set_version_flag("--version", TESSALY_VERSION);
        addPath(&app_, "--app-folder", appFolder_,
                "Folder that holds files/, firmware/ and Chimes/ (default: the user's "
                "own files, then those that came with the program)",
                "DIR");
        addImport();
        addRelink();
        addCheck();
        addSound();
        addImage();
        addCreate();
        addPack();
        addVerify();
        addFirmware();
        addShow();
    }

    // Carries out what the arguments say, and returns an exit code. What is wrong with them it says
    // on standard error.
    int run(const QStringList& words) {
        std::vector<std::string> arguments;
        for (const QString& word : words)
            arguments.push_back(toNativePath(word).toStdString());
        std::reverse(arguments.begin(), arguments.end());  // as CLI11 wants them
        try {
            app_.parse(arguments);
        } catch (const CLI::CallForHelp&) {
            std::cout << app_.help();
            return Done;
        } catch (const CLI::CallForVersion& version) {
            std::cout << version.what() << '\n';
            return Done;
        } catch (const CLI::ParseError& error) {
            printError(QString::fromUtf8(error.what()).simplified() +
                       u" (tessaly-cli --help tells more)"_s);
            return Usage;
        }
        return run_();
    }

 private:
    // The callback notes what to run; it runs once everything was understood.
    CLI::App* command(const char* name, const char* what, const char* example,
                      std::function<int()> run) {
        CLI::App* sub = app_.add_subcommand(name, what);
        sub->footer(std::string("Example:\n  ") + example);
        sub->callback([this, run = std::move(run)] { run_ = run; });
        return sub;
    }

    static CLI::Option* addPath(CLI::App* sub, const char* name, QString& path, const char* what,
                                const char* type) {
        const auto read = [&path](const std::string& text) {
            path = fromNativePath(QByteArray::fromStdString(text));
        };
        return sub->add_option_function<std::string>(name, read, what)->type_name(type);
    }
    static void addProject(CLI::App* sub, QString& path) {
        addPath(sub, "project", path, "Project file", "P.crd2")->required();
    }
    static void addCard(CLI::App* sub, const char* name, QString& path) {
        addPath(sub, name, path, "The card", "DIR")->required();
    }

    SupportFolders folders() const {
        return appFolder_.isEmpty()
                   ? foldersOfProgram(QCoreApplication::applicationDirPath(), userFolder())
                   : supportFoldersIn(appFolder_);
    }

    void addImport() {
        CLI::App* sub =
            command("import", "Make a project from a folder of MP3 files or a playlist",
                    "tessaly-cli import tour --output tour.crd2\n"
                    "  tessaly-cli import \"Summer Hits.m3u\" --output tour.crd2 --append\n\n"
                    "SOURCE is\n"
                    "  a folder that holds Music/<List>/*.mp3 and Speech/<Language>/<Title>.mp3,\n"
                    "  a folder that holds MP3 files itself: it makes one music list,\n"
                    "  a folder with folders of MP3 files inside: each makes one,\n"
                    "  a standard playlist (.m3u, .m3u8, .pls): one music list,\n"
                    "  or a playlist that a media player exported as text: likewise.\n"
                    "What an import leaves out or renames is named on standard error.",
                    [this] { return importCommand(import_); });
        addPath(sub, "source", import_.source, "Folder or playlist", "SOURCE")->required();
        addPath(sub, "--output,-o", import_.output, "Project file to write", "P.crd2")->required();
        sub->add_flag("--append", import_.append,
                      "Add the music lists to the project that P.crd2 holds");
        sub->add_flag("--exported", import_.exported,
                      "Take a .m3u, .m3u8 or .pls as the window's \"Add Exported Playlist\" does");
        sub->add_flag("--give-each-its-file", import_.giveEachItsFile,
                      "Give tracks that have the name of another the files they were made of");
        sub->add_flag("--titles-from-tags", import_.titlesFromTags,
                      "Name the tracks below Music/ by their title tag, as the other imports do "
                      "anyway");
    }

    void addRelink() {
        CLI::App* sub =
            command("relink", "Find the MP3 files of a project that were moved",
                    "tessaly-cli relink tour.crd2 --folder /media/me/Music --dry-run\n\n"
                    "A file is found by the end of its path, then by name and size or length, as a "
                    "card of the project tells them. Nothing is guessed: what is not found, or not "
                    "for certain, is named, stays as it is and ends the command with 3.",
                    [this] { return relinkCommand(relink_); });
        addProject(sub, relink_.project);
        addPath(sub, "--folder", relink_.folder, "Folder to look in, with all inside it", "DIR")
            ->required();
        addPath(sub, "--card", relink_.card, "A card that was written from the project", "DIR");
        sub->add_flag("--dry-run", relink_.dryRun, "Say what is found and write nothing");
    }

    void addCheck() {
        CLI::App* sub =
            command("check", "Say what is wrong with a project before a card is written",
                    "tessaly-cli check tour.crd2 --card /media/me/CARD",
                    [this] { return checkCommand(check_); });
        addProject(sub, check_.project);
        addPath(sub, "--card", check_.card, "Judge this card too", "DIR");
        sub->add_flag("--json", check_.json, "Print JSON");
        sub->add_flag("--strict", check_.strict, "End with 3 on warnings, too");
    }

    void addSound() {
        CLI::App* sub =
            command("sound", "Decode the MP3 files of a project and measure them",
                    "tessaly-cli sound tour.crd2 --json", [this] { return soundCommand(sound_); });
        addProject(sub, sound_.project);
        sub->add_flag("--json", sound_.json, "Print JSON");
    }

    void addImage() {
        CLI::App* sub = command(
            "image", "Write the player's configuration image",
            "tessaly-cli image tour.crd2 --output tour.bin --hex tour.xd3 --identifier 0x3A07",
            [this] { return imageCommand(image_); });
        addProject(sub, image_.project);
        addPath(sub, "--output,-o", image_.output, "Image to write", "F.bin")->required();
        addPath(sub, "--hex", image_.hexOutput, "Write it as Intel HEX too", "F.xd3");
        const auto read = [this](const std::string& text) {
            image_.identifier = identifierOf(text);
        };
        sub->add_option_function<std::string>(
               "--identifier", read, "First two bytes of the image (default: drawn at random)")
            ->type_name("N")
            ->check([](const std::string& text) {
                return identifierOf(text) ? "" : "N is a number from 1 to 65535 or 0x1 to 0xFFFF";
            });
    }

    void addCreate() {
        CLI::App* sub = command(
            "create", "Write a card: erase it, copy everything, read it back",
            "tessaly-cli create tour.crd2 --card /media/me/CARD\n\n"
            "DIR is a removable drive's root, or a folder that is empty or holds nothing but a "
            "card's files; --erase takes any other folder, but no whole fixed disk.",
            [this] { return createCommand(create_, folders()); });
        addProject(sub, create_.project);
        addCard(sub, "--card", create_.card);
        sub->add_flag("--settings-only", create_.settingsOnly,
                      "Leave the numbered MP3 files, write the settings and the firmware");
        sub->add_flag("--no-verify", create_.noVerify, "Do not read the files back");
        sub->add_flag("--erase", create_.erase, "Erase whatever else is in the folder");
        sub->add_flag("--yes", create_.yes, "Do not ask");
        sub->add_flag("--strict", create_.strict,
                      "Write nothing and end with 3 when the checks warn");
    }

    void addPack() {
        CLI::App* sub = command(
            "pack", "Copy a project and all its files into one folder that can be moved",
            "tessaly-cli pack tour.crd2 --output /media/me/STICK/tour\n\n"
            "The folder is empty or is made. It gets Music/<List>/, Speech/<Language>/ and the "
            "project,\nwhich finds its files beside it wherever the folder goes.",
            [this] { return packCommand(pack_); });
        addProject(sub, pack_.project);
        addPath(sub, "--output,-o", pack_.output, "Folder to fill", "FOLDER")->required();
    }

    void addVerify() {
        CLI::App* sub = command("verify", "Compare a card with its own project",
                                "tessaly-cli verify /media/me/CARD",
                                [this] { return verifyCommand(verified_); });
        addCard(sub, "card", verified_);
    }

    void addFirmware() {
        CLI::App* sub = command("firmware", "Compare the firmware on a card and update it",
                                "tessaly-cli firmware /media/me/CARD",
                                [this] { return firmwareCommand(firmware_, folders()); });
        addCard(sub, "card", firmware_.card);
        sub->add_flag("--yes", firmware_.yes, "Do not ask");
    }

    void addShow() {
        CLI::App* sub =
            command("show", "Show what is in a project file, an image or a HEX file",
                    "tessaly-cli show tour.crd2 --json", [this] { return showCommand(show_); });
        addPath(sub, "file", show_.file, "The file, told by its content", "FILE")->required();
        sub->add_flag("--json", show_.json, "Print JSON");
    }

    CLI::App app_{"Prepares memory cards for the TRL740 player."};
    QString appFolder_;
    ImportOptions import_;
    RelinkOptions relink_;
    CheckOptions check_;
    ImageOptions image_;
    CreateOptions create_;
    PackOptions pack_;
    QString verified_;
    FirmwareOptions firmware_;
    ShowOptions show_;
    SoundOptions sound_;
    std::function<int()> run_;
};

}  // namespace

}  // namespace tessaly::cli

int main(int argc, char** argv) {
    using namespace tessaly;
#ifndef Q_OS_WIN
    // File names are UTF-8 and messages English, whatever the terminal is set to.
    qputenv("LC_ALL", "C.UTF-8");
#endif
    turnWriteSignalsIntoErrors();
    const QCoreApplication app(argc, argv);
    const cli::Utf8Terminal terminal;
    try {
        const int exitCode = cli::CommandLine().run(commandLineArguments(argc, argv));
        // What was asked for on standard output is missing as much as a file would be.
        const QString problem = cli::outputProblem();
        if (problem.isEmpty())
            return exitCode;
        cli::printError(problem);
    } catch (const TessalyError& error) {
        cli::printError(cli::errorLine(error));
    } catch (const std::bad_alloc&) {
        cli::printError(cli::NoMemoryText);
    }
    return cli::Failed;
}
