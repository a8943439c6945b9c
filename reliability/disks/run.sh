#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Saves and card runs onto file systems of every size around the one that is needed, without files
# to spare, with every write failing in turn, and with files that may not grow. What must hold:
#   a save leaves the old project or the new one, whole, and nothing else;
#   a card run leaves the old card, the new one, or one that verify refuses and that holds no short
#   file; a second run on it with room enough succeeds;
#   a failure is exit code 1 and a line that names a file. A signal is never the answer.
set -euo pipefail
cd "$(dirname "$0")/../.."
# shellcheck source=reliability/lib.sh
. reliability/lib.sh
own_mounts "$@"
shopt -s nullglob

cli=$PWD/build/tessaly-cli
work=$(mktemp -d "${TMPDIR:-/tmp}/tessaly disks XXXXXX")
disk=$work/disk
mkdir "$disk" "$work/tmp"
trap 'umount -q "$disk" "$work/tmp" 2>/dev/null || true; rm -rf "$work"' EXIT

# Music, two projects, two sets of support files, and the cards to begin with.
cp -r samples/tour "$work/tour"
mkdir -p "$work"/{old,new}/{files,firmware}
head -c 9000 /dev/urandom | tee "$work/old/files/9998.mp3" >"$work/new/files/9998.mp3"
head -c 5000 /dev/urandom | tee "$work/old/files/0007.cfg" >"$work/new/files/0007.cfg"
printf ':0201100001A448\r\n:00000001FF\r\n' >"$work/old/firmware/0000.hex"
{ printf ':0201200001A438\r\n%.0s' {1..900}; printf ':00000001FF\r\n'; } >"$work/new/firmware/0000.hex"
"$cli" import "$work/tour" -o "$work/new.crd2" >"$work/out" 2>&1
"$cli" import "$work/tour/Music/Harbour Morning" -o "$work/old.crd2" >"$work/out" 2>&1

# What is tried. Each goes through a command that may stand in the way.
through=()
card_run() { "${through[@]}" "$cli" --app-folder "$work/new" "$@" --yes; }
create() { card_run create "$work/new.crd2" --card "$disk/card"; }
update() { card_run create "$work/new.crd2" --card "$disk/card" --settings-only; }
firmware() { card_run firmware "$disk/card"; }
import() { "${through[@]}" "$cli" import "$work/tour" -o "$disk/p.crd2"; }
# Files may hold $1 KiB. Messages go through pipes, which have no such limit.
limited() { (ulimit -f "$1"; shift; "$@" 2>&1 >/dev/null) | cat >&2; }
# The work folder has $1 pages.
small_work_folder() {
  local end=0
  mount -t tmpfs -o "nr_blocks=$1" tmpfs "$work/tmp"
  TMPDIR=$work/tmp "${@:2}" || end=$?
  umount "$work/tmp"
  return "$end"
}

mkdir "$work"/card-{none,old,new,done}
for made in old:old:old new:old:new new:new:done; do
  IFS=: read -r project app card <<<"$made"
  "$cli" --app-folder "$work/$app" create "$work/$project.crd2" --card "$work/card-$card" --yes \
    >"$work/out" 2>&1
done

declare -A outcomes=()
count() { outcomes[$1]=$((${outcomes[$1]:-0} + 1)); }
# Ends a group of scenes with how often each outcome came.
summary() {
  local outcome text=""
  for outcome in "${!outcomes[@]}"; do text+=", $outcome ${outcomes[$outcome]}"; done
  printf '%-52s %s\n' "$1" "${text#, }"
  outcomes=()
}

run() {
  checks=$((checks + 1))
  code=0
  "$@" >"$work/out" 2>"$work/err" </dev/null || code=$?
  [ "$code" -le 1 ] || fail "exit code $code" # a signal, or a check that has no say here
}

# attempt SCENE VOLUME BEFORE FREE COMMAND: on a volume with a project, or the card BEFORE, and with
# FREE blocks left, if that is said.
attempt() {
  local before=$work/card-$3 size
  scene=$1
  : >"$work/trace"
  mount -t tmpfs -o "$2" tmpfs "$disk"
  if [ "$3" = project ]; then cp "$work/old.crd2" "$disk/p.crd2"; else cp -r "$before" "$disk/card"; fi
  if [ -n "$4" ]; then
    size=$((($(stat -f -c %a "$disk") - $4) * $(stat -f -c %S "$disk")))
    head -c $((size > 0 ? size : 0)) /dev/zero >"$disk/filler" 2>/dev/null || true
  fi
  run "$5"
  if [ "$3" = project ]; then judge_save; else judge_card; finish_card; fi
  umount "$disk"
}

# Whoever fails says so; where the message itself was to fail, it may be missing.
failed_with() {
  [ "$code" -eq 1 ] || fail "nothing was finished, and it says nothing"
  grep -q 'write(2.*INJECTED' "$work/trace" || grep -qE "$1" "$work/err" || fail "no file is named"
}

