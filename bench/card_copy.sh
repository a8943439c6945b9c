#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Writing a card of 1 GB in 1,000 files against what cp and sync take for the same files on the same
# file system, in turn: once without and once with verification (then cmp reads both copies again,
# past the cache). Every other round Tessaly comes first. The ratio is what counts, and machines are
# noisy: its median is promised, the least and the most tell how noisy this one is.
set -euo pipefail
cd "$(dirname "$0")/.."

cli=$PWD/build/tessaly-cli
files=${FILES:-1000}
rounds=${ROUNDS:-5}
promised=1.25
work=$(mktemp -d "${BENCH_FOLDER:-$PWD/build}/card-copy.XXXXXX")
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/tour/Music/Bench"
for ((i = 0; i < files; i++)); do
  head -c 1000000 /dev/urandom >"$work/tour/Music/Bench/$i.mp3"
done
"$cli" import "$work/tour" --output "$work/p.crd2" >/dev/null
sync

seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" >/dev/null 2>&1
  end=$(date +%s.%N)
  echo "$end - $start" | bc
}
forget() { # what the cache knows of a folder, so that the next reading comes from the disk
  if [ -w /proc/sys/vm/drop_caches ]; then
    sync
    echo 1 >/proc/sys/vm/drop_caches
  else
    find "$1" -type f -exec dd if={} iflag=nocache count=0 status=none \;
  fi
}
empty() {
  rm -rf "$work/target"
  mkdir "$work/target"
  sync
}
warm() { cat "$work"/tour/Music/Bench/*.mp3 >/dev/null; }
copy() {
  cp --reflink=never "$work"/tour/Music/Bench/*.mp3 "$work/target/"
  sync -f "$work/target"
}
copy_and_compare() {
  copy
  forget "$work/target"
  diff -rq "$work/tour/Music/Bench" "$work/target" # cmp of every pair, without a start for each
}
create() { "$cli" create "$work/p.crd2" --card "$work/target" --yes "$@"; }

spread() { sort -n | awk '{v[NR] = $1} END {printf "%.3f %.3f %.3f", v[1], v[int((NR + 1) / 2)], v[NR]}'; }

measure() { # whose turn it is, and what it writes
  empty && warm
  case $1-$2 in
    cp-plain) seconds copy ;;
    cp-verified) seconds copy_and_compare ;;
    tessaly-plain) seconds create --no-verify ;;
    tessaly-verified) seconds create ;;
  esac >>"$work/$1"
}

for mode in plain verified; do
  : >"$work/cp" && : >"$work/tessaly"
  for ((round = 0; round < rounds; round++)); do
    if ((round % 2)); then turns=(tessaly cp); else turns=(cp tessaly); fi
    for turn in "${turns[@]}"; do measure "$turn" $mode; done
  done
  read -r _ a _ < <(spread <"$work/cp"; echo)
  read -r _ b _ < <(spread <"$work/tessaly"; echo)
  read -r least ratio most < <(paste "$work/tessaly" "$work/cp" | awk '{print $1 / $2}' | spread; echo)
  kept=$(echo "$ratio <= $promised" | bc)
  printf '%-9s %d files of 1 MB: cp %.2f s, create %.2f s (medians of %d), ratio %s (%s to %s), promised %s  %s\n' \
    $mode "$files" "$a" "$b" "$rounds" "$ratio" "$least" "$most" "$promised" \
    "$([ "$kept" = 1 ] && echo kept || echo MISSED)"
done
