#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A project at full size, on the command line and in the window: everything works, memory stays
# within what is promised, that of a hundred steps to undo included (a miss fails), and every step of
# the operator's is timed (a report).
# SCREEN=1 shows the window on a screen of its own (Xvfb) instead of on none.
set -euo pipefail
cd "$(dirname "$0")/../.."

here=$PWD
program=$here/build/tessaly-cli
screen=(env QT_QPA_PLATFORM=offscreen)
[ -z "${SCREEN:-}" ] || screen=(xvfb-run -a -s "-screen 0 1280x1024x24" env QT_QPA_PLATFORM=xcb)
work=$(mktemp -d "${SIZE_FOLDER:-$PWD/build}/full-size.XXXXXX")
trap 'rm -rf "$work"' EXIT
promised=150 # MB
missed=0

fail() {
  echo "full-size: $*" >&2
  exit 1
}

# run CODE ARGUMENT...: the program must end with CODE; one line of what it took.
run() {
  local code=0 expected=$1 megabytes seconds verdict=kept
  shift
  "${screen[@]}" /usr/bin/time -q -f '%M %e' -o took "$program" "$@" >out 2>err || code=$?
  [ "$code" = "$expected" ] || { cat out; fail "${program##*/} $1 ended with $code: $(tail -3 err)"; }
  read -r megabytes seconds < <(awk '{ print $1 * 1.024 / 1000, $2 }' took)
  [ "${megabytes%.*}" -lt "$promised" ] || verdict=MISSED missed=1
  printf '%-58s %6.1f s %7.1f MB, promised %d  %s\n' "${program##*/} $*" "$seconds" "$megabytes" \
    "$promised" "$verdict"
}

said() { grep -qF "$1" out err || fail "nobody said: $1"; }

cd "$work"
"$here/reliability/size/make_files.pl"

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
run 0 import long -o long.crd2
(cd card && find . -type f -printf '%p %s %T@\n' | sort) >before
run 3 check over.crd2
said "Too many tracks, limit is 9995"
run 3 create over.crd2 --card card --yes
said "The settings of this project take 65,6"
said "too many. Remove"
run 3 check long.crd2
said "The settings of this project take 150,900 bytes, the player can hold 65,527: 85,373 too many. Remove 4,743 music tracks."
run 3 create long.crd2 --card card --yes
(cd card && find . -type f -printf '%p %s %T@\n' | sort) | diff -q before - || fail "the card was touched"
rm -rf card
for all in sources all.m3u; do
  run 0 import $all -o all.crd2
  said "with 9995 tracks"
done

echo "The window${SCREEN:+, on a screen}"
program=$here/build/tessaly-full-size promised=250 run 0 "$work"
cat out
# The card that the window made, by the command line's judgement.
run 0 verify window-card
exit $missed
