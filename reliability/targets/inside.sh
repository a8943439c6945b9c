#!/usr/bin/env bash
# Runs in the root folder that run.sh made; see there.
set -uo pipefail

cli=/opt/tessaly/tessaly-cli
tried=0
failed=0

fail() {
  failed=$((failed + 1))
  printf 'FAILED: %s\n' "$*"
}

# --- The machine ---------------------------------------------------------------------------------
mkdir -p /home/{me/deep,other} /root /mnt /media/me/{CARD,STICK} /run/user/1000 /srv/{music,project} \
  /var/{lib,log,tmp} /data /cards/{empty,full} /bind/{home,all,up,sources,disk,cards} /links \
  /vol/people /people /over/stick /checkout/.git /disk /layers
for folder in /home/me /home/me/deep /home/other /root /mnt /media /media/me /run /run/user/1000 \
  /srv /srv/project /var/log /var/lib /var/tmp /tmp /opt /opt/tessaly /vol /vol/people /over \
  /checkout /checkout/.git /cards/full /dev/shm /data /; do
  echo "precious in $folder" >"$folder/precious.txt"
done
cp -r /samples/tour /srv/music/
$cli import /srv/music/tour --output /srv/project/tour.crd2 >/dev/null 2>&1 || fail "import"
for volume in /media/me/CARD /media/me/STICK /over/stick; do mount -t tmpfs stick "$volume"; done
echo precious >/media/me/STICK/holiday.jpg
echo precious >/over/stick/holiday.jpg
# A disk that is no RAM disk, without a device of its own.
mount -t tmpfs disk /layers
mkdir /layers/{lower,upper,inner}
mount -t overlay overlay -o lowerdir=/layers/lower,upperdir=/layers/upper,workdir=/layers/inner /disk ||
  fail "no overlay"
echo precious >/disk/holiday.jpg
mount --bind /home/me /bind/home
mount --bind / /bind/all
mount --bind /home /bind/up
mount --bind /srv/music /bind/sources
mount --bind /disk /bind/disk
mount --bind /cards /bind/cards
mount --bind /vol/people /people # what people see at /people is in /vol
for name in home home/me opt/tessaly srv/music/tour srv/project disk; do
  ln -s "/$name" "/links/${name//\//-}"
done
ln -s /home/me/deep /links/deep

# Every file with its content, and everything else by name, in all that can be written (/bind and
# /people show the same once more).
snapshot() {
  local place
  for place in / /media/me/CARD /media/me/STICK /over/stick /disk; do
    find "$place" -xdev \( -path /proc -o -path /usr -o -path /etc -o -path /samples -o \
      -path /tmp/state -o -path '/dev/[!s]*' -o -path /bind -o -path /people -o \
      -path '/tmp/tessaly-cli-*' \) -prune -o \
      -type f -exec sha1sum {} + -o -printf '%y %p %l\n'
  done | sort
}

refused() {
  local what=$1 target=$2
  shift 2
  local code=0
  tried=$((tried + 1))
  timeout 60 $cli create /srv/project/tour.crd2 --card "$target" "$@" \
    >/tmp/state/out 2>/tmp/state/err </dev/null || code=$?
  [ $code -eq 1 ] || [ $code -eq 3 ] || fail "$what ($target $*): exit code $code"
  grep -qE 'step 31[0126]|there is no such folder|no file of a card|too small' /tmp/state/err ||
    fail "$what ($target $*): $(tail -n 1 /tmp/state/err)"
  snapshot | cmp -s - /tmp/state/before || {
    fail "$what ($target $*): something changed"
    snapshot | diff /tmp/state/before - | head -n 5
    snapshot >/tmp/state/before
  }
}

mkdir /tmp/state
cd /home/me/deep || exit 1
snapshot >/tmp/state/before
[ "$(wc -l </tmp/state/before)" -gt 100 ] || fail "the snapshot sees too little"

# --- Never erased --------------------------------------------------------------------------------
while IFS='|' read -r what target; do
  [ -n "$what" ] || continue
  for options in "--erase --yes" "--yes" "--settings-only --erase --yes"; do
    # shellcheck disable=SC2086
    refused "$what" "$target" $options
  done
