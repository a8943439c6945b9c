#include "card_runs.h"

#include <cstdio>

#include "card/card_names.h"
#include "card/firmware.h"
#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "support/card_bench.h"

namespace tessaly::fat {

namespace {

using Content = QMap<QString, QByteArray>;
using Outcome = CardRunReport::Outcome;

const VolumeGeometry Boundless = {.clusterBytes = 512, .freeBytes = qint64(1) << 40};

// A bench whose card is the volume, with as many tracks as a test wants.
class FatBench : public test::CardBench {
 public:
    explicit FatBench(FatVolume& volume) : volume_(volume) { job.root = volume.folder(); }

    // Makes the project one of tracks of a byte and more, each of its own; the last has
    // `lastBytes`.
    void useTracks(qint64 count, qint64 lastBytes = 1) {
        project = Project();
        for (int i = 0; i < count; ++i) {
            const QString name = QString("src/%1.mp3").arg(i);
            const qint64 size = i == count - 1 ? lastBytes : 1 + i % 3;
            if (QFileInfo(scratch.path(name)).size() != size) {
                // No two clusters are alike.
                QByteArray content(size, char('a' + i % 26));
                for (qint64 at = 0; at + 8 <= size; at += 256)
                    content.replace(at, 8, QByteArray::number(10000000 + at / 256));
                scratch.write(name, content);
            }
            test::addTrack(project, "List", QString("Track %1").arg(i), scratch.path(name));
        }
    }

    // Whether the guards let the project onto the card; nothing is written.
    bool guardsPass() {
        constexpr int BehindTheGuards = 316;
        observer.keepGoingNow = [this] { return writer.stepCode != BehindTheGuards; };
        const CardRunReport report = create();
        observer.keepGoingNow = [] { return true; };
        const int number = report.error ? report.error->number : 0;
        require(number == error_number::Stopped || number == error_number::DoesNotFit ||
                    number == error_number::TooManyRootEntries,
                "stopped for another reason than room: " + observer.text);
        return number == error_number::Stopped;
    }

    // What must be on the card after a run, from the sources alone.
    Content expectedCard() const {
        Project numbered = project;
        const QByteArray image = BuildConfigImage(numbered, *job.identifier);
        Content card = {{card_name::Settings, EncodeImageAsHex(image)},
                        {card_name::Firmware, scratch.read("app/firmware/0000.hex")},
                        {card_name::Calibration, scratch.read("app/files/9998.mp3")},
                        {card_name::FixedConfiguration, scratch.read("app/files/0007.cfg")},
                        {card_name::Project, encodeProject(numbered)}};
        if (numbered.buttPlayIntChime)
            card.insert(card_name::Chime, scratch.read("chime.mp3"));
        for (const TrackRecord& record : numbered.TrackTable)
            if (isTrackFile(record))
                card.insert(card_name::track(typeTagText(record)),
                            scratch.read("src/" + record.sourcePath.text().section('/', -1)));
        return card;
    }

    // Writes the card into an ordinary folder and copies its files into the volume as Windows does.
    bool copyAsWindows() {
        const VolumeGeometry geometry = std::exchange(drives.volume, Boundless);
        const QString root = std::exchange(job.root, scratch.makeFolder("elsewhere"));
        const CardRunReport report = create();
        require(report.outcome == Outcome::Done, observer.text);
        QStringList written;
        for (const CardRunReport::File& file : report.files)
            written.append(scratch.path("elsewhere/" + file.name));
        job.root = root;
        drives.volume = geometry;
        return volume_.takesFiles(written);
    }

    void mount(bool isFresh = true) { drives.volume = volume_.mount(isFresh); }

    // Takes the volume off, looks at it from outside, and mounts it again.
    void requireOnVolume(const Content& expected, const QString& when) {
        const Content found = volume_.content();
        for (const QString& name : (found.keys() + expected.keys()))
            require(found.value(name) == expected.value(name) && expected.contains(name),
                    QString("%1: %2 has %3 bytes and should have %4")
                        .arg(when, name)
                        .arg(found.value(name).size())
                        .arg(expected.contains(name) ? expected[name].size() : -1));
        mount(false);
    }
    void requireDone(const CardRunReport& report, const QString& what) {
        require(report.outcome == Outcome::Done && report.isVerified, what + ": " + observer.text);
        requireOnVolume(expectedCard(), what);
    }
    // The run ends with an error, and nothing on the volume changes.
    void requireStopped(const CardRunReport& report, int error, const Content& before,
                        const QString& what) {
        require(report.error && report.error->number == error, what + ": " + observer.text);
        requireOnVolume(before, what);
    }

