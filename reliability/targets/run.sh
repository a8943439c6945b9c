#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Points tessaly-cli at everything that must never be erased, "/" and bind mounts included. It all
# happens in a mount namespace, in a root folder of its own in memory: nothing real is in reach, as
# the few folders of the machine that are needed in there are read-only. Needs no privileges where
# the kernel lets users have namespaces.
set -euo pipefail
cd "$(dirname "$0")/../.."
# shellcheck source=reliability/lib.sh
. reliability/lib.sh
own_mounts "$@"

root=$(mktemp -d)
mount -t tmpfs root "$root"
mkdir -p "$root"/{usr,etc,opt/tessaly,samples,proc,dev/pts,dev/shm,sys,tmp}
# What programs need, where harm cannot be done to it.
for folder in /usr /etc "$PWD/samples"; do
  inside=$root/${folder##*/}
  mount --bind "$folder" "$inside"
  # In a namespace of a user the flags that the mount has already must be kept.
  mount -o "remount,bind,ro,$(findmnt -no OPTIONS -T "$folder" | tr ',' '\n' |
    grep -E '^(nosuid|nodev|noexec|noatime|relatime)$' | paste -sd,)" "$inside"
done
for link in bin lib lib32 lib64 sbin; do
  [ ! -L "/$link" ] || cp -P "/$link" "$root/$link"
done
mount --rbind /proc "$root/proc"
for device in null zero urandom tty; do
  : >"$root/dev/$device"
  mount --bind "/dev/$device" "$root/dev/$device"
done
mount -t devpts -o newinstance,ptmxmode=0666 terminals "$root/dev/pts"
ln -s pts/ptmx "$root/dev/ptmx"
# A program of its own, which may be offered for erasing.
cp -rL build/{tessaly-cli,files,firmware,Chimes} "$root/opt/tessaly/"
cp reliability/lib.sh reliability/targets/inside.sh "$root/"

status=0
chroot "$root" /usr/bin/env -i HOME=/home/me PATH=/usr/bin:/usr/sbin:/bin TERM=dumb \
  bash /inside.sh || status=$?
umount -l "$root"
rmdir "$root"
exit $status
