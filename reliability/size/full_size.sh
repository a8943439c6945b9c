#!/usr/bin/env bash
# A project at full size, on the command line and in the window: everything works, memory stays
# within what is promised (a miss fails), and every step of the operator's is timed (a report).
# SCREEN=1 shows the window on a screen of its own (Xvfb) instead of on none.
set -euo pipefail
cd "$(dirname "$0")/../.."

cli=$PWD/build/tessaly-cli
full=$PWD/build/tessaly-full-size
work=$(mktemp -d "${SIZE_FOLDER:-$PWD/build}/full-size.XXXXXX")
trap 'rm -rf "$work"' EXIT
promised_kb=146484 # 150 MB
missed=0

fail() {
  echo "full-size: $*" >&2
  exit 1
}

# run CODE COMMAND...: runs a command that must end with CODE; one line of what it took.
run() {
  local code=0 expected=$1 peak seconds verdict="promised 150  kept"
  shift
  /usr/bin/time -q -f '%M %e' -o "$work/took" "$cli" "$@" >"$work/out" 2>"$work/err" || code=$?
  [ "$code" = "$expected" ] || fail "tessaly-cli $1 ended with $code: $(tail -3 "$work/err")"
  read -r peak seconds <"$work/took"
  if [ "$promised_kb" = 0 ]; then
    verdict="nothing promised"
  elif [ "$peak" -gt "$promised_kb" ]; then
    verdict="promised 150  MISSED"
    missed=1
  fi
  printf 'tessaly-cli %-46s %6.1f s %7.1f MB, %s\n' "$*" "$seconds" \
    "$(bc <<<"scale=1; $peak * 1.024 / 1000")" "$verdict"
}

said() { grep -qF "$1" "$work/out" "$work/err" || fail "nobody said: $1"; }

"$full" make "$work"
cd "$work"

echo "The largest card: 9,995 files, 16 languages, 548 titles, 255 lists, an image of 65,526 bytes"
run 0 import tour -o tour.crd2
said "255 music lists with 1318 tracks, 548 speech titles in 16 languages (8677 files)"
run 0 check tour.crd2
run 0 image tour.crd2 --output image.bin
said "65526 bytes"
run 0 show tour.crd2
mkdir card
run 0 create tour.crd2 --card card --yes
[ "$(find card -type f | wc -l)" = 10000 ] || fail "the card has not 10,000 files"
run 0 verify card
run 0 create tour.crd2 --card card --settings-only --yes
run 0 verify card

echo "One track more, and longer lists: what does not fit is said before a card is touched"
cp tour.crd2 over.crd2
run 0 import tour/Music/"List 001" -o over.crd2 --append
run 3 check over.crd2
said "The settings of this project take 65,6"
said "too many. Remove"
said "Too many tracks, limit is 9995"
(cd card && find . -type f -printf '%p %s %T@\n' | sort) >before
run 3 create over.crd2 --card card --yes
said "too many. Remove"
run 3 check long.crd2
said "The settings of this project take 150,900 bytes, the player can hold 65,527: 85,373 too many. Remove 4,743 music tracks."
run 3 create long.crd2 --card card --yes
(cd card && find . -type f -printf '%p %s %T@\n' | sort) | diff -q before - || fail "the card was touched"
run 0 import sources -o folder.crd2
said "with 9995 tracks"
run 0 import all.m3u -o playlist.crd2
said "with 9995 tracks"
promised_kb=0 run 3 check most.crd2
said "245000 tracks, "
rm -rf card

if [ -n "${SCREEN:-}" ]; then
  echo "The window, on a screen"
  xvfb-run -a -s "-screen 0 1280x1024x24" env QT_QPA_PLATFORM=xcb "$full" window "$work" || missed=1
else
  echo "The window, without a screen"
  QT_QPA_PLATFORM=offscreen "$full" window "$work" || missed=1
fi
# The card that the window made, by the command line's judgement.
run 0 verify window-card
exit $missed