done <<'TABLE'
the root|/
the root, doubled|//
the root, with a dot|/.
the root, from below|/home/..
the root, far up|/../../..
the root, from here|../../..
a bind mount of the root|/bind/all
the home folder|/home/me
the home folder, from inside|..
somebody else's|/home/other
all homes|/home
the administrator's|/root
a bind mount of the home folder|/bind/home
a bind mount of what holds it|/bind/up
the home folder inside that|/bind/up/me
a link to the home folder|/links/home-me
up from a link|/links/deep/..
a link to all homes|/links/home/
temporary files|/tmp
mounts|/mnt
media|/media
the mount points of a person|/media/me
the same, with separators|//media///me//
run|/run
var|/var
logs|/var/log
programs|/usr
programs' data|/usr/share
settings of the machine|/etc
devices|/dev
shared memory|/dev/shm
processes|/proc
optional programs|/opt
the program|/opt/tessaly
a link to the program|/links/opt-tessaly
the program, seen through a bind mount|/bind/all/opt/tessaly
the sources|/srv/music/tour
above the sources|/srv/music
above everything of this tour|/srv
a bind mount of the sources|/bind/sources
a link to the sources|/links/srv-music-tour
the folder of the project|/srv/project
a link to it|/links/srv-project
a whole fixed disk|/disk
a bind mount of it|/bind/disk
a link to it|/links/disk
a folder that is mounted elsewhere in part|/vol
a folder with a drive in it|/over
a checkout|/checkout
its inside|/checkout/.git/..
a trailing blank|/home/me 
a drive of Windows|C:\
its long form|\\?\C:\
nothing|
TABLE

# --- Exchanged while the question stands ---------------------------------------------------------
# Asks on a terminal, does something, answers yes: the run must end with nothing erased.
exchanged() {
  local what=$1 target=$2 act=$3 undo=$4 turn
  tried=$((tried + 1))
  rm -f /tmp/state/answer
  mkfifo /tmp/state/answer
  : >/tmp/state/out
  (exec 3>/tmp/state/answer
   for turn in $(seq 200); do
     grep -q 'Continue?' /tmp/state/out && break
     sleep 0.05
   done
   eval "$act"
   snapshot >/tmp/state/before
   echo yes >&3) &
  timeout 60 script -qefc "$cli create /srv/project/tour.crd2 --card '$target' $5" /dev/null \
    </tmp/state/answer >/tmp/state/out 2>&1
  local code=$?
  wait
  [ $code -eq 1 ] || fail "$what: exit code $code"
  grep -qE 'error 71, step 310|error 53[01], step 31' /tmp/state/out ||
    fail "$what: $(tail -n 1 /tmp/state/out)"
  snapshot | cmp -s - /tmp/state/before || fail "$what: something changed"
  eval "$undo"
}

exchanged "a disk is mounted over the folder" /cards/empty \
  "mount --bind /data /cards/empty" "umount /cards/empty" ""
exchanged "the same, with --erase" /cards/full \
  "mount --bind /data /cards/full" "umount /cards/full" "--erase"
exchanged "another card in the same place" /media/me/STICK \
  "umount /media/me/STICK; mount -t tmpfs stick /media/me/STICK; echo x >/media/me/STICK/new.jpg" \
  ":" "--erase"
exchanged "the card is gone" /media/me/CARD \
  "umount /media/me/CARD; echo precious >/media/me/CARD/note.txt" \
  "rm /media/me/CARD/note.txt; mount -t tmpfs stick /media/me/CARD" ""
exchanged "a drive is mounted inside" /cards/full \
  "mkdir /cards/full/in; mount -t tmpfs in /cards/full/in; echo x >/cards/full/in/x" \
  "umount /cards/full/in; rmdir /cards/full/in" "--erase"
exchanged "the folder became a link" /cards/empty \
  "rmdir /cards/empty; ln -s /data /cards/empty" "rm /cards/empty; mkdir /cards/empty" ""

# --- What may be erased is erased, or the above would say nothing ---------------------------------
taken() {
  local what=$1 target=$2
  shift 2
  tried=$((tried + 1))
  $cli create /srv/project/tour.crd2 --card "$target" --yes "$@" >/tmp/state/out 2>&1 ||
    fail "$what ($target $*): $(tail -n 1 /tmp/state/out)"
  [ ! -e "$target/precious.txt" ] && [ ! -e "$target/holiday.jpg" ] || fail "$what: not erased"
  $cli verify "$target" >/dev/null 2>&1 || fail "$what: no good card"
}
taken "an empty folder" /cards/empty
taken "a full folder" /cards/full --erase
echo precious >/cards/full/precious.txt
taken "a bind mount of it" /bind/cards/full --erase
taken "a RAM disk" /media/me/CARD
echo precious >/media/me/STICK/holiday.jpg
taken "a RAM disk with something else" /media/me/STICK --erase
rm /disk/holiday.jpg
taken "a whole fixed disk that is empty" /disk --erase

printf '%d targets tried, %d failures\n' "$tried" "$failed"
[ "$failed" -eq 0 ]
