// tessaly-kill: processes that save and write cards are killed; nothing may be lost.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

#include "kills.h"

int main(int argc, char** argv) {
    using namespace tessaly::kill;
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption saves("save", "Kill N saves.", "N", "0");
    const QCommandLineOption cards("card", "Kill N card runs.", "N", "0");
    const QCommandLineOption seedOption("seed", "Draw the moments from this seed.", "SEED");
    const QCommandLineOption folderOption("folder", "Work below this folder.", "DIR",
                                          QDir::tempPath());
    parser.addOptions({saves, cards, seedOption, folderOption});
    parser.addHelpOption();
    parser.process(app);
    const uint seed =
        parser.isSet(seedOption) ? parser.value(seedOption).toUInt() : std::random_device()();
    std::printf("seed %u\n", seed);
    const QTemporaryDir folder(parser.value(folderOption) + "/tessaly kill XXXXXX");
    int failures = folder.isValid() ? 0 : 1;
    std::mt19937 random(seed);
    if (const int runs = parser.value(saves).toInt(); runs > 0)
        failures += killSaves(runs, random, folder.filePath("saves"));
    if (const int runs = parser.value(cards).toInt(); runs > 0)
        failures += killCardRuns(runs, random, folder.filePath("cards"));
    std::printf(failures == 0 ? "Nothing was lost.\n" : "%d FAILURES\n", failures);
    return failures == 0 ? 0 : 1;
}
