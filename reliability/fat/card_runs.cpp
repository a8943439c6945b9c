// SPDX-License-Identifier: GPL-3.0-or-later
#include "card_runs.h"

#include <cstdio>

#include "fat_bench.h"

namespace tessaly::fat {

namespace {

// Projects of growing size, of which some fit onto a volume.
struct Growth {
    QString unit;
    qint64 end;    // surely too large
    qint64 spare;  // how many more may fit than the guards let through, seen as Windows writes
    std::function<void(FatBench&, qint64)> use;
    qint64 freeClusters;  // of the volume; 0 for all

    // The largest that the guards let through.
    qint64 largest(FatBench& bench) const {
        qint64 low = 0, high = end;
        while (high - low > 1) {
            const qint64 middle = low + (high - low) / 2;
            use(bench, middle);
            (bench.guardsPass() ? low : high) = middle;
        }
        require(low > 0 && low < end - 1, "the guards have no limit for " + unit);
        return low;
    }
};

QList<Growth> growths(const VolumeKind& kind) {
    // One entry is kept for the label whether there is one or not; a root folder that grows may
    // need a cluster more.
    const qint64 label = kind.hasLabel ? 0 : 1, cluster = kind.clusterBytes();
    const auto tiny = [](FatBench& bench, qint64 n) { bench.useTracks(n); };
    const auto large = [](FatBench& bench, qint64 n) { bench.useTracks(5, n); };
    const auto keep = [&](qint64 clusters) { return kind.bits == 12 ? 0 : clusters; };
    QList<Growth> found = {{"bytes in the last of five tracks", 12 << 20,
                            kind.hasFixedRoot() ? 0 : cluster, large,
                            keep(std::max<qint64>((1 << 20) / cluster, 40))}};
    if (kind.hasFixedRoot())
        found += {"tiny tracks by root entries", 2000, label, tiny, keep(3000)};
    if (kind.bits != 12)
        found += {"tiny tracks by clusters", 250, kind.hasFixedRoot() ? 0 : label, tiny, 100};
    return found;
}

}  // namespace

void say(const QString& line) {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void tryLimits(FatVolume& volume) {
    for (const Growth& growth : growths(volume.kind())) {
        FatBench bench(volume);
        bench.job.root = bench.scratch.path("card");
        volume.format(growth.freeClusters);
        bench.drives.volume = volume.geometry(FatNames::OneCase);
        const qint64 most = growth.largest(bench), tooMuch = most + 1 + growth.spare;
        const auto fits = [&](qint64 n) {
            volume.format(growth.freeClusters);
            growth.use(bench, n);
            return bench.copyAsWindows();
        };
        const QString what = QString::number(most) + ' ' + growth.unit;
        require(fits(most), what + " do not fit, the guards let them");
        require(volume.content() == bench.expectedCard(), what + ": something else is there");
        require(!fits(tooMuch), QString("%1 fit, the guards stop %2").arg(tooMuch).arg(what));
        say(QString("    %1 let through and fit, %2 do not").arg(what).arg(tooMuch));
    }
}

void tryFlow(FatVolume& volume) {
    FatBench bench(volume);
    volume.format();
    bench.mount();
    bench.putForeignFiles();
    volume.content();
    bench.mount(false);
    bench.useTracks(12, 70000);
    bench.useChime();
    bench.requireDone(bench.create(), "creation");
    bench.updateSettings("settings");

    bench.useNewFirmware();
    const FirmwareComparison comparison =
        compareFirmware(bench.files, bench.job.root, bench.job.folders);
    require(comparison.relation == FirmwareComparison::Relation::CardOlder, comparison.message);
    const auto before = bench.trackTimes();
    updateFirmware(bench.files, bench.job.root, bench.job.folders);
    bench.requireOnVolume(bench.expectedCard(), "firmware");
    require(bench.trackTimes() == before, "firmware: a track has a new time");
    bench.useTracks(3);
    bench.requireDone(bench.create(), "second creation");
    say("    used card, settings, firmware, second creation: clean, nothing missing or left over");
}

void tryCardOfWindows(FatVolume& volume) {
    FatBench bench(volume);
    volume.format();
    bench.mount();
    // Linux may want two entries for each of the three files that it deletes and makes anew, and
    // the gaps have one.
    const int more = bench.drives.volume.fatNames == FatNames::UpperCase ? 6 : 0;
    volume.unmount();
    bench.drives.volume = volume.geometry(FatNames::OneCase);
    const qint64 most =
        Growth{"tracks", 2000, 0, [](FatBench& b, qint64 n) { b.useTracks(n); }, 0}.largest(bench);
    const auto useCard = [&](qint64 tracks) {
        volume.format();
        bench.useTracks(tracks);
        require(bench.copyAsWindows(), "Windows' card does not fit");
        bench.mount(false);
    };
    useCard(most - more);
    bench.updateSettings("settings of a card that Windows wrote");
    say(QString("    settings of a card that Windows filled with %1 tracks").arg(most - more));
    if (more == 0)
        return;
    useCard(most);
    const Content before = bench.expectedCard();
    bench.project.txtCardTitle1 += "X";
    bench.requireStopped(bench.update(), error_number::TooManyRootEntries, before,
                         "settings of a card that Windows filled");
    say(QString("    with %1 they are refused, and nothing changes").arg(most));
}

}  // namespace tessaly::fat
