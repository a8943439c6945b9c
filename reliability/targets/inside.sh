#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs in the root folder that run.sh made; see there.
set -uo pipefail
# shellcheck source=reliability/lib.sh
. /lib.sh
cli=/opt/tessaly/tessaly-cli

# --- The machine ---------------------------------------------------------------------------------
mkdir -p /home/{me/deep,other} /root /mnt /media/me/{CARD,STICK} /run/user/1000 /srv/{music,project} \
  /var/{lib,log,tmp} /data /cards/{empty,full} /bind/{home,all,up,sources,disk,cards} /links \
  /vol/people /people /over/stick /checkout/.git /disk /layers
cp -r /samples/tour /srv/music/
$cli import /srv/music/tour --output /srv/project/tour.crd2 >/dev/null 2>&1 || fail "import"
for volume in /media/me/CARD /media/me/STICK /over/stick /layers; do
  mount -t tmpfs stick "$volume"
done
# A disk that is no RAM disk, without a device of its own.
mkdir /layers/{lower,upper,inner}
mount -t overlay overlay -o lowerdir=/layers/lower,upperdir=/layers/upper,workdir=/layers/inner /disk ||
  fail "no overlay"
for folder in / /home/{me,me/deep,other} /root /mnt /media{,/me,/me/STICK} /run{,/user/1000} \
  /srv{,/project} /var/{log,lib,tmp} /tmp /opt{,/tessaly} /vol{,/people} /over{,/stick} \
  /checkout{,/.git} /cards/full /dev/shm /data /disk; do
  echo "precious in $folder" >"$folder/precious.txt"
done
for bound in /home/me:home /:all /home:up /srv/music:sources /disk:disk /cards:cards; do
  mount --bind "${bound%:*}" "/bind/${bound#*:}"
done
mount --bind /vol/people /people # what people see at /people is in /vol
for name in home home/me opt/tessaly srv/music/tour srv/project disk; do
  ln -s "/$name" "/links/${name//\//-}"
done
ln -s /home/me/deep /links/deep

# Every file with its content, and everything else by name, in all that can be written (/bind and
# /people show the same once more).
snapshot() {
  find / /media/me/CARD /media/me/STICK /over/stick /disk -xdev \( -path /proc -o -path /usr -o \
    -path /etc -o -path /samples -o -path /tmp/state -o -path '/dev/[!s]*' -o -path /bind -o \
    -path /people -o -path '/tmp/tessaly-cli-*' \) -prune -o \
    -type f -exec sha1sum {} + -o -printf '%y %p %l\n' | sort
}

# Ends a try: the exit code, a word of the message, and nothing may have changed.
require_refused() { # CODE CODES MESSAGE
  checks=$((checks + 1))
  [[ $1 == [$2] ]] || fail "exit code $1"
  grep -qE "$3" /tmp/state/out || fail "$(tail -n 1 /tmp/state/out)"
  snapshot >/tmp/state/after
  diff /tmp/state/before /tmp/state/after >/tmp/state/changes || {
    fail "something changed"
    head -n 5 /tmp/state/changes
    cp /tmp/state/after /tmp/state/before
  }
}

mkdir /tmp/state
cd /home/me/deep || exit 1
snapshot >/tmp/state/before
[ "$(wc -l </tmp/state/before)" -gt 100 ] || fail "the snapshot sees too little"

# --- Never erased --------------------------------------------------------------------------------
places=(
  / // /. /home/.. /../../.. ../../.. /bind/all                                   # the root
  /home/me .. /home/other /home /root /bind/home /bind/up /bind/up/me /links/home-me # homes
  /links/deep/.. /links/home/ '/home/me '
  /tmp /mnt /media /media/me //media///me// /run /var /var/log /usr /usr/share /etc # the system
  /dev /dev/shm /proc
  /opt /opt/tessaly /links/opt-tessaly /bind/all/opt/tessaly                      # the program
  /srv/music/tour /srv/music /srv /bind/sources /links/srv-music-tour             # the sources
  /srv/project /links/srv-project                                                 # the project
  /disk /bind/disk /links/disk # a whole fixed disk
  /vol                         # a part of it is mounted elsewhere
  /over                        # a drive is in it
  /checkout /checkout/.git/..
  $'C:\\' $'\\\\?\\C:\\' # drives of Windows
)
for place in "${places[@]}"; do
  for options in "--erase --yes" "--yes" "--settings-only --erase --yes"; do
    scene="$place $options"
    code=0
    # shellcheck disable=SC2086 # words
    timeout 60 $cli create /srv/project/tour.crd2 --card "$place" $options >/tmp/state/out 2>&1 \
      </dev/null || code=$?
    require_refused $code 13 'step 31[0126]|there is no such folder|no file of a card|too small'
  done
done

# --- Exchanged while the question stands ---------------------------------------------------------
# Asks on a terminal, does something, answers yes: the run must end with nothing erased.
exchanged() { # SCENE TARGET ACT UNDO OPTIONS
  local code=0
  scene=$1
  rm -f /tmp/state/answer
  mkfifo /tmp/state/answer
  : >/tmp/state/out
  (exec 3>/tmp/state/answer
   until grep -q 'Continue?' /tmp/state/out; do sleep 0.05; done
   eval "$3"
   snapshot >/tmp/state/before
   echo yes >&3) &
  timeout 60 script -qefc "$cli create /srv/project/tour.crd2 --card '$2' $5" /dev/null \
    </tmp/state/answer >/tmp/state/out 2>&1 || code=$?
  kill $! 2>/dev/null # had there been no question, it would wait for ever
  wait
  require_refused $code 1 'error 71, step 310|error 53[01], step 31'
  eval "$4"
}
exchanged "a disk is mounted over the folder" /cards/empty \
  "mount --bind /data /cards/empty" "umount /cards/empty" ""
exchanged "the same, with --erase" /cards/full \
  "mount --bind /data /cards/full" "umount /cards/full" --erase
exchanged "another card in the same place" /media/me/STICK \
  "umount /media/me/STICK; mount -t tmpfs stick /media/me/STICK; echo x >/media/me/STICK/new.jpg" \
  : --erase
exchanged "the card is gone" /media/me/CARD \
  "umount /media/me/CARD; echo precious >/media/me/CARD/note.txt" \
  "rm /media/me/CARD/note.txt; mount -t tmpfs stick /media/me/CARD" ""
exchanged "a drive is mounted inside" /cards/full \
  "mkdir /cards/full/in; mount -t tmpfs in /cards/full/in; echo x >/cards/full/in/x" \
  "umount /cards/full/in; rmdir /cards/full/in" --erase
exchanged "the folder became a link" /cards/empty \
  "rmdir /cards/empty; ln -s /data /cards/empty" "rm /cards/empty; mkdir /cards/empty" ""

# --- What may be erased is erased, or the above would say nothing ---------------------------------
rm /disk/precious.txt
for taken in /cards/empty "/cards/full --erase" "/bind/cards/full --erase" /media/me/CARD \
  "/media/me/STICK --erase" /disk; do
  scene=$taken
  checks=$((checks + 1))
  target=${taken% --erase}
  [ "$target" = "$taken" ] || echo precious >"$target/precious.txt"
  # shellcheck disable=SC2086 # words
  $cli create /srv/project/tour.crd2 --yes --card $taken >/tmp/state/out 2>&1 ||
    fail "$(tail -n 1 /tmp/state/out)"
  [ ! -e "$target/precious.txt" ] || fail "not erased"
  $cli verify "$target" >/dev/null 2>&1 || fail "no good card"
done
verdict
