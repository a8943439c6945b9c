#include "card/card_files.h"
#include "card/firmware.h"
#include "stages.h"

namespace tessaly::fat {

namespace {

using Content = QMap<QString, QByteArray>;
using Outcome = CardRunReport::Outcome;

const QByteArray NewFirmware = ":0402200001020304D0\r\n:00000001FF\r\n";

// A bench whose card is the volume.
class FlowBench : public TrackBench {
 public:
    FlowBench(MountedVolume& volume, const VolumeKind& kind) : volume_(volume) {
        volume.unmount();
        format(volume.image(), kind);
        job.root = volume.folder();
        if (volume.canTruncate())
            return;
        files.onOperation = [this] {
            const QString operation = files.operations.last();
            const QString path = volume_.folder() + '/' + operation.section(' ', 1);
            if (operation.startsWith("create ") && QFile::exists(path))
                QFile::remove(path);
        };
    }

    void mount() {
        volume_.mount();
        drives.volume = volume_.geometry();
    }

    void shrink(qint64 freeClusters) { keepFreeClusters(volume_.image(), freeClusters); }

    // Takes the volume off, looks at it from outside, and mounts it again.
    void requireOnVolume(const Content& expected, const QString& when) {
        const Content found = onVolume(when);
        for (auto file = expected.begin(); file != expected.end(); ++file)
            require(
                found.value(file.key()) == file.value(),
                QString("%1: %2 is not on the volume as it should be, it has %3 bytes and not %4")
                    .arg(when, file.key())
                    .arg(found.value(file.key()).size())
                    .arg(file.value().size()));
        for (const QString& name : found.keys())
            require(expected.contains(name), QString("%1: %2 is left over").arg(when, name));
        mount();
    }

    void requireDone(const CardRunReport& report, const QString& what) {
        require(report.outcome == Outcome::Done, what + ": " + observer.text);
        require(report.isVerified, what + ": nothing was read back");
    }

    // The guards stop the run and nothing on the volume changes.
    void requireStopped(int error, const Content& before, const QString& what) {
        const CardRunReport report = create();
        require(
            report.outcome == Outcome::Failed && report.error->number == error,
            QString("%1: not stopped by error %2 but: %3").arg(what).arg(error).arg(observer.text));
        requireOnVolume(before, what);
    }

    // Without its guards the run must end for want of room.
    void requireNoRoom(const QString& what) {
        constexpr int NoSpaceLeft = 28;
        const VolumeGeometry real =
            std::exchange(drives.volume, {.clusterBytes = 512, .freeBytes = qint64(1) << 40});
        const CardRunReport report = create();
        drives.volume = real;
        require(report.outcome == Outcome::Failed, what + " would have fitted");
        // fusefat calls it something else.
        if (volume_.canTruncate())
            require(report.error->number == NoSpaceLeft, what + ": " + observer.text);
        // What is there is half a card, but a sound volume.
        onVolume(what);
        mount();
    }

    // Ends unmounted.
    Content onVolume(const QString& when) {
        volume_.unmount();
        try {
            requireClean(volume_.image());
            return contentOf(volume_.image());
        } catch (const TessalyError& error) {
            throw TessalyError(error.number, when + ": " + error.description);
        }
    }

    QMap<QString, QDateTime> trackTimes() const {
        QMap<QString, QDateTime> times;
        for (const QFileInfo& file :
             QDir(volume_.folder()).entryInfoList({"0???.mp3"}, QDir::Files))
            times.insert(file.fileName(), file.lastModified());
        return times;
    }

    void changeSettings() { project.txtCardTitle1 = project.txtCardTitle1 + "X"; }

    void put(const QString& name, const QByteArray& bytes) {
        const QString path = volume_.folder() + '/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() && file.flush(),
                path + ": " + file.errorString());
    }

