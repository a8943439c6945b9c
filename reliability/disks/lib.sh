# shellcheck shell=bash disable=SC2154
# The scenes of run.sh, which sets cli, work and disk.

checks=0
failures=0
declare -A outcomes=()

fail() {
  failures=$((failures + 1))
  echo "FAILED, $scene: $1"
  sed 's/^/    /' "$work/err" | head -3
}

# Ends a scene with how often each outcome came.
summary() {
  local text=""
  for outcome in "${!outcomes[@]}"; do text+=", $outcome ${outcomes[$outcome]}"; done
  printf '%-52s %s\n' "$1" "${text#, }"
  outcomes=()
}

count() { outcomes[$1]=$((${outcomes[$1]:-0} + 1)); }

# Runs a command; the exit code is in $code. Whatever happens, it is no signal.
run() {
  checks=$((checks + 1))
  code=0
  "$@" >"$work/out" 2>"$work/err" </dev/null || code=$?
  [ "$code" -le 1 ] || fail "exit code $code" # above: a signal, or a check that has no say here
}

shopt -s nullglob

pages() { echo $((($(stat -c %s "$1") + 4095) / 4096)); }

on_tmpfs() { mount -t tmpfs -o "$1" tmpfs "$disk"; }
off() { umount "$disk"; }

# An ext4 of $1 KiB with blocks of $2 bytes. False where the machine offers no loop devices.
on_ext4() {
  rm -f "$work/image"
  truncate -s "${1}K" "$work/image"
  mkfs.ext4 -q -F -b "$2" -N 64 -m 0 -O ^has_journal "$work/image" >"$work/err" 2>&1 &&
    mount -o loop "$work/image" "$disk" 2>>"$work/err" || return 1
  rmdir "$disk/lost+found"
}

# Leaves at most $1 blocks free.
fill_to() {
  local free
  free=$(stat -f -c %a "$disk")
  head -c $(((free - $1) * $(stat -f -c %S "$disk"))) /dev/zero >"$disk/filler" 2>/dev/null || true
}

# A command whose files may hold $1 KiB. Its messages go through pipes, which have no such limit.
limited() {
  (ulimit -f "$1"; shift; "$@" 2>&1 >/dev/null) | cat >&2
}

# --- saves -------------------------------------------------------------------------------------

import() { "$@" "$cli" import "$work/tour" -o "$disk/p.crd2"; }

old_project() { cp "$work/old.crd2" "$disk/p.crd2"; }

