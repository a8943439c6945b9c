#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# The first process of the machine that run.sh starts in the machine: loads what FAT needs, tries
# the card runs on its one disk and switches off. The machine's files are only read here.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/run TMPDIR=/run
echo "The machine is up."
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t tmpfs tmp /run
modules=/usr/lib/uml/modules/$(uname -r)/kernel/fs
for module in fat/fat fat/vfat nls/nls_cp437 nls/nls_iso8859-1; do
  insmod "$modules/$module.ko"
done
"$TESSALY_FAT" kernel /dev/ubda
echo o >/proc/sysrq-trigger
sleep 60
