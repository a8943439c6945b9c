#include "fat_volume.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include "platform/error.h"
#include "support/scratch_folder.h"

namespace tessaly::fat {

namespace {

constexpr qint64 Sector = 512;
constexpr qint64 EntryBytes = 32;

[[noreturn]] void fail(const QString& text) {
    throw TessalyError(error_number::BadTarget, text);
}

struct ToolResult {
    int exitCode = 0;
    QByteArray output;  // and errors
};

ToolResult start(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForFinished(600000) ||
        process.exitStatus() != QProcess::NormalExit)
        fail(program + ": " + process.errorString());
    return {process.exitCode(), process.readAll()};
}

// A volume open for looking at single bytes.
class Bytes {
 public:
    Bytes(const QString& path, QFile::OpenMode mode) : file_(path) {
        if (!file_.open(mode))
            fail(path + ": " + file_.errorString());
    }
    QByteArray read(qint64 offset, qint64 count) {
        file_.seek(offset);
        const QByteArray bytes = file_.read(count);
        if (bytes.size() != count)
            fail(file_.fileName() + ": too short");
        return bytes;
    }
    void write(qint64 offset, const QByteArray& bytes) {
        file_.seek(offset);
        if (file_.write(bytes) != bytes.size())
            fail(file_.fileName() + ": " + file_.errorString());
    }

 private:
    QFile file_;
};

template <typename T>
T number(const QByteArray& bytes, qint64 offset) {
    return qFromLittleEndian<T>(bytes.constData() + offset);
}

quint32 fatEntry(const QByteArray& fat, int bits, qint64 cluster) {
    if (bits == 32)
        return number<quint32>(fat, cluster * 4) & 0x0FFFFFFF;
    if (bits == 16)
        return number<quint16>(fat, cluster * 2);
    const quint16 pair = number<quint16>(fat, cluster + cluster / 2);
    return cluster % 2 ? pair >> 4 : pair & 0xFFF;
}

}  // namespace

QString nameOf(const VolumeKind& kind) {
    const int clusterBytes = kind.sectorsPerCluster * int(Sector);
    QString name = QString("FAT%1 %2 MB, clusters of %3")
                       .arg(kind.bits)
                       .arg(kind.mebibytes)
                       .arg(clusterBytes < 1024 ? QString("%1 B").arg(clusterBytes)
                                                : QString("%1 KB").arg(clusterBytes / 1024));
    if (kind.bits != 32)
        name += QString(", %1 entries").arg(kind.rootEntries);
    return name + (kind.hasLabel ? ", label" : "");
}

QByteArray runTool(const QString& program, const QStringList& arguments) {
    const ToolResult result = start(program, arguments);
    if (result.exitCode != 0)
        fail(program + ' ' + arguments.join(' ') + " ended with " +
             QString::number(result.exitCode) + ": " + QString::fromUtf8(result.output));
    return result.output;
}

void format(const QString& path, const VolumeKind& kind) {
    const qint64 bytes = qint64(kind.mebibytes) << 20;
    if (!QFileInfo(path).exists() || QFileInfo(path).isFile()) {
        QFile::remove(path);
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || !file.resize(bytes))
            fail(path + ": " + file.errorString());
    }
    QStringList arguments = {"-F", QString::number(kind.bits), "-s",
                             QString::number(kind.sectorsPerCluster)};
    if (kind.bits != 32)
        arguments += {"-r", QString::number(kind.rootEntries)};
    if (kind.hasLabel)
        arguments += {"-n", "TOURCARD"};
    runTool("mkfs.fat", arguments + QStringList{path, QString::number(bytes / 1024)});
}

