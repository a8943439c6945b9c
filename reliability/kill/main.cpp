// SPDX-License-Identifier: GPL-3.0-or-later
// tessaly-kill: processes that save and write cards are killed; nothing may be lost.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>

#include "killer.h"

int main(int argc, char** argv) {
    using namespace tessaly::kill;
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption saves("save", "Kill N saves.", "N", "0");
    const QCommandLineOption cards("card", "Kill N card runs.", "N", "0");
    const QCommandLineOption seed("seed", "Draw the moments from this seed.", "SEED",
                                  QString::number(std::random_device()()));
    parser.addOptions({saves, cards, seed});
    parser.addHelpOption();
    parser.process(app);
    std::printf("seed %s\n", qPrintable(parser.value(seed)));
    std::mt19937 random(parser.value(seed).toUInt());
    int failures = 0;
    if (const int runs = parser.value(saves).toInt(); runs > 0)
        failures += killSaves(runs, random);
    if (const int runs = parser.value(cards).toInt(); runs > 0)
        failures += killCardRuns(runs, random);
    std::printf(failures == 0 ? "Nothing was lost.\n" : "%d FAILURES\n", failures);
    return failures == 0 ? 0 : 1;
}
