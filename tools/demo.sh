#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# From a folder of MP3s to a verified card, step by step, in the folder demo/; and once more onto a
# real FAT volume where the machine can mount one without privileges (FUSE).
set -euo pipefail
cd "$(dirname "$0")/.."

cli=build/tessaly-cli
out=demo
image=$out/card.img

say() { printf '\n\033[1m%s\033[0m\n' "$*"; }
run() { printf '$ %s\n' "${*/#build\/tessaly-cli/tessaly-cli}"; "$@"; }

rm -rf "$out"
mkdir -p "$out/card"

say "1. A folder of MP3s becomes a project"
run $cli import samples/tour --output $out/tour.crd2
say "2. What would keep it from a card?"
run $cli check $out/tour.crd2 --card $out/card
say "3. The card is written and read back"
run $cli create $out/tour.crd2 --card $out/card --yes
say "4. The finished card is checked on its own"
run $cli verify $out/card
say "5. What the player will find in its settings"
run $cli show $out/card/0000.xd3

if [ -c /dev/fuse ] && [ -w /dev/fuse ] && command -v fusefat >/dev/null; then
  say "6. The same onto a real FAT volume of 8 MB"
  mkdir -p "$out/mount"
  truncate -s 8M "$image"
  mkfs.vfat "$image" >/dev/null
  fusefat -o rw+ "$image" "$out/mount" >/dev/null
  trap 'fusermount -u "$out/mount" 2>/dev/null || true' EXIT
  run $cli create $out/tour.crd2 --card $out/mount --yes
  run $cli verify $out/mount
  fusermount -u "$out/mount"
  trap - EXIT
  echo '$ fsck.vfat, mdir: the volume itself'
  fsck.vfat -n "$image"
  mdir -i "$image" :: | tail -n 4
else
  say "6. No FUSE here: the real FAT volume is left out"
fi

say "Done: $out/card holds what belongs on a card, $out/tour.crd2 is its project."