    // Without its guards the run must end for want of room, on a sound volume.
    void requireNoRoom(const QString& what) {
        constexpr int NoSpaceLeft = 28;
        drives.volume = Boundless;
        const CardRunReport report = create();
        require(report.error && report.error->number == NoSpaceLeft, what + ": " + observer.text);
        volume_.content();
        mount(false);
    }

    // Done, and the tracks are as they were.
    void updateSettings(const QString& what) {
        const auto before = trackTimes();
        project.txtCardTitle1 += "X";
        requireDone(update(), what);
        require(!before.isEmpty() && trackTimes() == before, what + ": a track has a new time");
    }

    QMap<QString, QDateTime> trackTimes() const {
        QMap<QString, QDateTime> times;
        for (const QFileInfo& file : QDir(job.root).entryInfoList({"0???.mp3"}, QDir::Files))
            times.insert(file.fileName(), file.lastModified());
        return times;
    }

    // What a card gets in cameras, on other PCs and by people.
    void putForeignFiles() {
        QMap<QString, QByteArray> contents = {
            {"System Volume Information/WPSettings.dat", "settings"},
            {"DCIM/100CARD/IMG_0001.JPG", QByteArray(20000, 'j')},
            {"a/very/deep/folder/of/somebody/with a long name.txt", "deep"},
            {"A file with a rather long name that takes several entries.document", "long"},
            {".hidden", "hidden"},
            {"0001.mp3", "another card's first track"},
            {"README.TXT", "protected"}};
        for (int i = 0; i < 40; ++i)
            contents.insert(QString("many/%1.dat").arg(i), QByteArray(i, 'm'));
        for (auto put = contents.begin(); put != contents.end(); ++put) {
            QFile file(job.root + '/' + put.key());
            QDir().mkpath(QFileInfo(file).path());
            require(file.open(QFile::WriteOnly) && file.write(*put) == put->size() && file.flush(),
                    file.fileName() + ": " + file.errorString());
        }
        QFile::setPermissions(job.root + "/README.TXT", QFile::ReadOwner);
    }

    void useNewFirmware() {
        scratch.write("app/firmware/0000.hex", ":0402200001020304D0\r\n:00000001FF\r\n");
    }

 private:
    FatVolume& volume_;
};

// Projects of growing size, of which some fit onto a volume.
struct Growth {
    QString unit;
    qint64 end;    // surely too large
    qint64 spare;  // how many more may fit than the guards let through, seen as Windows writes
    int error;
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
                            kind.hasFixedRoot() ? 0 : cluster, error_number::DoesNotFit, large,
                            keep(std::max<qint64>((1 << 20) / cluster, 40))}};
    if (kind.hasFixedRoot())
        found += {"tiny tracks by root entries",    2000, label,
                  error_number::TooManyRootEntries, tiny, keep(3000)};
    if (kind.bits != 12)
        found += {"tiny tracks by clusters", 250,  kind.hasFixedRoot() ? 0 : label,
                  error_number::DoesNotFit,  tiny, 100};
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

void tryFullCards(FatVolume& volume) {
    for (const Growth& growth : growths(volume.kind())) {
        FatBench bench(volume);
        volume.format(growth.freeClusters);
        bench.mount();
        const qint64 most = growth.largest(bench);
        const qint64 tooMuch = most + 1 + growth.spare;
        const auto create = [&](const QString& what) {
            growth.use(bench, most);
            bench.requireDone(bench.create(), what);
        };
        create("a full card");
        bench.updateSettings("settings of a full card");
        const Content whole = bench.expectedCard();
        growth.use(bench, most + 1);
        bench.requireStopped(bench.create(), growth.error, whole, "one too many");
        growth.use(bench, tooMuch);
        bench.requireNoRoom("too many");
        create("a full card after a run that failed");

        // The old firmware stays until the new one is whole, which needs room for both.
        const Content before = bench.expectedCard();
        bench.useNewFirmware();
        bool isDone = true;
        try {
            updateFirmware(bench.files, bench.job.root, bench.job.folders);
        } catch (const TessalyError& failed) {
            isDone = false;
            require(failed.description.contains("0000.hex: "), failed.description);
        }
        bench.requireOnVolume(isDone ? bench.expectedCard() : before, "firmware of a full card");
        // The settings bring it along where there is no room for both.
        bench.updateSettings("firmware with the settings");
        say(QString("    %1 %2 fill the card, %3 do not fit; the firmware %4")
                .arg(most)
                .arg(growth.unit)
                .arg(tooMuch)
                .arg(isDone ? "is changed" : "has no room"));
    }
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
        Growth{"tracks", 2000, 0, 0, [](FatBench& b, qint64 n) { b.useTracks(n); }, 0}.largest(bench);
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
