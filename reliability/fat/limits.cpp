#include <cstdio>

#include "card/card_files.h"
#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "stages.h"

namespace tessaly::fat {

void say(const QString& line) {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void require(bool holds, const QString& what) {
    if (!holds)
        throw TessalyError(error_number::BadTarget, what);
}

void TrackBench::useTracks(int count, qint64 lastBytes) {
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

bool TrackBench::guardsPass() {
    observer.keepGoingNow = [this] { return observer.progress.stepCode != step_code::GuardTracks; };
    const CardRunReport report = create();
    observer.keepGoingNow = [] { return true; };
    require(report.outcome == CardRunReport::Outcome::Failed, "the run did not stop");
    const int number = report.error->number;
    require(number == error_number::Stopped || number == error_number::DoesNotFit ||
                number == error_number::TooManyRootEntries,
            QString::fromUtf8(report.error->what()));
    return number == error_number::Stopped;
}

QMap<QString, QByteArray> TrackBench::expectedCard() const {
    Project numbered = project;
    const QByteArray image = BuildConfigImage(numbered, *job.identifier);
    QMap<QString, QByteArray> card = {
        {card_name::Settings, EncodeImageAsHex(image)},
        {card_name::Firmware, scratch.read("app/firmware/0000.hex")},
        {card_name::Calibration, scratch.read("app/files/9998.mp3")},
        {card_name::FixedConfiguration, scratch.read("app/files/0007.cfg")},
        {card_name::Project, encodeProject(numbered)}};
    if (numbered.buttPlayIntChime)
        card.insert(card_name::Chime, scratch.read("chime.mp3"));
    for (const TrackRecord& record : numbered.TrackTable)
        if (isTrackFile(record)) {
            QFile source(record.sourcePath.text());
            require(source.open(QFile::ReadOnly), source.fileName());
            card.insert(card_name::track(typeTagText(record)), source.readAll());
        }
    return card;
}

QStringList TrackBench::writeElsewhere() {
    const VolumeGeometry volume = std::exchange(drives.volume, {.freeBytes = qint64(1) << 40});
    const QString root = std::exchange(job.root, scratch.makeFolder("elsewhere"));
    const CardRunReport report = create();
    require(report.outcome == CardRunReport::Outcome::Done, observer.text);
    QStringList written;
    for (const WrittenFile& file : report.files)
        written.append(scratch.path("elsewhere/" + file.name));
    job.root = root;
    drives.volume = volume;
    return written;
}

qint64 largest(qint64 end, const std::function<bool(qint64)>& passes) {
    qint64 low = 0;
    while (end - low > 1) {
        const qint64 middle = low + (end - low) / 2;
        (passes(middle) ? low : end) = middle;
    }
    return low;
}

namespace {

// Of a sequence of projects, the largest that the guards let through fits, and the next but `spare`
// does not.
void tryLimit(const QString& image, const QString& what, qint64 end, qint64 spare,
              TrackBench& bench, const std::function<void(qint64)>& useProject,
              const std::function<void()>& makeVolume) {
    makeVolume();
    bench.drives.volume = geometryOf(image, FatNames::OneCase);
    const qint64 most = largest(end, [&](qint64 n) {
        useProject(n);
        return bench.guardsPass();
    });
    const auto fits = [&](qint64 n) {
        makeVolume();
        useProject(n);
        const bool fit = takesFiles(image, bench.writeElsewhere());
        if (fit) {
            requireClean(image);
            require(contentOf(image) == bench.expectedCard(),
                    QString("%1 %2: the volume holds something else").arg(n).arg(what));
        }
        return fit;
    };
    require(most > 0 && most < end - 1, "the guards have no limit for " + what);
    require(fits(most), QString("%1 %2 do not fit, the guards let them").arg(most).arg(what));
    require(!fits(most + 1 + spare),
            QString("%1 %2 fit, the guards stop them").arg(most + 1 + spare).arg(what));
    say(QString("    %1 %2 let through and fit, %3 do not")
            .arg(most)
            .arg(what)
            .arg(most + 1 + spare));
}

}  // namespace

void tryLimits(const QString& image, const VolumeKind& kind) {
    TrackBench bench;
    const bool grows = kind.bits == 32;
    const auto make = [&](qint64 keep) {
        return [&, keep] {
            format(image, kind);
            if (kind.bits != 12)
                keepFreeClusters(image, keep);
        };
    };
    const auto tiny = [&](qint64 n) { bench.useTracks(int(n)); };
    const qint64 clusterBytes = kind.sectorsPerCluster * 512;
    // One entry is kept for the label whether there is one or not.
    const int labelSpare = kind.hasLabel ? 0 : 1;
    if (!grows)
        tryLimit(image, "tiny tracks by root entries", 2000, labelSpare, bench, tiny, make(3000));
    if (kind.bits != 12)
        tryLimit(image, "tiny tracks by clusters", 250, grows ? labelSpare : 0, bench, tiny,
                 make(100));
    const auto large = [&](qint64 n) { bench.useTracks(5, n); };
    tryLimit(image, "bytes in the last of five tracks", 12 << 20, grows ? clusterBytes : 0, bench,
             large, make(std::min<qint64>((6 << 20) / clusterBytes, 1000)));
}

}  // namespace tessaly::fat