judge_save() {
  local name
  if cmp -s "$disk/p.crd2" "$work/new.crd2"; then
    count saved
  elif cmp -s "$disk/p.crd2" "$work/old.crd2"; then
    count "old kept"
    [ "$code" -eq 1 ] || fail "nothing was saved, and it says nothing"
    [ "${may_be_mute:-}" ] || grep -q "p.crd2.*: [A-Z]" "$work/err" || fail "no file is named"
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

save_sizes() {
  local size least most
  least=$(pages "$work/old.crd2")
  most=$((2 * least + $(pages "$work/new.crd2") + 2))
  for size in $(seq "$least" "$most"); do
    scene="save onto $size pages"
    on_tmpfs "size=$((size * 4096))"; old_project
    run import; judge_save; off
  done
  summary "saves onto a tmpfs of $least to $most pages"

  for size in 2 3 4 5 6; do
    scene="save with $size inodes"
    on_tmpfs "size=1m,nr_inodes=$size"; old_project
    run import; judge_save; off
  done
  summary "saves with 0 to 4 files to spare"

  for size in $(seq 0 14); do
    scene="save with $size blocks of ext4"
    on_ext4 400 1024 || break
    old_project; fill_to "$size"
    run import; judge_save; off
  done
  summary "saves onto an ext4 with 0 to 14 blocks of 1 KiB free"

  for size in $(seq 0 8); do
    scene="save with files of at most $size KiB"
    on_tmpfs size=1m; old_project
    run limited "$size" import env
    judge_save; off
  done
  summary "saves with files of at most 0 to 8 KiB"
}

# The n-th call of a kind fails, for every n until there are no more.
each_fault() { # name of the system call, error; what, before, run, judge; step
  local n
  for ((n = 1; ; n += ${7:-1})); do
    scene="$3 with $2 at $1 number $n"
    "$4"
    run "$5" strace -qq -o "$work/trace" -e "trace=$1" -e "inject=$1:error=$2:when=$n"
    if ! grep -q INJECTED "$work/trace"; then off; break; fi
    may_be_mute=$(grep INJECTED "$work/trace" | grep '^write(2' || true)
    "$6"; off
  done
  may_be_mute=
}

fresh_save_disk() { on_tmpfs size=1m; old_project; }

save_faults() {
  local fault
  for fault in write:ENOSPC write:EDQUOT write:EIO fsync:EIO fsync:EDQUOT rename:EROFS; do
    each_fault "${fault%:*}" "${fault#*:}" save fresh_save_disk import judge_save
  done
  summary "saves with each write, fsync and rename failing"
}

# --- cards -------------------------------------------------------------------------------------

# The card is a folder of the disk; beside it stands what takes up the room.
settings=()
create() {
  "$@" "$cli" --app-folder "$work/new" create "$work/new.crd2" --card "$disk/card" --yes \
    "${settings[@]}"
}
update() {
  settings=(--settings-only)
  create "$@" || { settings=(); return 1; }
  settings=()
}

# Makes the card of the beginning, with its arguments: $1 the project, or none.
begin_card() {
  mkdir "$disk/card"
  [ "$1" = none ] ||
    "$cli" --app-folder "$work/old" create "$work/$1.crd2" --card "$disk/card" --yes --no-verify \
      >"$work/out" 2>"$work/err"
  rm -rf "$work/before"
  cp -r "$disk/card" "$work/before"
}
roomy_card() { on_tmpfs size=8m; begin_card "$1"; }
small_card() { roomy_card old; }
same_music() { roomy_card new; }

# Whether two files of a card are the same; of settings the number in the first record, which every
# run draws anew, and with it that record's checksum are left out.
same_file() {
  case $1 in
    *.xd3) cmp -s <(sed '1d;2d' "$1") <(sed '1d;2d' "$2") && [ -s "$1" ] &&
             [ "$(stat -c %s "$1")" = "$(stat -c %s "$2")" ] ;;
    *) cmp -s "$1" "$2" ;;
  esac
}
same_card() {
  [ "$(ls "$disk/card")" = "$(ls "$1")" ] || return 1
  for name in "$1"/*; do same_file "$disk/card/${name##*/}" "$name" || return 1; done
}

judge_card() {
  local name good=yes whole=""
  if same_card "$work/before"; then
    count "card untouched"
    [ ! -e "$work/before/0000.xd3" ] || whole=yes
    [ "$code" -eq 1 ] || fail "nothing was written, and it says nothing"
  elif same_card "$work/reference"; then
    count written
    whole=yes
  else
    count "stopped half-way"
    [ "$code" -eq 1 ] || fail "a half-written card is reported as done"
    for name in "$disk/card"/*; do
      same_file "$name" "$work/reference/${name##*/}" ||
        same_file "$name" "$work/before/${name##*/}" || fail "${name##*/} is short"
    done
  fi
  if [ "$code" -eq 1 ] && [ ! "${may_be_mute:-}" ]; then
    grep -qE '/|\(error 534|standard output' "$work/err" || fail "no file is named"
  fi
  "$cli" verify "$disk/card" >/dev/null 2>&1 || good=""
  [ "$good" = "$whole" ] || fail "verify says good: '$good'; it is whole: '$whole'"
}

# What a failed run left is finished by the next one.
repair() {
  scene+=", second run"
  run create env
  judge_card
  [ "$code" -eq 0 ] || fail "it does not finish the card"
}

