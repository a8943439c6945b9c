// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "platform/linux/mount_table.h"
#include "platform/paths.h"
#include "targets.h"

namespace tessaly::fuzz {

namespace {

QByteArray field(const QString& text) {
    QByteArray escaped;
    for (const char c : toNativePath(text)) {
        if (QByteArrayView(" \t\n\\").contains(c))
            escaped += '\\' + QByteArray::number(uchar(c), 8).rightJustified(3, '0');
        else
            escaped += c;
    }
    return escaped;
}

QByteArray lineOf(const Mount& mount) {
    return "1 2 " + field(mount.device) + ' ' + field(mount.root) + ' ' + field(mount.mountPoint) +
           ' ' + field(mount.options) + " shared:1 - " + field(mount.fileSystem) + ' ' +
           field(mount.source) + '\n';
}

}  // namespace

void fuzzMounts(QByteArrayView bytes) {
    const QList<Mount> mounts = parseMountTable(bytes);
    require(mounts.size() <= std::count(bytes.begin(), bytes.end(), '\n') + 1,
            "a line is at most one mount");
    QByteArray table;
    for (const Mount& mount : mounts) {
        require(mount.mountPoint.startsWith('/'), "a mount point is an absolute path");
        for (const QString* text : {&mount.mountPoint, &mount.root, &mount.source})
            require(!text->contains(QChar(0)), "no path ends early for the system");
        table += lineOf(mount);
        const auto found = findMount(mounts, mount.mountPoint + '/');
        require(found.has_value(), "a mount is found by its mount point");
        require(found->mountPoint == mount.mountPoint, "the mount that is found is that one");
        const DriveType type = classifyMount(
            mount,
            {.name = mount.source, .removable = table.right(2), .mmcType = mount.options.toUtf8()});
        require(!driveTypeName(type).isEmpty(), "every drive is of a type");
        VolumeGeometry geometry;
        describeFat(geometry, mount,
                    {.clusters = mount.options.size() * 9999,
                     .rootFolderBytes = mount.root.size() * 512,
                     .deviceRecord = mount.source.toUtf8()});
        require(geometry.isFat && geometry.rootEntries.value_or(0) >= 0,
                "a FAT volume is described");
    }
    // Options stand in one field now: beside a byte that is no UTF-8 they keep their bytes only.
    const QList<Mount> again = parseMountTable(table);
    require(std::equal(mounts.begin(), mounts.end(), again.begin(), again.end(),
                       [](Mount a, Mount b) {
                           const bool same = toNativePath(a.options) == toNativePath(b.options);
                           a.options = b.options;
                           return same && a == b;
                       }),
            "a table that is written anew reads the same");
    require(!findMount(mounts, QString()), "nothing is mounted nowhere");
}

}  // namespace tessaly::fuzz