    // What a card gets in cameras, on other PCs and by people.
    void putForeignFiles() {
        put("System Volume Information/WPSettings.dat", "settings");
        put("System Volume Information/IndexerVolumeGuid", QByteArray(76, 'g'));
        put("DCIM/100CARD/IMG_0001.JPG", QByteArray(20000, 'j'));
        put("a/very/deep/folder/of/somebody/with a long name.txt", "deep");
        put("A file with a rather long name that takes several entries.document", "long");
        put(".hidden", "hidden");
        put("0001.mp3", "another card's first track");
        put("README.TXT", "protected");
        QFile::setPermissions(volume_.folder() + "/README.TXT", QFile::ReadOwner);
        for (int i = 0; i < 40; ++i)
            put(QString("many/%1.dat").arg(i), QByteArray(i, 'm'));
    }

 private:
    MountedVolume& volume_;
};

// An update of the settings: Done, and the tracks are as they were.
void updateSettings(FlowBench& bench, const QString& what) {
    const auto before = bench.trackTimes();
    bench.changeSettings();
    bench.requireDone(bench.update(), what);
    bench.requireOnVolume(bench.expectedCard(), what);
    require(!before.isEmpty() && bench.trackTimes() == before, what + ": a track has a new time");
}

// A card that is full to the last is created, updated, found too small for `larger`, run full with
// `tooLarge`, and created again.
void tryFull(FlowBench& bench, const std::function<void(qint64)>& useProject, qint64 most,
             qint64 tooLarge, int error) {
    const auto create = [&](const QString& what) {
        useProject(most);
        bench.requireDone(bench.create(), what);
        bench.requireOnVolume(bench.expectedCard(), what);
    };
    create("a full card");
    updateSettings(bench, "settings of a full card");
    const Content whole = bench.expectedCard();
    useProject(most + 1);
    bench.requireStopped(error, whole, "one too many");
    useProject(tooLarge);
    bench.requireNoRoom("too many");
    create("a full card after a run that failed");

    // The old firmware stays until the new one is whole, which needs room for both.
    const Content before = bench.expectedCard();
    bench.scratch.write("app/firmware/0000.hex", NewFirmware);
    QString result = "done";
    try {
        updateFirmware(bench.files, bench.job.root, bench.job.folders);
    } catch (const TessalyError& failed) {
        result = failed.description.section('/', -1);
        require(result.startsWith("0000.hex: "), failed.description);
    }
    say("    firmware of a full card: " + result);
    bench.requireOnVolume(result == "done" ? bench.expectedCard() : before,
                          "firmware of a full card");
    // The settings bring it along where there is no room for both.
    updateSettings(bench, "firmware with the settings");
}

}  // namespace

void tryFlow(MountedVolume& volume, const VolumeKind& kind) {
    FlowBench bench(volume, kind);
    bench.mount();
    bench.putForeignFiles();
    bench.onVolume("a used card");
    bench.mount();

    bench.useTracks(12, 70000);
    bench.useChime();
    bench.requireDone(bench.create(), "creation");
    bench.requireOnVolume(bench.expectedCard(), "creation");
    updateSettings(bench, "settings");

    bench.scratch.write("app/firmware/0000.hex", NewFirmware);
    const FirmwareComparison comparison =
        compareFirmware(bench.files, bench.job.root, bench.job.folders);
    require(comparison.relation == FirmwareComparison::Relation::CardOlder, comparison.message);
    const auto before = bench.trackTimes();
    updateFirmware(bench.files, bench.job.root, bench.job.folders);
    bench.requireOnVolume(bench.expectedCard(), "firmware");
    require(bench.trackTimes() == before, "firmware: a track has a new time");

    bench.useTracks(3);
    bench.requireDone(bench.create(), "second creation");
    bench.requireOnVolume(bench.expectedCard(), "second creation");
    volume.unmount();
    say("    used card, settings, firmware, second creation: clean, nothing missing or left over");
}

