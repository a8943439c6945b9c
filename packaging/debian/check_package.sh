#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# check_package.sh PACKAGE.deb: lintian, then the life of the package in a clean Debian root: it is
# installed with nothing but its dependencies, used, looked at from a desktop, and purged. Needs root
# or sudo. WORK names the folder for the root (some 2 GB; default: below the build folder).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
deb=$(realpath "$1")
top=$(cd "$here/../.." && pwd)
work=${WORK:-$top/build/package-check}
"$top/tools/install-dependencies.sh" debootstrap lintian desktop-file-utils appstream man-db dpkg-dev

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
say() { printf '\n== %s\n' "$*"; }
run() { printf '$ %s\n' "$*"; "$@"; }

say "The package"
stat -c '%s bytes' "$deb"
dpkg-deb --field "$deb" Package Version Architecture Installed-Size Depends Recommends
[ "$(dpkg-parsechangelog -l "$here/changelog" -S Version)" = "$(dpkg-deb --field "$deb" Version)" ]
say "Lintian"
lintian --allow-root --no-cfg --fail-on error,warning --display-info "$deb" && echo "lintian: no errors, no warnings"
run desktop-file-validate "$here/tessaly.desktop"
run appstreamcli validate --no-net "$here/tessaly.metainfo.xml"

say "A clean root"
# From where this machine takes its own packages.
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
# shellcheck disable=SC2016 # the words in $() are those of apt-get
mapfile -t sources < <(apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' \
  'Identifier: Packages' 'Origin: Debian' | sort -u)
archive=$(printf '%s\n' "${sources[@]}" | awk -v c="$codename" '$2 == c { print $1; exit }')
root=$work/root
if ! [ -f "$work/root.tar" ]; then
  mkdir -p "$work"
  "${as_root[@]}" rm -rf --one-file-system "$root"
  "${as_root[@]}" debootstrap --variant=minbase "$codename" "$root" "$archive" >"$work/debootstrap.log"
  printf 'deb %s\n' "${sources[@]}" |
    "${as_root[@]}" tee "$root/etc/apt/sources.list" >/dev/null
  "${as_root[@]}" tar -C "$root" -cf "$work/root.tar" .
fi
"${as_root[@]}" rm -rf --one-file-system "$root"
"${as_root[@]}" mkdir -p "$root"
"${as_root[@]}" tar -C "$root" -xf "$work/root.tar"
"${as_root[@]}" cp /etc/resolv.conf /etc/hosts "$root/etc/"
"${as_root[@]}" cp -r "$top/samples" "$root/samples"
"${as_root[@]}" cp "$deb" "$root/tessaly.deb"
"${as_root[@]}" cp "$here/check_in_root.sh" "$here/check_command_line.sh" "$here/tessaly-cli.bash" \
  "$here/tessaly-cli.1" "$root/"
"${as_root[@]}" unshare --mount --pid --fork sh -c "
  mount -t proc proc '$root/proc' && mount --rbind /dev '$root/dev' || exit 1
  exec chroot '$root' /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root \
    DEBIAN_FRONTEND=noninteractive /bin/bash /check_in_root.sh"
[ "${KEEP_ROOT:-0}" = 1 ] || "${as_root[@]}" rm -rf --one-file-system "$root"
say "The package passed"
