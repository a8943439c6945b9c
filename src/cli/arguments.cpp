#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/console.h"
#include "platform/paths.h"
#include "platform/system_folders.h"

namespace tessaly::cli {

namespace {

QString path(const std::string& argument) {
    return fromNativePath(QByteArray::fromStdString(argument));
}

// A number from 1 to 65535, decimal or with 0x in front.
std::string identifierProblem(const std::string& text) {
    const QString number = QString::fromStdString(text);
    const bool isHex = number.startsWith("0x", Qt::CaseInsensitive);
    bool ok = false;
    const uint value = isHex ? number.mid(2).toUInt(&ok, 16) : number.toUInt(&ok, 10);
    return ok && value >= 1 && value <= 65535 ? std::string()
                                              : "N is a number from 1 to 65535 or 0x1 to 0xFFFF";
}

quint16 identifierValue(const std::string& text) {
    return quint16(QString::fromStdString(text).toUInt(
        nullptr, text.size() > 2 && (text[1] == 'x' || text[1] == 'X') ? 16 : 10));
}

// The texts of all arguments, as CLI11 fills them in.
struct Texts {
    std::string appFolder;
    std::string project, source, output, hexOutput, identifier, card, file;
    bool titlesFromTags = false, append = false, giveEachItsFile = false, json = false,
         settingsOnly = false, noVerify = false;
    bool erase = false, yes = false, strict = false;
};

class CommandLine {
 public:
    explicit CommandLine(const std::string& programFolder) : programFolder_(programFolder) {
        app_.name("tessaly-cli");
        app_.require_subcommand(1);
        app_.set_version_flag("--version", TESSALY_VERSION);
        app_.add_option("--app-folder", texts_.appFolder,
                        "Folder that holds files/, firmware/ and Chimes/ (default: the user's "
                        "own files, then those that came with the program)")
            ->type_name("DIR");
        addImport();
        addCheck();
        addImage();
        addCreate();
        addVerify();
        addFirmware();
        addShow();
    }

    Request parse(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end());
        try {
            app_.parse(arguments);
            return {.run = run_, .exitCode = Done};
        } catch (const CLI::CallForHelp&) {
            std::cout << app_.help();
            return {.run = {}, .exitCode = Done};
        } catch (const CLI::CallForVersion& version) {
            std::cout << version.what() << '\n';
            return {.run = {}, .exitCode = Done};
        } catch (const CLI::ParseError& error) {
            printError(QString::fromUtf8(error.what()).simplified() +
                       " (tessaly-cli --help tells more)");
            return {.run = {}, .exitCode = Usage};
        }
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

    static void addPath(CLI::App* sub, const char* name, std::string& text, const char* what,
                        const char* type) {
        CLI::Option* option = sub->add_option(name, text, what)->required();
        option->type_name(type);
    }

    SupportFolders folders() const {
        return texts_.appFolder.empty() ? foldersOfProgram(path(programFolder_), userFolder())
                                        : supportFoldersIn(path(texts_.appFolder));
    }

    void addImport() {
        CLI::App* sub =
            command("import", "Make a project from a folder of MP3 files or a playlist",
                    "tessaly-cli import tour --output tour.crd2\n"
                    "  tessaly-cli import \"Summer Hits.m3u\" --output tour.crd2 --append\n\n"
                    "SOURCE is\n"
                    "  a folder that holds Music/<List>/*.mp3 and Speech/<Language>/<Title>.mp3,\n"
                    "  a folder that holds MP3 files itself: it makes one music list,\n"
                    "  or a playlist that a media player exported as .txt or .m3u: likewise.\n"
                    "Entries that a playlist import leaves out are named on standard error.",
                    [this] {
                        return importCommand({path(texts_.source), path(texts_.output),
                                              texts_.titlesFromTags, texts_.append,
                                              texts_.giveEachItsFile});
                    });
        addPath(sub, "source", texts_.source, "Folder or playlist", "SOURCE");
        addPath(sub, "--output,-o", texts_.output, "Project file to write", "P.crd2");
        sub->add_flag("--append", texts_.append,
                      "Add the one music list to the project that P.crd2 holds");
        sub->add_flag("--give-each-its-file", texts_.giveEachItsFile,
                      "Give tracks that have the name of another the files they were made of");
        sub->add_flag("--titles-from-tags", texts_.titlesFromTags,
                      "Name the tracks below Music/ by their title tag, as the other imports do "
                      "anyway");
    }

