#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A card of 16 GB takes no more memory than one of 1 GB while it is written and verified. The
# sources are sparse files and cost nothing; the card is really written, below SIZE_FOLDER (build).
set -euo pipefail
cd "$(dirname "$0")/../.."

gib=${GIB:-16}
cli=$PWD/build/tessaly-cli
work=$(mktemp -d "${SIZE_FOLDER:-$PWD/build}/sparse-card.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p tour/Music/Silence card
free=$(df --output=avail -BG . | tail -1 | tr -dc 0-9)
if [ "$free" -lt $((gib + 2)) ]; then
  echo "sparse-card: $work has room for $free GiB, $((gib + 2)) are needed (GIB, SIZE_FOLDER)" >&2
  exit 1
fi
for number in $(seq "$gib"); do
  truncate -s 1G "tour/Music/Silence/$number.mp3"
  case $number in 1 | "$gib")
    "$cli" import tour -o silence.crd2 >out 2>&1
    /usr/bin/time -f %M -o "peak-$number" "$cli" create silence.crd2 --card card --yes >out 2>&1
  esac
done
difference=$(($(tail -1 "peak-$gib") - $(tail -1 peak-1)))
echo "$(tail -1 peak-1) kB for a card of 1 GiB, $difference kB more for $gib GiB, promised 4000"
[ "$difference" -le 4000 ]
