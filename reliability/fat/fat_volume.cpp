// SPDX-License-Identifier: GPL-3.0-or-later
#include "fat_volume.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryFile>

#include "platform/error.h"
#include "support/scratch_folder.h"

namespace tessaly::fat {

namespace {

// Runs a tool and returns what it wrote, errors among it.
QString run(const QString& program, const QStringList& arguments, bool mayFail = false) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    require(process.waitForStarted() && process.waitForFinished(600000) &&
                process.exitStatus() == QProcess::NormalExit,
            program + ": " + process.errorString());
    const QString output = QString::fromUtf8(process.readAll());
    require(mayFail || process.exitCode() == 0,
            program + ' ' + arguments.join(' ') + ": " + output);
    return output;
}

qint64 freeBytes(const QString& image) {
    // "      8 339 456 bytes free"
    QString line = run("mdir", {"-i", image, "::"}).trimmed().section('\n', -1);
    return line.remove(' ').section("bytes", 0, 0).toLongLong();
}

}  // namespace

void require(bool holds, const QString& what) {
    if (!holds)
        throw TessalyError(error_number::BadTarget, what);
}

QString VolumeKind::name() const {
    return QString("FAT%1 %2 MB, clusters of %3%4%5")
        .arg(bits)
        .arg(mebibytes)
        .arg(clusterBytes())
        .arg(hasFixedRoot() ? QString(", %1 entries").arg(rootEntries) : QString(),
             hasLabel ? ", label" : "");
}

FatVolume::FatVolume(QString image, VolumeKind kind, QString folder, QString options)
    : image_(std::move(image)),
      kind_(kind),
      folder_(std::move(folder)),
      options_(std::move(options)) {}

FatVolume::~FatVolume() {
    if (isMounted())
        ::umount2(qPrintable(folder_), MNT_DETACH);
}

void FatVolume::format(qint64 freeClusters) {
    unmount();
    const qint64 kibibytes = qint64(kind_.mebibytes) << 10;
    if (!QFileInfo::exists(image_) || QFileInfo(image_).isFile()) {
        QFile file(image_);
        require(file.open(QFile::WriteOnly) && file.resize(kibibytes << 10), file.errorString());
    }
    QStringList arguments = {"-F", QString::number(kind_.bits), "-s",
                             QString::number(kind_.sectorsPerCluster)};
    if (kind_.hasFixedRoot())
        arguments += {"-r", QString::number(kind_.rootEntries)};
    if (kind_.hasLabel)
        arguments += {"-n", "TOURCARD"};
    const QStringList place = {image_, QString::number(kibibytes)};
    run("mkfs.fat", arguments + place);
    if (freeClusters == 0)
        return;
    // Once more, with bad blocks from the end on.
    QTemporaryFile bad;
    require(bad.open(), bad.errorString());
    const qint64 surplus = (freeBytes(image_) - freeClusters * kind_.clusterBytes()) / 1024;
    for (qint64 block = kibibytes - surplus; block < kibibytes; ++block)
        bad.write(QByteArray::number(block) + '\n');
    bad.close();
    run("mkfs.fat", arguments + QStringList{"-l", bad.fileName()} + place);
    run("fsck.fat", {"-a", image_}, true);  // FAT32 keeps a count of what is free
}

VolumeGeometry FatVolume::geometry(FatNames names) const {
    VolumeGeometry geometry{.clusterBytes = kind_.clusterBytes(),
                            .totalBytes = qint64(kind_.mebibytes) << 20,
                            .freeBytes = freeBytes(image_),
                            .isFat = true,
                            .fatNames = names,
                            .folderBytes = kind_.hasFixedRoot() ? 0 : kind_.clusterBytes()};
    if (kind_.hasFixedRoot())
        geometry.rootEntries = kind_.rootEntries;
    return geometry;
}

// A mounted folder is on another device than the one above it.
bool FatVolume::isMounted() const {
    struct stat own {};
    struct stat above {};
    return !folder_.isEmpty() && ::stat(qPrintable(folder_), &own) == 0 &&
           ::stat(qPrintable(QFileInfo(folder_).path()), &above) == 0 && own.st_dev != above.st_dev;
}

VolumeGeometry FatVolume::mount(bool isFresh) {
    const VolumeGeometry real = geometry(FatNames::OneCase);
    struct stat device {};
    ::stat(qPrintable(image_), &device);
    QDir().mkpath("/run/udev/data");
    QFile record(
        QString("/run/udev/data/b%1:%2").arg(major(device.st_rdev)).arg(minor(device.st_rdev)));
    require(record.open(QFile::WriteOnly), record.fileName() + ": " + record.errorString());
    record.write(QString("E:ID_FS_VERSION=FAT%1\n").arg(kind_.bits).toUtf8());
    record.close();
    if (::mount(qPrintable(image_), qPrintable(folder_), "vfat", 0, qPrintable(options_)) != 0)
        throw lastSystemError(image_);
    const VolumeGeometry found = LocalDrives().geometry(folder_);
    require(found.isFat && found.clusterBytes == real.clusterBytes &&
                found.rootEntries == real.rootEntries &&
                (!isFresh || found.freeBytes == real.freeBytes) &&
                (!isFresh || kind_.hasFixedRoot() || found.folderBytes == real.folderBytes),
            QString("the program takes the volume for another one: clusters of %1, %2 free and not "
                    "%3, %4 root entries, a root folder of %5 bytes")
                .arg(found.clusterBytes)
                .arg(found.freeBytes)
                .arg(real.freeBytes)
                .arg(found.rootEntries.value_or(-1))
                .arg(found.folderBytes));
    return found;
}

void FatVolume::unmount() {
    if (isMounted() && ::umount(qPrintable(folder_)) != 0)
        throw lastSystemError(folder_);
}

QMap<QString, QByteArray> FatVolume::content() {
    unmount();
    // The version and the count of files are all that it says of a clean volume.
    const QStringList lines = run("fsck.fat", {"-n", image_}, true).split('\n', Qt::SkipEmptyParts);
    require(lines.size() == 2 && lines.last().contains(" clusters"),
            "fsck.fat: " + lines.join(' '));
    const test::ScratchFolder scratch;
    if (run("mdir", {"-a", "-b", "-i", image_, "::"}).contains("::/"))
        run("mcopy", {"-s", "-n", "-i", image_, "::*", scratch.path()});
    return scratch.content("");
}

bool FatVolume::takesFiles(const QStringList& files) const {
    // The exit code may be 0 even when the volume was full.
    const QString output =
        run("mcopy", QStringList{"-i", image_} + files + QStringList{"::"}, true);
    for (const char* full : {"No free cluster", "Disk full", "No directory slots"})
        if (output.contains(full))
            return false;
    require(output.isEmpty(), "mcopy: " + output);
    return true;
}

}  // namespace tessaly::fat
