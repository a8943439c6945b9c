// SPDX-License-Identifier: GPL-3.0-or-later
// Card runs on real FAT volumes. "limits" needs mtools, "kernel DEVICE" a root that may mount;
// run.sh beside this file starts them. ONLY=WORD in the environment picks the volumes with that
// word in their name.
#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include "card_runs.h"
#include "platform/error.h"

using namespace tessaly;
using namespace tessaly::fat;

namespace {

int failures = 0;

void tryIt(const QString& name, const std::function<void()>& stage) {
    if (!name.contains(qEnvironmentVariable("ONLY")))
        return;
    say("  " + name);
    try {
        stage();
        say("    kept");
    } catch (const TessalyError& error) {
        ++failures;
        say("    FAILED: " + error.description);
    }
}

// Those that differ in kind: width of the FAT, size of the clusters, root folder, label.
const QList<VolumeKind> Kinds = {
    {.bits = 12, .mebibytes = 2, .sectorsPerCluster = 1, .rootEntries = 112, .hasLabel = true},
    {.bits = 16, .mebibytes = 8, .sectorsPerCluster = 1},
    {.bits = 16, .mebibytes = 136, .sectorsPerCluster = 64, .rootEntries = 1024, .hasLabel = true},
    {.bits = 32, .mebibytes = 40, .sectorsPerCluster = 1},
    {.bits = 32, .mebibytes = 40, .sectorsPerCluster = 1, .hasLabel = true},
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QString stage = app.arguments().value(1), device = app.arguments().value(2);
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("card");
    if (stage != "limits" && (stage != "kernel" || device.isEmpty())) {
        say("tessaly-fat limits | kernel DEVICE");
        return 2;
    }
    for (const VolumeKind& kind : Kinds) {
        if (stage == "limits")
            tryIt(kind.name(), [&] {
                FatVolume volume(folder.filePath("volume.img"), kind);
                tryLimits(volume);
            });
        else
            for (const QString names : {"mixed", "winnt", "lower"}) {
                // The habits differ where entries are few.
                if (names != "mixed" && kind.bits != 12)
                    continue;
                tryIt(kind.name() + ", shortname=" + names, [&] {
                    FatVolume volume(device, kind, folder.filePath("card"),
                                     "iocharset=iso8859-1,shortname=" + names);
                    tryFlow(volume);
                    if (kind.hasFixedRoot())
                        tryCardOfWindows(volume);
                });
            }
    }
    say(failures ? QString("%1 FAILED").arg(failures) : QString("%1: all kept").arg(stage));
    return failures ? 1 : 0;
}
