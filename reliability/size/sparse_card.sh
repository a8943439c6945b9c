#!/usr/bin/env bash
# A card of 16 GB: memory must stay flat while it is written and verified. The sources are sparse
# files of 3 GiB and cost nothing; the card is really written, below SIZE_FOLDER (build).
set -euo pipefail
cd "$(dirname "$0")/../.."

gib=${GIB:-16}
cli=$PWD/build/tessaly-cli
base=${SIZE_FOLDER:-$PWD/build}
allowed_kb=4000
free_gib=$(df --output=avail -BG "$base" | tail -1 | tr -dc 0-9)
if [ "$free_gib" -lt $((gib + 2)) ]; then
  echo "sparse-card: $base has room for $free_gib GiB, $((gib + 2)) are needed (GIB, SIZE_FOLDER)" >&2
  exit 1
fi
work=$(mktemp -d "$base/sparse-card.XXXXXX")
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/tour/Music/Silence" "$work/card"
for ((left = gib, number = 1; left > 0; left -= 3, number++)); do
  truncate -s $((left < 3 ? left : 3))G "$work/tour/Music/Silence/$number.mp3"
done
"$cli" import "$work/tour" -o "$work/silence.crd2"

"$cli" create "$work/silence.crd2" --card "$work/card" --yes >"$work/out" &
pid=$!
: >"$work/samples"
while kill -0 $pid 2>/dev/null; do
  # What was held, and whether copying or verifying had begun.
  awk '/^VmRSS/ {print $2}' /proc/$pid/status 2>/dev/null >>"$work/samples" || true
  sleep 0.2
done
wait $pid || { cat "$work/out"; exit 1; }
tail -n +3 "$work/out"

# The first second is the start of the program.
tail -n +6 "$work/samples" | sort -n >"$work/sorted"
lowest=$(head -1 "$work/sorted") highest=$(tail -1 "$work/sorted")
verdict=kept
[ $((highest - lowest)) -le $allowed_kb ] || verdict=MISSED
echo "memory after the first second, $(wc -l <"$work/sorted") samples: $lowest to $highest kB, promised within $allowed_kb kB  $verdict"
[ $verdict = kept ]