    void addCheck() {
        CLI::App* sub =
            command("check", "Say what is wrong with a project before a card is written",
                    "tessaly-cli check tour.crd2 --card /media/me/CARD", [this] {
                        return checkCommand(
                            {path(texts_.project), path(texts_.card), texts_.json, texts_.strict});
                    });
        addPath(sub, "project", texts_.project, "Project file", "P.crd2");
        sub->add_option("--card", texts_.card, "Judge this card too")->type_name("DIR");
        sub->add_flag("--json", texts_.json, "Print JSON");
        sub->add_flag("--strict", texts_.strict, "End with 3 on warnings, too");
    }

    void addImage() {
        CLI::App* sub = command(
            "image", "Write the player's configuration image",
            "tessaly-cli image tour.crd2 --output tour.bin --hex tour.xd3 --identifier 0x3A07",
            [this] {
                ImageOptions options{
                    path(texts_.project), path(texts_.output), path(texts_.hexOutput), {}};
                if (!texts_.identifier.empty())
                    options.identifier = identifierValue(texts_.identifier);
                return imageCommand(options);
            });
        addPath(sub, "project", texts_.project, "Project file", "P.crd2");
        addPath(sub, "--output,-o", texts_.output, "Image to write", "F.bin");
        sub->add_option("--hex", texts_.hexOutput, "Write it as Intel HEX too")->type_name("F.xd3");
        sub->add_option("--identifier", texts_.identifier,
                        "First two bytes of the image (default: drawn at random)")
            ->type_name("N")
            ->check(identifierProblem);
    }

    void addCreate() {
        CLI::App* sub = command(
            "create", "Write a card: erase it, copy everything, read it back",
            "tessaly-cli create tour.crd2 --card /media/me/CARD\n\n"
            "DIR is a removable drive's root, or a folder that is empty or holds nothing but a "
            "card's files; --erase takes any other folder, but no whole fixed disk.",
            [this] {
                return createCommand({path(texts_.project), path(texts_.card), texts_.settingsOnly,
                                      texts_.noVerify, texts_.erase, texts_.yes, texts_.strict},
                                     folders());
            });
        addPath(sub, "project", texts_.project, "Project file", "P.crd2");
        addPath(sub, "--card", texts_.card, "The card", "DIR");
        sub->add_flag("--settings-only", texts_.settingsOnly,
                      "Leave the numbered MP3 files, write the settings and the firmware");
        sub->add_flag("--no-verify", texts_.noVerify, "Do not read the files back");
        sub->add_flag("--erase", texts_.erase, "Erase whatever else is in the folder");
        sub->add_flag("--yes", texts_.yes, "Do not ask");
        sub->add_flag("--strict", texts_.strict,
                      "Write nothing and end with 3 when the checks warn");
    }

    void addVerify() {
        CLI::App* sub = command("verify", "Compare a card with its own project",
                                "tessaly-cli verify /media/me/CARD",
                                [this] { return verifyCommand(path(texts_.card)); });
        addPath(sub, "card", texts_.card, "The card", "DIR");
    }

    void addFirmware() {
        CLI::App* sub =
            command("firmware", "Compare the firmware on a card and update it",
                    "tessaly-cli firmware /media/me/CARD", [this] {
                        return firmwareCommand({path(texts_.card), texts_.yes}, folders());
                    });
        addPath(sub, "card", texts_.card, "The card", "DIR");
        sub->add_flag("--yes", texts_.yes, "Do not ask");
    }

    void addShow() {
        CLI::App* sub = command("show", "Show what is in a project file, an image or a HEX file",
                                "tessaly-cli show tour.crd2 --json", [this] {
                                    return showCommand({path(texts_.file), texts_.json});
                                });
        addPath(sub, "file", texts_.file, "The file, told by its content", "FILE");
        sub->add_flag("--json", texts_.json, "Print JSON");
    }

    const std::string programFolder_;
    CLI::App app_{"Prepares memory cards for the TRL740 player."};
    Texts texts_;
    std::function<int()> run_;
};

}  // namespace

Request parseArguments(const std::vector<std::string>& arguments,
                       const std::string& programFolder) {
    // The callbacks refer to the command line: it lives as long as the request.
    const auto line = std::make_shared<CommandLine>(programFolder);
    Request request = line->parse(arguments);
    if (request.run)
        request.run = [line, run = request.run] { return run(); };
    return request;
}

}  // namespace tessaly::cli