VolumeFacts readFacts(const QString& path) {
    Bytes volume(path, QFile::ReadOnly);
    const QByteArray boot = volume.read(0, Sector);
    VolumeFacts facts;
    facts.sectorBytes = number<quint16>(boot, 11);
    facts.clusterBytes = facts.sectorBytes * quint8(boot[13]);
    facts.fatStart = number<quint16>(boot, 14) * facts.sectorBytes;
    facts.fats = quint8(boot[16]);
    facts.rootEntries = number<quint16>(boot, 17);
    qint64 sectors = number<quint16>(boot, 19);
    if (sectors == 0)
        sectors = number<quint32>(boot, 32);
    const qint64 shortFat = number<quint16>(boot, 22);
    facts.fatBytes = (shortFat ? shortFat : number<quint32>(boot, 36)) * facts.sectorBytes;
    if (boot.mid(510) != "\x55\xAA" || facts.clusterBytes == 0 || facts.fatBytes == 0)
        fail(path + ": no FAT volume");
    const qint64 system =
        facts.fatStart + facts.fats * facts.fatBytes + facts.rootEntries * EntryBytes;
    facts.clusters = (sectors * facts.sectorBytes - system) / facts.clusterBytes;
    facts.bits = shortFat == 0 ? 32 : facts.clusters < 4085 ? 12 : 16;

    const QByteArray fat = volume.read(facts.fatStart, facts.fatBytes);
    for (qint64 cluster = 2; cluster < facts.clusters + 2; ++cluster)
        facts.freeClusters += fatEntry(fat, facts.bits, cluster) == 0;
    if (facts.bits == 32)
        for (quint32 cluster = number<quint32>(boot, 44); cluster < facts.clusters + 2;
             cluster = fatEntry(fat, 32, cluster))
            facts.rootFolderBytes += facts.clusterBytes;
    return facts;
}

VolumeGeometry geometryOf(const QString& path, FatNames names) {
    const VolumeFacts facts = readFacts(path);
    VolumeGeometry geometry{.clusterBytes = facts.clusterBytes,
                            .totalBytes = facts.clusters * facts.clusterBytes,
                            .freeBytes = facts.freeClusters * facts.clusterBytes,
                            .isFat = true,
                            .fatNames = names,
                            .folderBytes = facts.rootFolderBytes};
    if (facts.bits != 32)
        geometry.rootEntries = facts.rootEntries;
    return geometry;
}

void keepFreeClusters(const QString& path, qint64 keep) {
    const VolumeFacts facts = readFacts(path);
    Bytes volume(path, QFile::ReadWrite);
    QByteArray fat = volume.read(facts.fatStart, facts.fatBytes);
    qint64 surplus = facts.freeClusters - keep;
    for (qint64 cluster = facts.clusters + 1; cluster >= 2 && surplus > 0; --cluster) {
        if (fatEntry(fat, facts.bits, cluster) != 0)
            continue;
        if (facts.bits == 32)
            qToLittleEndian<quint32>(0x0FFFFFF7, fat.data() + cluster * 4);
        else
            qToLittleEndian<quint16>(0xFFF7, fat.data() + cluster * 2);
        --surplus;
    }
    for (int copy = 0; copy < facts.fats; ++copy)
        volume.write(facts.fatStart + copy * facts.fatBytes, fat);
    if (facts.bits == 32) {
        // The sector that keeps the count of free clusters; mkfs.fat puts it second.
        QByteArray count(4, 0);
        qToLittleEndian<quint32>(quint32(keep), count.data());
        volume.write(Sector + 488, count);
    }
}

void restoreFatMark(const QString& path) {
    const VolumeFacts facts = readFacts(path);
    if (facts.bits != 16)
        return;
    Bytes volume(path, QFile::ReadWrite);
    for (int copy = 0; copy < facts.fats; ++copy)
        volume.write(facts.fatStart + copy * facts.fatBytes + 2, "\xFF\xFF");
}

QStringList complaintsAbout(const QString& path) {
    QStringList lines =
        QString::fromUtf8(start("fsck.fat", {"-n", path}).output).split('\n', Qt::SkipEmptyParts);
    // The version and the count of files are all that it says of a clean volume.
    if (lines.size() < 2 || !lines.last().contains(" clusters"))
        fail("fsck.fat: " + lines.join(' '));
    return lines.mid(1, lines.size() - 2);
}

void requireClean(const QString& path) {
    const QStringList complaints = complaintsAbout(path);
    if (!complaints.isEmpty())
        fail("fsck.fat: " + complaints.join(' '));
}

QMap<QString, QByteArray> contentOf(const QString& path) {
    const test::ScratchFolder scratch;
    const QByteArray list = runTool("mdir", {"-a", "-b", "-i", path, "::"});
    if (list.contains("::/"))
        runTool("mcopy", {"-s", "-n", "-i", path, "::*", scratch.path()});
    return scratch.content("");
}

bool takesFiles(const QString& path, const QStringList& files) {
    const ToolResult result = start("mcopy", QStringList{"-i", path} + files + QStringList{"::"});
    // The exit code may be 0 even when the volume was full.
    for (const char* full : {"No free cluster", "Disk full", "No directory slots"})
        if (result.output.contains(full))
            return false;
    if (result.exitCode != 0)
        fail("mcopy: " + QString::fromUtf8(result.output));
    return true;
}

}  // namespace tessaly::fat
