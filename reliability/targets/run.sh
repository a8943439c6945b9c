#!/usr/bin/env bash
# Points tessaly-cli at everything that must never be erased, "/" and bind mounts included. It all
# happens in a mount namespace, in a root folder of its own in memory: nothing real is in reach, as
# the few folders of the machine that are needed in there are read-only. Needs no privileges where
# the kernel lets users have namespaces.
#
#   reliability/targets/run.sh [BUILD FOLDER]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "${1:-$here/../../build}" && pwd)

if [ -z "${TESSALY_INSIDE:-}" ]; then
  export TESSALY_INSIDE=1
  namespace=(unshare --mount)
  [ "$(id -u)" -eq 0 ] || namespace=(unshare --user --map-root-user --mount)
  exec "${namespace[@]}" "$0" "$build"
fi

mount --make-rprivate /
root=$(mktemp -d)
mount -t tmpfs root "$root"

# What programs need, where harm cannot be done to it.
for folder in usr etc opt/tessaly samples; do mkdir -p "$root/$folder"; done
readonly_bind() {
  mount --bind "$1" "$2"
  # In a namespace of a user the flags that the mount has already must be kept.
  mount -o remount,bind,ro "$2" 2>/dev/null ||
    mount -o "remount,bind,ro,$(findmnt -no OPTIONS -T "$1" | tr ',' '\n' |
      grep -E '^(nosuid|nodev|noexec|noatime|relatime)$' | paste -sd,)" "$2"
}
readonly_bind /usr "$root/usr"
readonly_bind /etc "$root/etc"
readonly_bind "$here/../../samples" "$root/samples"
for link in bin lib lib32 lib64 sbin; do
  [ ! -L "/$link" ] || cp -P "/$link" "$root/$link"
done
mkdir -p "$root"/{proc,dev,sys,tmp}
mount --rbind /proc "$root/proc"
for device in null zero urandom tty; do
  : >"$root/dev/$device"
  mount --bind "/dev/$device" "$root/dev/$device"
done
mkdir -p "$root/dev/pts" "$root/dev/shm"
mount -t devpts -o newinstance,ptmxmode=0666 terminals "$root/dev/pts"
ln -s pts/ptmx "$root/dev/ptmx"
# A program of its own, which may be offered for erasing.
cp -L "$build/tessaly-cli" "$root/opt/tessaly/"
cp -rL "$build/files" "$build/firmware" "$build/Chimes" "$root/opt/tessaly/"
cp "$here/inside.sh" "$root/inside.sh"

status=0
chroot "$root" /usr/bin/env -i HOME=/home/me PATH=/usr/bin:/usr/sbin:/bin TERM=dumb \
  bash /inside.sh || status=$?
umount -l "$root"
rmdir "$root"
exit $status
