#!/usr/bin/env bash
# Saves and card runs onto file systems of every size around the one that is needed, without files
# to spare, with every write failing in turn, and with files that may not grow. What must hold:
#   a save leaves the old project or the new one, whole, and nothing else;
#   a card run leaves the old card, the new one, or one that verify refuses and that holds no short
#   file; a second run on it with room enough succeeds;
#   a failure is exit code 1 and a line that names a file. A signal is never the answer.
set -euo pipefail
cd "$(dirname "$0")/../.."
if [ "$(id -u)" -ne 0 ]; then exec unshare -Urm "$0" "$@"; fi

cli=$PWD/build/tessaly-cli
work=$(mktemp -d "${TMPDIR:-/tmp}/tessaly disks XXXXXX")
disk=$work/disk
mkdir "$disk"
trap 'umount -q "$disk" "$work/tmp" 2>/dev/null || true; rm -rf "$work"' EXIT
# shellcheck source=reliability/disks/lib.sh
. reliability/disks/lib.sh

# Sources in a place of their own: music, two projects, two sets of support files.
cp -r samples/tour "$work/tour"
head -c 30000 /dev/urandom > "$work/chime.mp3"
for app in old new; do
  mkdir -p "$work/$app/files" "$work/$app/firmware"
  head -c 9000 /dev/urandom > "$work/$app/files/9998.mp3"
  head -c 5000 /dev/urandom > "$work/$app/files/0007.cfg"
done
printf ':0201100001A448\r\n:00000001FF\r\n' > "$work/old/firmware/0000.hex"
{ for _ in $(seq 900); do printf ':0201200001A438\r\n'; done; printf ':00000001FF\r\n'; } \
  > "$work/new/firmware/0000.hex"
"$cli" import "$work/tour" -o "$work/new.crd2" >"$work/out" 2>&1
"$cli" import "$work/tour/Music/Harbour Morning" -o "$work/old.crd2" >"$work/out" 2>&1
mkdir "$work/card"
"$cli" --app-folder "$work/new" create "$work/new.crd2" --card "$work/card" --yes >"$work/out" 2>&1
cp -r "$work/card" "$work/reference"

save_sizes
save_faults
card_sizes
card_faults
card_turns_read_only
firmware_sizes

echo
if [ "$failures" -eq 0 ]; then echo "$checks runs, nothing was lost."; else
  echo "$checks runs, $failures FAILURES"; exit 1
fi