# The room that the files of a card take, in blocks of $2 bytes.
room_needed() {
  local name sum=0
  for name in "$1"/*; do sum=$((sum + ($(stat -c %s "$name") + $2 - 1) / $2)); done
  echo "$sum"
}

card_sizes() {
  local size need files before
  need=$(room_needed "$work/reference" 4096)
  for before in none old; do
    for size in 0 $((need / 2)) $(seq $((need - 12)) $((need + 3))); do
      scene="card with $size of $need pages, before: $before"
      roomy_card "$before"; fill_to $((size - $(room_needed "$work/before" 4096)))
      run create env; judge_card; off
    done
    summary "cards onto $need pages, 12 less to 3 more ($before before)"
  done

  files=$(find "$work/reference" -type f | wc -l)
  for size in $(seq 0 $((files + 1))); do
    scene="card with $size files to spare"
    on_tmpfs "size=8m,nr_inodes=$((size + 2))"; begin_card none
    run create env; judge_card
    mount -o remount,nr_inodes=100 "$disk"
    repair; off
  done
  summary "cards with 0 to $((files + 1)) files to spare"

  for block in 1024 4096; do
    need=$(room_needed "$work/reference" "$block")
    for size in $(seq $((need - 20)) $((need + 20))); do
      scene="card with $size of $need blocks of $block on ext4"
      on_ext4 8192 "$block" || break 2
      begin_card none; fill_to "$size"
      run create env; judge_card
      rm "$disk/filler"; repair; off
    done
    summary "cards onto an ext4, 20 blocks of $block less to 20 more"
  done

  for size in $(seq 0 20); do
    scene="settings with $size pages free"
    same_music; fill_to "$size"
    run update env; judge_card
    rm "$disk/filler"; repair; off
  done
  summary "settings onto cards with 0 to 20 pages free"

  mkdir -p "$work/tmp"
  for size in $(seq 1 14); do
    scene="work folder of $size pages"
    mount -t tmpfs -o "size=$((size * 4096))" tmpfs "$work/tmp"
    small_card
    run create env "TMPDIR=$work/tmp"; judge_card
    [ "$code" -eq 0 ] || same_card "$work/before" || fail "the card was touched"
    off; umount "$work/tmp"
  done
  summary "cards with a work folder of 1 to 14 pages"
}

card_faults() {
  local fault
  for fault in write:ENOSPC write:EDQUOT openat:EROFS sync_file_range:ENOSPC syncfs:EIO; do
    each_fault "${fault%:*}" "${fault#*:}" settings same_music update judge_card 2
  done
  summary "settings with every 2nd write, opening, flush failing"
  for fault in write:EDQUOT openat:EIO unlink,unlinkat:EROFS sync_file_range:EDQUOT; do
    each_fault "${fault%:*}" "${fault#*:}" card small_card create judge_card 7
  done
  summary "cards with every 7th write, opening, deletion failing"

  for size in $(seq 0 8 64); do
    scene="card with files of at most $size KiB"
    small_card
    run limited "$size" create env; judge_card
    repair; off
  done
  summary "cards with files of at most 0 to 64 KiB"
}

# The volume turns read-only while the files are copied.
card_turns_read_only() {
  local at
  for at in 0001 0005 0010 0020 0030; do
    scene="card that turns read-only behind $at.mp3"
    small_card
    : >"$work/waiting"
    (
      while [ -e "$work/waiting" ]; do
        [ -e "$disk/card/$at.mp3" ] && mount -o remount,ro "$disk" 2>/dev/null && break
      done
    ) &
    run create env
    rm -f "$work/waiting"
    wait
    judge_card
    mount -o remount,rw "$disk"
    repair; off
  done
  summary "cards that turn read-only in the middle"
}

firmware() { "$cli" --app-folder "$work/new" firmware "$disk/card" --yes; }

firmware_sizes() {
  local size
  for size in $(seq 0 6); do
    scene="firmware with $size pages free"
    same_music; fill_to "$size"
    run firmware
    if cmp -s "$disk/card/0000.hex" "$work/new/firmware/0000.hex"; then
      count written
    else
      count "old kept"
      cmp -s "$disk/card/0000.hex" "$work/old/firmware/0000.hex" || fail "the firmware is half"
      [ "$code" -eq 1 ] || fail "nothing was written, and it says nothing"
      grep -q '0000.hex: ' "$work/err" || fail "no file is named"
    fi
    [ "$(ls "$disk/card")" = "$(ls "$work/before")" ] || fail "something lies about"
    off
  done
  summary "firmware onto cards with 0 to 6 pages free"
}
