// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "card/card_files.h"
#include "card/firmware.h"
#include "fat_volume.h"
#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "support/card_bench.h"

namespace tessaly::fat {

using Content = QMap<QString, QByteArray>;
using Outcome = CardRunReport::Outcome;

/// A drive that refuses nothing for its size.
inline const VolumeGeometry Boundless = {.clusterBytes = 512, .freeBytes = qint64(1) << 40};

/// A bench whose card is the volume, with as many tracks as a test wants.
class FatBench : public test::CardBench {
 public:
    explicit FatBench(FatVolume& volume) : volume_(volume) { job.root = volume.folder(); }

    /// Makes the project one of tracks of a byte and more, each of its own; the last has
    /// `lastBytes`.
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

    /// Whether the guards let the project onto the card; nothing is written.
    bool guardsPass() {
        observer.keepGoingNow = [this] {
            return observer.progress.stepCode != step_code::GuardTracks;
        };
        const CardRunReport report = create();
        observer.keepGoingNow = [] { return true; };
        const int number = report.error ? report.error->number : 0;
        require(number == error_number::Stopped || number == error_number::DoesNotFit ||
                    number == error_number::TooManyRootEntries,
                "stopped for another reason than room: " + observer.text);
        return number == error_number::Stopped;
    }

    /// What must be on the card after a run, from the sources alone.
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

    /// Writes the card into an ordinary folder and copies its files into the volume as Windows
    /// does.
    bool copyAsWindows() {
        const VolumeGeometry geometry = std::exchange(drives.volume, Boundless);
        const QString root = std::exchange(job.root, scratch.makeFolder("elsewhere"));
        const CardRunReport report = create();
        require(report.outcome == Outcome::Done, observer.text);
        QStringList written;
        for (const WrittenFile& file : report.files)
            written.append(scratch.path("elsewhere/" + file.name));
        job.root = root;
        drives.volume = geometry;
        return volume_.takesFiles(written);
    }

    void mount(bool isFresh = true) { drives.volume = volume_.mount(isFresh); }

    /// Takes the volume off, looks at it from outside, and mounts it again.
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
    /// The run ends with an error, and nothing on the volume changes.
    void requireStopped(const CardRunReport& report, int error, const Content& before,
                        const QString& what) {
        require(report.error && report.error->number == error, what + ": " + observer.text);
        requireOnVolume(before, what);
    }

    /// Done, and the tracks are as they were.
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

    /// What a card gets in cameras, on other PCs and by people.
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

}  // namespace tessaly::fat
