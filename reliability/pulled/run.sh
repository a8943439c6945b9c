#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Pulls cards out, for real, while tessaly-cli writes and judges them, at random moments: a RAM disk
# is lazily unmounted, the driver of a FUSE volume is killed. Also lets a card change a byte between
# writing and reading back.
#
#   ROUNDS=60 SEED=1 reliability/pulled/run.sh
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
# shellcheck source=reliability/lib.sh
. reliability/lib.sh
own_mounts "$@"

rounds=${ROUNDS:-60}
RANDOM=${SEED:-1}
longest=0
work=$(mktemp -d)
card=$work/card
trap 'umount -l "$card" 2>/dev/null; rm -rf "$work"' EXIT
milliseconds() { echo $(($(date +%s%N) / 1000000)); }

# What people do with the card. What a card that is gone leaves behind is a folder of the disk: it
# holds a file that says that it is no card.
insert() {
  [ "$kind" = fuse ] || { mount -t tmpfs card "$card"; return; }
  rm -f "$card.img"
  truncate -s 2M "$card.img" && mkfs.vfat "$card.img" >/dev/null
  fusefat -f -o rw+,nonempty "$card.img" "$card" >/dev/null 2>&1 &
  driver=$!
  disown # its end is no news
  for _ in {1..1000}; do
    mountpoint -q "$card" && return
    sleep 0.02
  done
  return 1
}
pull() { if [ "$kind" = fuse ]; then kill -9 $driver; else umount -l "$card"; fi; }
take_away() {
  [ "$kind" = memory ] || kill -9 $driver 2>/dev/null
  umount -l "$card" 2>/dev/null
  [ "$(ls -A "$card")" = "no card" ] # else something was written to the folder below the card
}
through=()
cli() { timeout -k 1 60 "${through[@]}" build/tessaly-cli "$@"; }
create() { cli create "$work/$project.crd2" --card "$card" --yes "$@"; }

# Runs a command on an empty card, or on a full one, and pulls that at a random moment of
# the milliseconds that it takes undisturbed on a fast machine.
pulled_rounds() { # MILLISECONDS CARD COMMAND...
  local span=$1 before=$2 start code ended pulled=0 round
  shift 2
  for round in $(seq "$rounds"); do
    scene="$kind, $*, round $round"
    checks=$((checks + 1))
    insert || fail "it does not mount"
    [ "$before" = empty ] || create --no-verify >"$work/out" 2>&1 || fail "undisturbed"
    "$@" >"$work/out" 2>"$work/err" &
    sleep "0.$(printf '%03d' $((RANDOM % span)))"
    pull
    start=$(milliseconds)
    code=0
    wait $! || code=$?
    ended=$(($(milliseconds) - start))
    [ "$ended" -le "$longest" ] || longest=$ended
    [ "$code" -eq 0 ] || pulled=$((pulled + 1))
    case $code in
      0 | 3) ;; # 3: seen by the checks before anything was asked
      1) grep -qE '^tessaly-cli: .*\(error [0-9]|there is no such folder|no good card' "$work/err" ||
        fail "$(tail -n 1 "$work/err")" ;;
      *) fail "exit code $code" ;;
    esac
    take_away || fail "something was written below the card"
  done
  printf '%s: %d of them pulled in the middle\n' "$scene" "$pulled"
  [ "$pulled" -gt 0 ] || fail "never in the middle"
}

# 40 tracks of 2 MB: a run of some tenths of a second in memory.
mkdir -p "$card" "$work/long/Music/Long"
touch "$card/no card"
for number in $(seq 10 49); do
  head -c 2000000 /dev/urandom >"$work/long/Music/Long/$number.mp3"
done
cli import "$work/long" --output "$work/long.crd2" >/dev/null
cli import samples/tour --output "$work/tour.crd2" >/dev/null 2>&1

kind=memory
project=long
pulled_rounds 200 empty create
pulled_rounds 200 empty create --no-verify
pulled_rounds 60 full cli verify "$card"

# A bad card under the command line: the flush is held up until a byte has changed.
project=tour
insert
create >/dev/null 2>&1
through=(strace -f -qq -o /dev/null -e trace=syncfs -e inject=syncfs:delay_enter=400000)
for file in "$card"/*; do
  scene="a changed byte of ${file##*/}"
  checks=$((checks + 1))
  : >"$work/err" # now, so that the card that is there is older
  create >/dev/null 2>"$work/err" &
  until [ "$card/0000.crd2" -nt "$work/err" ] && [ -s "$card/0000.crd2" ]; do # it is written last
    sleep 0.01
  done
  sleep 0.1
  perl -e 'open my $f, "+<:raw", $ARGV[0] or die; my $at = int rand -s $f; seek $f, $at, 0;
    read $f, my $byte, 1; seek $f, $at, 0; print $f chr(ord($byte) ^ 1 << int rand 8)' "$file"
  code=0
  wait $! || code=$?
  grep -q "/card/${file##*/}: what reads back .* (error 539, step 321)" "$work/err" || code=x
  [ $code = 1 ] || fail "exit code $code, $(tail -n 1 "$work/err")"
done
through=()
take_away

kind=fuse
if [ -w /dev/fuse ] && command -v fusefat >/dev/null; then
  rounds=$((rounds / 3))
  pulled_rounds 60 empty create
  pulled_rounds 30 full cli verify "$card"
else
  echo "There is no FUSE here: the killed driver is left out."
fi
[ "$longest" -le 10000 ] || fail "it took $longest ms to notice"
verdict