void tryFullCard(MountedVolume& volume, const VolumeKind& kind) {
    const qint64 clusterBytes = kind.sectorsPerCluster * 512;
    const auto most = [](FlowBench& bench, qint64 end, const auto& useProject) {
        bench.mount();
        const qint64 found = largest(end, [&](qint64 n) {
            useProject(n);
            return bench.guardsPass();
        });
        require(found > 0 && found < end - 1, "the guards have no limit");
        return found;
    };
    if (kind.bits != 32) {
        FlowBench bench(volume, kind);
        const auto tiny = [&](qint64 n) { bench.useTracks(int(n)); };
        const qint64 n = most(bench, 2000, tiny);
        const qint64 tooMany = n + (kind.hasLabel ? 1 : 2);
        tryFull(bench, tiny, n, tooMany, error_number::TooManyRootEntries);
        say(QString("    %1 tiny tracks fill the root folder, %2 do not fit").arg(n).arg(tooMany));
    }
    FlowBench bench(volume, kind);
    if (kind.bits != 12)
        bench.shrink(std::max<qint64>((1 << 20) / clusterBytes, 40));
    const auto large = [&](qint64 n) { bench.useTracks(5, n); };
    const qint64 n = most(bench, 4 << 20, large);
    const qint64 tooMany = n + 1 + (kind.bits == 32 ? clusterBytes : 0);
    tryFull(bench, large, n, tooMany, error_number::DoesNotFit);
    say(QString("    a last track of %1 bytes fills the volume, %2 do not fit")
            .arg(n)
            .arg(tooMany));
    volume.unmount();
}

void tryCardOfWindows(MountedVolume& volume, const VolumeKind& kind) {
    FlowBench bench(volume, kind);
    bench.mount();
    bench.drives.volume = geometryOf(volume.image(), FatNames::OneCase);
    const qint64 most = largest(2000, [&](qint64 n) {
        bench.useTracks(int(n));
        return bench.guardsPass();
    });
    const auto useCard = [&](qint64 tracks) {
        volume.unmount();
        format(volume.image(), kind);
        bench.useTracks(int(tracks));
        require(takesFiles(volume.image(), bench.writeElsewhere()), "Windows' card does not fit");
        bench.mount();
    };
    // Linux may want two entries for each of the three files that it deletes and makes anew, and
    // the gaps have one.
    const int more = volume.geometry().fatNames == FatNames::UpperCase ? 6 : 0;
    useCard(most - more);
    updateSettings(bench, "settings of a card that Windows wrote");
    say(QString("    settings of a card that Windows filled with %1 tracks").arg(most - more));
    if (more > 0) {
        useCard(most);
        const Content before = bench.expectedCard();
        bench.changeSettings();
        const CardRunReport report = bench.update();
        require(report.outcome == Outcome::Failed &&
                    report.error->number == error_number::TooManyRootEntries,
                "settings of a card that Windows filled: " + bench.observer.text);
        bench.requireOnVolume(before, "settings of a card that Windows filled");
        say(QString("    with %1 they are refused, and nothing changes").arg(most));
    }
    volume.unmount();
}

void tryShownLabel(MountedVolume& volume, const VolumeKind& kind) {
    FlowBench bench(volume, kind);
    bench.mount();
    bench.useTracks(3);
    bench.requireDone(bench.create(), "creation");
    volume.unmount();
    // The copy of the label in the boot sector is left, which no driver reads.
    const QStringList complaints = complaintsAbout(volume.image());
    require(complaints.value(0).startsWith("Label in boot sector") && complaints.size() == 3,
            complaints.join(' '));
    require(contentOf(volume.image()) == bench.expectedCard(), "something else is on the volume");
    say("    the label is shown as a file and erased like one; the card is right");
}

void trySmallFat32(MountedVolume& volume, const VolumeKind& kind) {
    FlowBench bench(volume, kind);
    bench.mount();
    bench.useTracks(300);
    bench.requireDone(bench.create(), "creation");
    volume.unmount();
    const QStringList complaints = complaintsAbout(volume.image());
    require(complaints.size() == 3 && complaints.join(' ').contains("but has only"),
            complaints.join(' '));
    bench.mount();
    Content found;
    for (const QFileInfo& file :
         QDir(volume.folder()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        QFile in(file.filePath());
        require(in.open(QFile::ReadOnly), in.fileName());
        found.insert(file.fileName(), in.readAll());
    }
    require(found == bench.expectedCard(), "something else is on the volume");
    volume.unmount();
    say("    300 tracks go into a root folder that can grow");
}

}  // namespace tessaly::fat