judge_save() {
  local name
  if cmp -s "$disk/p.crd2" "$work/new.crd2"; then
    count saved
  elif cmp -s "$disk/p.crd2" "$work/old.crd2"; then
    count "old kept"
    failed_with 'p.crd2.*: [A-Z]'
  else
    fail "the project is neither the old nor the new one"
  fi
  for name in "$disk"/*; do
    case ${name##*/} in
      p.crd2 | filler) ;;
      p.crd2.bak) cmp -s "$name" "$work/old.crd2" || fail "half a .bak" ;;
      *) fail "${name##*/} lies about" ;;
    esac
  done
}

# Of settings the number in the first record, which every run draws anew, and with it that record's
# checksum are left out.
same_file() {
  case $1 in
    *.xd3) [ -s "$1" ] && cmp -s <(sed '1d;2d' "$1") <(sed '1d;2d' "$2") &&
             [ "$(stat -c %s "$1")" = "$(stat -c %s "$2")" ] ;;
    *) cmp -s "$1" "$2" ;;
  esac
}
same_card() {
  local name
  [ "$(ls "$disk/card")" = "$(ls "$1")" ] || return 1
  for name in "$1"/*; do same_file "$disk/card/${name##*/}" "$name" || return 1; done
}

judge_card() {
  local name good=yes whole=yes
  if same_card "$before"; then
    count "card untouched"
    [ -e "$before/0000.xd3" ] || whole=""
    failed_with '/|\(error 534|standard output'
  elif same_card "$work/card-done"; then
    count written
  else
    count "stopped half-way"
    whole=""
    failed_with '/|\(error 534|standard output'
    for name in "$disk/card"/*; do
      same_file "$name" "$work/card-done/${name##*/}" || same_file "$name" "$before/${name##*/}" ||
        fail "${name##*/} is short"
    done
  fi
  "$cli" verify "$disk/card" >/dev/null 2>&1 || good=""
  [ "$good" = "$whole" ] || fail "verify says good: '$good'; it is whole: '$whole'"
}

# What a failed run left is finished by the next one that has room.
finish_card() {
  local through=()
  scene+=", second run"
  rm -f "$disk/filler"
  mount -o remount,rw,size=16m,nr_inodes=1000 "$disk"
  run create
  if [ "$code" -ne 0 ] || ! same_card "$work/card-done"; then fail "it does not finish the card"; fi
}

# each_fault BEFORE STEP COMMAND CALL:ERROR...: the n-th call of a kind fails, for every STEP-th n
# until there are no more.
each_fault() {
  local before=$1 step=$2 command=$3 fault n
  shift 3
  for fault; do
    for ((n = 1; ; n += step)); do
      through=(strace -qq -o "$work/trace" -e "trace=${fault%:*}"
        -e "inject=${fault%:*}:error=${fault#*:}:when=$n")
      attempt "$command with $fault number $n" "size=8m" "$before" "" "$command"
      grep -q INJECTED "$work/trace" || break
    done
  done
  through=()
  summary "$command with calls failing in turn"
}

# The room that files take, in pages.
room() { stat -c %s "$@" | awk '{ sum += int(($1 + 4095) / 4096) } END { print sum + 0 }'; }

# An attempt for each of the sizes, which stand for @.
each() { # SIZES SCENE VOLUME BEFORE FREE COMMAND
  local size sizes=$1
  shift
  for size in $sizes; do
    [ -z "$limiter" ] || through=("$limiter" "$size")
    attempt "${@//@/$size}"
  done
  through=() limiter=""
}
limiter=""

least=$(room "$work/old.crd2")
most=$((2 * least + $(room "$work/new.crd2") + 2))
each "$(seq "$least" "$most")" "save onto @ pages" "nr_blocks=@" project "" import
each "$(seq 2 6)" "save with @ inodes" "size=1m,nr_inodes=@" project "" import
limiter=limited
each "$(seq 0 8)" "save with files of at most @ KiB" "size=1m" project "" import
summary "saves with little room"
each_fault project 1 import write:ENOSPC write:EDQUOT write:EIO fsync:EIO fsync:EDQUOT rename:EROFS

need=$(room "$work/card-done"/*)
for before in none old; do
  held=$(room "$work/card-$before"/* /dev/null)
  each "0 $((need / 2)) $(seq -s ' ' $((need - 12)) $((need + 3)))" \
    "card of $need pages, @ free, before: $before" "size=8m" "$before" "@ - $held" create
done
files=$(find "$work/card-done" -type f | wc -l)
each "$(seq 2 $((files + 3)))" "card with @ inodes" "size=8m,nr_inodes=@" none "" create
summary "cards with little room"
each "$(seq 0 20)" "settings with @ pages free" "size=8m" new @ update
summary "settings with little room"
each "$(seq 0 6)" "firmware with @ pages free" "size=8m" new @ firmware
summary "firmware with little room"
limiter=small_work_folder
each "$(seq 1 14)" "work folder of @ pages" "size=8m" old "" create
[ -z "${outcomes[stopped half-way]:-}" ] || fail "a full work folder showed after the card was touched"
summary "cards with a small work folder"
limiter=limited
each "$(seq 0 8 64)" "card with files of at most @ KiB" "size=8m" old "" create
summary "cards with small files"
each_fault new 2 update write:ENOSPC write:EDQUOT openat:EROFS sync_file_range:ENOSPC syncfs:EIO
each_fault old 7 create write:EDQUOT openat:EIO unlink,unlinkat:EROFS sync_file_range:EDQUOT
verdict
