// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mount_table.h"

#include "support/scratch_folder.h"

namespace tessaly {

namespace {

// As Linux printed it on several machines.
const QByteArray Recorded =
    R"(22 28 0:20 / /sys rw,nosuid,nodev,noexec,relatime shared:7 - sysfs sysfs rw
28 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw,errors=remount-ro
97 28 8:17 / /media/ann/TOUR\040CARD rw,nosuid,nodev,relatime shared:52 - vfat /dev/sdb1 rw,uid=1000,fmask=0022,codepage=437,iocharset=ascii,shortname=mixed,utf8
98 28 179:1 / /media/ann/SD rw,relatime - vfat /dev/mmcblk0p1 rw,shortname=winnt
99 28 8:33 / /media/ann/Backup rw,relatime shared:60 master:2 - ext4 /dev/sdc1 rw
101 28 0:52 / /mnt/music rw,relatime - cifs //server/music rw,vers=3.0
102 28 0:53 / /home/ann/far rw - fuse.sshfs ann@server:/srv rw
103 28 0:54 /sub /mnt/bound rw,relatime - tmpfs tmpfs rw,size=1024k
104 28 11:0 / /media/ann/DISC ro,relatime - iso9660 /dev/sr0 ro
105 97 8:17 / /media/ann/TOUR\040CARD rw - vfat /dev/sdd1 rw
this line is no mount
108 28 0:57 / /media/cut rw -
109 28 0:58 / /media/cut rw shared:1 tmpfs tmpfs
106 28 0:55 / relative rw - tmpfs tmpfs rw
107 28 0:56 / /media/ann\000/x rw - tmpfs tmpfs rw
1 2 3)";

}  // namespace

TEST(MountTable, LinesBecomeMounts) {
    const QList<Mount> mounts = parseMountTable(Recorded);
    ASSERT_EQ(mounts.size(), 10);
    EXPECT_EQ(mounts[2],
              (Mount{"8:17", "/", "/media/ann/TOUR CARD", "vfat", "/dev/sdb1",
                     "rw,nosuid,nodev,relatime,rw,uid=1000,fmask=0022,codepage=437,iocharset=ascii,"
                     "shortname=mixed,utf8"}));
    EXPECT_EQ(mounts[4].mountPoint, "/media/ann/Backup");
    EXPECT_EQ(mounts[7].root, "/sub");
    EXPECT_EQ(findMount(mounts, "/media/ann/TOUR CARD/")->source, "/dev/sdd1");  // the last one
    EXPECT_EQ(findMount(mounts, "/")->device, "8:2");
    EXPECT_FALSE(findMount(mounts, "/media/ann").has_value());
    EXPECT_FALSE(findMount(mounts, "").has_value());
    EXPECT_TRUE(parseMountTable("").isEmpty());
}

TEST(MountTable, WhatIsMountedInsideOrFromAFolderIsKnown) {
    const QList<Mount> mounts = parseMountTable(
        R"(28 1 8:2 / / rw - ext4 /dev/sda2 rw
40 28 8:18 / /data rw - ext4 /dev/sdb2 rw
41 28 8:18 /homes /home rw - ext4 /dev/sdb2 rw
42 28 8:17 / /media/ann/CARD rw - vfat /dev/sdb1 rw
43 28 8:17 / /mnt/card rw - vfat /dev/sdb1 rw
44 28 0:50 /@ /btrfs/system rw - btrfs /dev/sdc rw
45 28 0:50 / /btrfs/whole rw - btrfs /dev/sdc rw)");
    const std::pair<const char*, QStringList> cases[] = {
        {"/", {"/data", "/home", "/media/ann/CARD", "/mnt/card", "/btrfs/system", "/btrfs/whole"}},
        {"/media/ann", {"/media/ann/CARD"}},
        {"/media/ann/CARD", {}},  // the same card seen elsewhere is still the card
        {"/media/an", {}},
        {"/data", {"/home"}},
        {"/data/homes", {}},  // the same folder, known by identity
        {"/data/homes/ann", {}},
        {"/home", {}},
        {"/btrfs/whole", {"/btrfs/system"}},
        {"/btrfs/whole/@", {}},
        {"/btrfs/system", {}},
        {"/tmp/folder", {}}};
    for (const auto& [folder, inside] : cases)
        EXPECT_EQ(mountsInside(mounts, folder), inside) << folder;
    EXPECT_TRUE(mountsInside({}, "/data").isEmpty());
}

TEST(MountTable, DrivesAreToldApart) {
    const QList<Mount> mounts = parseMountTable(Recorded);
    const struct {
        const char* mountPoint;
        DeviceAttributes device;
        DriveType type;
    } cases[] = {
        {"/", {"sda", "0\n", ""}, DriveType::Fixed},
        {"/media/ann/TOUR CARD", {"sdd", "1\n", ""}, DriveType::Removable},
        {"/media/ann/Backup", {"sdc", "0\n", ""}, DriveType::Fixed},  // a USB disk
        {"/media/ann/SD", {"mmcblk0", "0\n", "SD\n"}, DriveType::Removable},
        {"/media/ann/SD", {"mmcblk0", "0\n", "MMC\n"}, DriveType::Fixed},  // soldered in
        {"/mnt/music", {}, DriveType::Network},
        {"/home/ann/far", {}, DriveType::Network},
        {"/mnt/bound", {}, DriveType::RamDisk},
        {"/media/ann/DISC", {"sr0", "1\n", ""}, DriveType::CdRom},
    };
    for (const auto& [mountPoint, device, type] : cases)
        EXPECT_EQ(classifyMount(*findMount(mounts, mountPoint), device), type) << mountPoint;
}

TEST(MountTable, LabelsAreWhatTheDeviceRecordSays) {
    EXPECT_EQ(volumeLabel("S:disk/x\nE:ID_FS_LABEL=T_\nE:ID_FS_LABEL_ENC=T\\x20\xC3\xA9\n"
                          "E:ID_FS_TYPE=vfat\n"),
              QString::fromUtf8("T \xC3\xA9"));
    EXPECT_EQ(volumeLabel("E:ID_FS_TYPE=vfat\n"), "");
}

TEST(MountTable, FatVolumesHaveTheirRules) {
    const struct {
        QString fileSystem, options;
        FatFacts facts;
        std::optional<int> rootEntries;
        FatNames names;
    } cases[] = {
        {"vfat", "shortname=mixed", {65524, 16384, ""}, 512, FatNames::UpperCase},
        {"vfat", "shortname=lower", {4084, 4096, ""}, 128, FatNames::UpperCase},
        {"vfat", "shortname=winnt", {65525, 512, ""}, {}, FatNames::OneCase},
        {"vfat", "rw", {60000, 512, "E:ID_FS_VERSION=FAT32\n"}, {}, FatNames::UpperCase},
        {"msdos", "rw", {4084, 16384, "E:ID_FS_VERSION=FAT12\n"}, 512, FatNames::All},
    };
    for (const auto& [fileSystem, options, facts, rootEntries, names] : cases) {
        const Mount mount{"8:1", "/", "/card", fileSystem, "/dev/sda1", options};
        VolumeGeometry geometry;
        ASSERT_TRUE(isFatMount(mount));
        describeFat(geometry, mount, facts);
        EXPECT_EQ(geometry.rootEntries, rootEntries) << options.toStdString();
        EXPECT_EQ(geometry.fatNames, names) << options.toStdString();
        EXPECT_TRUE(geometry.isFat);
    }
    EXPECT_FALSE(isFatMount(Mount()));
}

}  // namespace tessaly
