#!/usr/bin/env bash
# Pulls cards out, for real, while they are written and judged: a RAM disk is lazily unmounted, the
# driver of a FUSE volume is killed. tessaly-cli is hit at random moments, the window at each
# operation of a run. Also lets a card change a byte between writing and reading back.
#
#   ROUNDS=60 SEED=1 reliability/pulled/run.sh [BUILD FOLDER]
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "${1:-$here/../../build}" && pwd) || exit 1
ROUNDS=${ROUNDS:-60}
SEED=${SEED:-1}
longest_allowed=10 # seconds from the pull to the end

if [ -z "${TESSALY_INSIDE:-}" ]; then
  export TESSALY_INSIDE=1
  namespace=(unshare --mount)
  [ "$(id -u)" -eq 0 ] || namespace=(unshare --user --map-root-user --mount)
  exec "${namespace[@]}" "$0" "$build"
fi

cli=$build/tessaly-cli
work=$(mktemp -d)
card=$work/card
failed=0
longest=0
RANDOM=$SEED
trap 'umount -l "$card" 2>/dev/null; rm -rf "$work"' EXIT
mkdir "$card"
# What a card that is gone leaves behind is a folder of the disk. This one says that it is no card.
touch "$card/no card"

fail() {
  failed=$((failed + 1))
  printf 'FAILED: %s\n' "$*"
}
milliseconds() { echo $(($(date +%s%N) / 1000000)); }

# 40 tracks of 2 MB: a run of some tenths of a second in memory.
mkdir -p "$work/tour/Music/Long"
for number in $(seq 10 49); do
  head -c 2000000 /dev/urandom >"$work/tour/Music/Long/$number.mp3"
done
$cli import "$work/tour" --output "$work/long.crd2" >/dev/null || fail "import"
$cli import "$here/../../samples/tour" --output "$work/tour.crd2" >/dev/null 2>&1 || fail "import"

insert_memory() { mount -t tmpfs card "$card"; }
pull_memory() { umount -l "$card"; }
insert_fuse() {
  rm -f "$work/card.img"
  truncate -s 2M "$work/card.img"
  mkfs.vfat "$work/card.img" >/dev/null
  fusefat -f -o rw+,nonempty "$work/card.img" "$card" >/dev/null 2>&1 &
  driver=$!
  disown # its end is no news
  for _ in $(seq 1000); do
    mountpoint -q "$card" && return
    sleep 0.02
  done
  echo "fusefat does not mount: without a card there is nothing to pull out"
  exit 1
}
pull_fuse() { kill -9 "$driver"; }
insert() { insert_"$kind"; }
pull() { pull_"$kind"; }
take_away() {
  umount -l "$card" 2>/dev/null
  [ "$kind" = memory ] || kill -9 "$driver" 2>/dev/null
  [ "$(ls -A "$card")" = "no card" ] || fail "$kind: something was written to the folder below the card"
}

# Runs a command and pulls the card at a random moment of the time that it takes undisturbed.
pulled_rounds() {
  local what=$1 rounds=$2 prepare=$3
  shift 3
  local start undisturbed code ended pulled=0 finished=0 round
  insert
  eval "$prepare"
  start=$(milliseconds)
  "$@" >/dev/null 2>&1 || fail "$kind, $what: undisturbed"
  undisturbed=$(($(milliseconds) - start))
  take_away
  for round in $(seq "$rounds"); do
    insert
    eval "$prepare"
    timeout -k 1 60 "$@" >"$work/out" 2>"$work/err" &
    local run=$!
    sleep "$(printf '0.%03d' $((RANDOM % (undisturbed < 999 ? undisturbed : 999))))"
    pull
    start=$(milliseconds)
    code=0
    wait "$run" || code=$?
    ended=$(($(milliseconds) - start))
    [ "$ended" -le "$longest" ] || longest=$ended
    case $code in
      0) finished=$((finished + 1)) ;;
      1)
        pulled=$((pulled + 1))
        grep -q "^tessaly-cli: .*(error [0-9]*" "$work/err" ||
          grep -q "there is no such folder\|no good card" "$work/err" ||
          fail "$kind, $what, round $round: $(tail -n 1 "$work/err")"
        ;;
      3) pulled=$((pulled + 1)) ;; # seen by the checks before anything was asked
      *) fail "$kind, $what, round $round: exit code $code" ;;
    esac
    take_away
  done
  printf '%s, %s: %d pulled in the middle, %d had ended before (a run takes %d ms)\n' \
    "$kind" "$what" "$pulled" "$finished" "$undisturbed"
  [ "$pulled" -gt 0 ] || fail "$kind, $what: never in the middle"
}

kind=memory
pulled_rounds create "$ROUNDS" : "$cli" create "$work/long.crd2" --card "$card" --yes
pulled_rounds "create without reading back" "$ROUNDS" : \
  "$cli" create "$work/long.crd2" --card "$card" --yes --no-verify
pulled_rounds verify "$ROUNDS" \
  '"$cli" create "$work/long.crd2" --card "$card" --yes --no-verify >/dev/null 2>&1' \
  "$cli" verify "$card"
if [ -w /dev/fuse ] && command -v fusefat >/dev/null; then
  kind=fuse
  pulled_rounds create $((ROUNDS / 3)) : "$cli" create "$work/tour.crd2" --card "$card" --yes
  pulled_rounds verify $((ROUNDS / 3)) \
    '"$cli" create "$work/tour.crd2" --card "$card" --yes --no-verify >/dev/null 2>&1' \
    "$cli" verify "$card"
else
  echo "There is no FUSE here: the killed driver is left out."
fi
[ "$longest" -le $((longest_allowed * 1000)) ] || fail "it took $longest ms to notice"
printf 'the longest end took %d ms\n' "$longest"

# A bad card under the command line: the flush is held up until a byte has changed.
kind=memory
insert
$cli create "$work/tour.crd2" --card "$card" --yes >/dev/null 2>&1
named=0
for path in "$card"/*; do
  name=${path##*/}
  : >"$work/err" # now, so that the card that is there is older
  timeout 60 strace -f -qq -o /dev/null -e trace=syncfs -e inject=syncfs:delay_enter=400000 \
    "$cli" create "$work/tour.crd2" --card "$card" --yes >/dev/null 2>"$work/err" &
  run=$!
  for _ in $(seq 500); do # the project is written last
    [ "$card/0000.crd2" -nt "$work/err" ] && [ -s "$card/0000.crd2" ] && break
    sleep 0.01
  done
  sleep 0.1
  at=$((RANDOM % $(stat -c %s "$card/$name")))
  byte=$(od -An -tu1 -j "$at" -N 1 "$card/$name")
  printf "\\x$(printf %02x $((byte ^ 1 << RANDOM % 8)))" |
    dd of="$card/$name" bs=1 conv=notrunc seek="$at" 2>/dev/null
  code=0
  wait "$run" || code=$?
  if [ $code -eq 1 ] && grep -q "/card/$name: what reads back .* (error 539, step 321)" "$work/err"; then
    named=$((named + 1))
  else
    fail "a changed byte of $name: exit code $code, $(tail -n 1 "$work/err")"
  fi
done
files=$(ls "$card" | wc -l)
printf 'changed bytes: %d files named of %d\n' "$named" "$files"
[ "$named" -eq "$files" ] || fail "not every changed byte was named"
take_away

QT_QPA_PLATFORM=offscreen timeout 600 "$build/tessaly-pulled" --gtest_brief=1 || fail "the window"
[ "$failed" -eq 0 ]
