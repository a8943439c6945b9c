// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mount_table.h"

#include <QDir>
#include <QStringList>
#include <algorithm>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Blanks, tabs, newlines and backslashes stand as \ooo in the table.
QByteArray unescaped(QByteArrayView field) {
    QByteArray bytes;
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
            isOctal(field[i + 2]) && isOctal(field[i + 3])) {
            bytes +=
                char((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
            i += 3;
        } else {
            bytes += field[i];
        }
    }
    return bytes;
}

QString pathWithoutSlash(QString path) {
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

}  // namespace

QList<Mount> parseMountTable(QByteArrayView text) {
    QList<Mount> mounts;
    for (const QByteArray& line : text.toByteArray().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        // Optional fields end at a lone "-"; three more follow it.
        const qsizetype dash = fields.indexOf("-", 6);
        if (dash < 0 || dash + 2 >= fields.size())
            continue;
        const auto field = [&](qsizetype i) { return fromNativePath(unescaped(fields.value(i))); };
        Mount mount{.device = field(2),
                    .root = field(3),
                    .mountPoint = pathWithoutSlash(field(4)),
                    .fileSystem = field(dash + 1),
                    .source = field(dash + 2),
                    .options = field(5)};
        if (dash + 3 < fields.size())
            mount.options += u',' + field(dash + 3);
        // For the system a path ends at a NUL: what is left of it would be another one.
        const auto isWhole = [](const QString& name) { return !name.contains(QChar(0)); };
        if (mount.mountPoint.startsWith(u'/') && isWhole(mount.mountPoint) && isWhole(mount.root) &&
            isWhole(mount.source))
            mounts.append(mount);
    }
    return mounts;
}

std::optional<Mount> findMount(const QList<Mount>& mounts, const QString& path) {
    const QString point = pathWithoutSlash(path);
    const auto found = std::find_if(mounts.rbegin(), mounts.rend(),
                                    [&](const Mount& m) { return m.mountPoint == point; });
    if (found == mounts.rend())
        return std::nullopt;
    return *found;
}

QStringList mountsInside(const QList<Mount>& mounts, const QString& folder) {
    const auto isInside = [](const QString& path, const QString& above) {
        return path.size() > above.size() && path.startsWith(above) &&
               (above.endsWith(u'/') || path[above.size()] == u'/');
    };
    const QString place = pathWithoutSlash(folder);
    const Mount* own = nullptr;  // the one that `folder` is on
    for (const Mount& mount : mounts)
        if ((mount.mountPoint == place || isInside(place, mount.mountPoint)) &&
            (!own || mount.mountPoint.size() >= own->mountPoint.size()))
            own = &mount;
    // Where `folder` is on its volume, whatever part of that is mounted.
    QString onVolume;
    if (own)
        onVolume =
            pathWithoutSlash(QDir::cleanPath(own->root + u'/' + place.mid(own->mountPoint.size())));
    QStringList found;
    for (const Mount& mount : mounts)
        if (isInside(mount.mountPoint, place) ||
            (own && mount.device == own->device && isInside(mount.root, onVolume)))
            found.append(mount.mountPoint);
    return found;
}

DriveType classifyMount(const Mount& mount, const DeviceAttributes& device) {
    static const QStringList network = {
        u"nfs"_s,   u"nfs4"_s, u"cifs"_s, u"smb3"_s, u"smbfs"_s, u"ncpfs"_s,      u"fuse.sshfs"_s,
        u"sshfs"_s, u"9p"_s,   u"ceph"_s, u"afs"_s,  u"davfs"_s, u"fuse.davfs2"_s};
    if (network.contains(mount.fileSystem))
        return DriveType::Network;
    if (mount.fileSystem == u"tmpfs"_s || mount.fileSystem == u"ramfs"_s)
        return DriveType::RamDisk;
    if (device.name.startsWith(u"sr"_s))
        return DriveType::CdRom;
    if (device.removable.trimmed() == "1" || device.mmcType.trimmed() == "SD")
        return DriveType::Removable;
    return DriveType::Fixed;
}

QString volumeLabel(QByteArrayView deviceRecord) {
    constexpr QByteArrayView Key = "\nE:ID_FS_LABEL_ENC=";
    const QByteArray record = '\n' + deviceRecord.toByteArray();
    const qsizetype start = record.indexOf(Key);
    if (start < 0)
        return {};
    // Whatever is no plain character stands as \xNN.
    QByteArray label = record.mid(start + Key.size());
    if (const qsizetype end = label.indexOf('\n'); end >= 0)
        label.truncate(end);
    for (qsizetype i = label.indexOf("\\x"); i >= 0; i = label.indexOf("\\x", i + 1))
        label.replace(i, 4, QByteArray::fromHex(label.mid(i + 2, 2)));
    return fromNativePath(label);
}

bool isFatMount(const Mount& mount) {
    return mount.fileSystem == u"vfat"_s || mount.fileSystem == u"msdos"_s;
}

void describeFat(VolumeGeometry& geometry, const Mount& mount, const FatFacts& facts) {
    constexpr qint64 Fat16MaxClusters = 65524;
    constexpr qint64 EntryBytes = 32;
    geometry.isFat = true;
    // A small FAT32 volume breaks the rule of the cluster count; only its boot sector tells.
    if (facts.clusters <= Fat16MaxClusters && !facts.deviceRecord.contains("ID_FS_VERSION=FAT32"))
        geometry.rootEntries = int(facts.rootFolderBytes / EntryBytes);
    // Linux keeps "0001.mp3" in one entry only under this rule; by default a long name goes with
    // it.
    if (mount.fileSystem == u"msdos"_s)
        geometry.fatNames = FatNames::All;
    else if (mount.options.split(u',').contains(u"shortname=winnt"_s))
        geometry.fatNames = FatNames::OneCase;
    else
        geometry.fatNames = FatNames::UpperCase;
}

}  // namespace tessaly
