#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# try-window.sh PROGRAMS PICTURES, inside with-wine.sh: opens a project in the window as a double
# click does, writes a card to the removable drive by the keyboard alone, and lets the command line
# judge that card. The pictures are there to be looked at.
set -euo pipefail
programs=$1 pictures=$2
samples=$(winepath -w "$(cd "$(dirname "$0")/../../samples/tour" && pwd)")
mkdir -p "$pictures"

fail() {
  echo "FAILED: $*" >&2
  import -window root "$pictures/failed.png"
  exit 1
}
wait_for() {
  local what=$1
  shift
  for _ in $(seq 200); do
    ! "$@" > /dev/null 2>&1 || return 0
    sleep 0.1
  done
  fail "$what did not come"
}
press() {
  xdotool key --delay 150 "$@"
  sleep 2  # a busy machine draws late
}
shoot() { import -window root -trim +repage "$pictures/$1.png"; }
has_card() { [ -f "$TESSALY_CARD_FOLDER/0000.crd2" ]; }

wine "$programs/tessaly-cli.exe" import "$samples" --output 'C:\Über Łódź.crd2'
touch "$TESSALY_CARD_FOLDER/left over.txt"
wine "$programs/tessaly.exe" 'C:\Über Łódź.crd2' &
wait_for "the window with the project" xdotool search --name 'Über Łódź'
sleep 1
shoot speech-files
press Right Right Right Right  # from tab to tab
shoot create-card
press alt+d space
shoot drive-dialog
press Home Return  # removable drives come first
shoot drive-selected
press alt+r
shoot question
press Return
wait_for "the card" has_card
sleep 2
shoot created
press Return
wine "$programs/tessaly-cli.exe" verify "$TESSALY_CARD_DRIVE"
[ ! -e "$TESSALY_CARD_FOLDER/left over.txt" ] || fail "the card was not erased"
wine "$programs/tessaly.exe" &
wait_for "the message of a second start" xdotool search --name 'Tessaly Error'
shoot second-start
echo "The window wrote a good card to $TESSALY_CARD_DRIVE; its pictures are in $pictures"
