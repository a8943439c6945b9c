// Card runs on real FAT volumes. "limits" needs mtools, "fuse" fusefat, and "kernel DEVICE" a root
// that may mount; run.sh beside this file starts them all. ONLY=WORD in the environment picks the
// volumes with that word in their name.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include "stages.h"

using namespace tessaly;
using namespace tessaly::fat;

namespace {

int failures = 0;

void tryIt(const QString& name, const std::function<void()>& stage) {
    if (!name.contains(qEnvironmentVariable("ONLY")))
        return;
    QElapsedTimer timer;
    timer.start();
    say("  " + name);
    try {
        stage();
        say(QString("    kept, %1 s").arg(timer.elapsed() / 1000.0, 0, 'f', 1));
    } catch (const TessalyError& error) {
        ++failures;
        say("    FAILED: " + error.description);
    }
}

const QList<VolumeKind> Kinds = {
    {.bits = 12, .mebibytes = 2, .sectorsPerCluster = 1},
    {.bits = 12, .mebibytes = 2, .sectorsPerCluster = 4},
    {.bits = 12, .mebibytes = 2, .sectorsPerCluster = 1, .rootEntries = 112, .hasLabel = true},
    {.bits = 16, .mebibytes = 8, .sectorsPerCluster = 1},
    {.bits = 16, .mebibytes = 8, .sectorsPerCluster = 1, .hasLabel = true},
    {.bits = 16, .mebibytes = 16, .sectorsPerCluster = 4, .rootEntries = 128},
    {.bits = 16, .mebibytes = 32, .sectorsPerCluster = 8, .hasLabel = true},
    {.bits = 16, .mebibytes = 136, .sectorsPerCluster = 64, .rootEntries = 1024},
    {.bits = 32, .mebibytes = 40, .sectorsPerCluster = 1},
    {.bits = 32, .mebibytes = 40, .sectorsPerCluster = 1, .hasLabel = true},
};

// FAT32 with fewer clusters than it should have.
const VolumeKind SmallFat32 = {.bits = 32, .mebibytes = 40, .sectorsPerCluster = 8};

void limits(const QString& folder) {
    for (const VolumeKind& kind : Kinds)
        tryIt(nameOf(kind), [&] { tryLimits(folder + "/volume.img", kind); });
}

void fuse(const QString& folder) {
    for (const VolumeKind& kind : Kinds) {
        const auto volume = fuseVolume(folder + "/volume.img", folder + "/card");
        if (kind.hasLabel) {
            tryIt(nameOf(kind), [&] { tryShownLabel(*volume, kind); });
            continue;
        }
        tryIt(nameOf(kind), [&] {
            tryFlow(*volume, kind);
            // fusefat searches the folder from its start for every name: 500 take many minutes.
            if (kind.rootEntries <= 512)
                tryFullCard(*volume, kind);
        });
    }
}

void kernel(const QString& folder, const QString& device) {
    const QString codes = "iocharset=iso8859-1,shortname=";
    for (const QString names : {"mixed", "winnt", "lower"})
        for (const VolumeKind& kind : Kinds) {
            // The habits differ where entries are few.
            if (names != "mixed" && (kind.mebibytes > 8 || !kind.hasLabel))
                continue;
            const auto volume = kernelVolume(device, folder + "/card", codes + names);
            tryIt(nameOf(kind) + ", shortname=" + names, [&] {
                tryFlow(*volume, kind);
                tryFullCard(*volume, kind);
                if (kind.bits != 32)
                    tryCardOfWindows(*volume, kind);
            });
        }
    const auto volume = kernelVolume(device, folder + "/card", codes + "mixed");
    tryIt(nameOf(SmallFat32), [&] { trySmallFat32(*volume, SmallFat32); });
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const QString stage = arguments.value(1);
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("card");
    if (stage == "limits")
        limits(folder.path());
    else if (stage == "fuse")
        fuse(folder.path());
    else if (stage == "kernel" && arguments.size() == 3)
        kernel(folder.path(), arguments[2]);
    else {
        say("tessaly-fat limits | fuse | kernel DEVICE");
        return 2;
    }
    say(failures ? QString("%1 FAILED").arg(failures) : QString("%1: all kept").arg(stage));
    return failures ? 1 : 0;
}
