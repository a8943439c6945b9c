#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The part of check_package.sh that happens inside the clean root.
set -euo pipefail
cd /
say() { printf '\n== %s\n' "$*"; }
run() { printf '$ %s\n' "$*"; "$@"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
as_operator() { runuser -u ann -- env HOME=/home/ann XDG_RUNTIME_DIR=/home/ann/run "$@"; }
# Everything of the system that mentions the package by name, its own download and the logs aside.
traces() {
  find / -xdev \( -path /proc -o -path /dev -o -path /sys -o -path /home -o -path /samples \
    -o -path /var/log \) -prune -o -ipath '*tessaly*' -print |
    grep -v -e '^/tessaly.deb$' -e '^/tessaly-cli\.[1b]' | sort
  grep -l -i -r tessaly /etc /usr/share/applications /usr/share/mime /var/lib 2>/dev/null |
    grep -v -e '^/var/lib/apt' -e '^/var/lib/dpkg/status-old$' -e '-old$' || true
}

say "Installing, with what it depends on and nothing else"
apt-get update -q >/dev/null
before=$(traces)
# A system as it comes from an installer keeps documents; an image for containers may not.
rm -f /etc/dpkg/dpkg.cfg.d/*docker*
apt-get install -y -q --no-install-recommends /tessaly.deb >/tmp/install.log 2>&1 ||
  { tail -30 /tmp/install.log; fail "apt-get install"; }
grep -E 'newly installed|Setting up tessaly' /tmp/install.log
dpkg --verify tessaly

say "The command line"
useradd --create-home ann
as_operator mkdir -p /home/ann/card /home/ann/run
chmod 700 /home/ann/run
operator_says() { printf '$ %s\n' "$*"; as_operator "$@"; }
operator_says tessaly-cli --version
operator_says tessaly-cli import /samples/tour --output "/home/ann/my tour.crd2"
operator_says tessaly-cli check "/home/ann/my tour.crd2"
operator_says tessaly-cli create "/home/ann/my tour.crd2" --card /home/ann/card --yes >/tmp/create.log ||
  { cat /tmp/create.log; fail create; }
grep -F 'Firmware: /usr/share/tessaly/firmware/0000.hex' /tmp/create.log
operator_says tessaly-cli verify /home/ann/card

say "The user's own firmware comes before the installed one"
as_operator mkdir -p /home/ann/.local/share/Tessaly/firmware
printf ':045555000102030448\r\n:00000001FF\r\n' >/home/ann/.local/share/Tessaly/firmware/0000.hex
operator_says tessaly-cli create "/home/ann/my tour.crd2" --card /home/ann/card --yes >/tmp/create.log
grep -F 'Firmware: /home/ann/.local/share/Tessaly/firmware/0000.hex' /tmp/create.log
cmp /home/ann/card/0000.hex /home/ann/.local/share/Tessaly/firmware/0000.hex

say "The window, with nothing but the dependencies"
as_operator sh -c 'echo $$ >/home/ann/run/pid
  QT_QPA_PLATFORM=offscreen exec tessaly "/home/ann/my tour.crd2"' 2>/tmp/window.log &
waited=0
until [ -e /home/ann/.local/share/Tessaly/recovery/running ]; do
  [ $((waited += 1)) -lt 150 ] || { cat /tmp/window.log; fail "the window did not open"; }
  sleep 0.2
done
echo "it runs without a screen"
kill "$(cat /home/ann/run/pid)"
wait || true
rm -rf /home/ann/.local/share/Tessaly/recovery
status=0
operator_says env QT_QPA_PLATFORM=offscreen tessaly a.crd2 b.crd2 || status=$?
[ $status -eq 2 ] || fail "two files gave $status"

say "A desktop"
apt-get install -y -q --no-install-recommends xvfb xauth xdotool openbox x11-utils xdg-utils \
  desktop-file-utils shared-mime-info libglib2.0-bin man-db bash-completion groff-base \
  fonts-dejavu-core >/tmp/desktop.log 2>&1 || { tail -30 /tmp/desktop.log; fail "the desktop"; }
dpkg --verify tessaly
cat >/home/ann/browser <<'B'
#!/bin/sh
echo "$1" >/home/ann/browsed
B
cat >/home/ann/session <<'S'
set -eu
openbox & 
tessaly "/home/ann/my tour.crd2" & first=$!
seen=
for i in $(seq 300); do
  seen=$(xdotool search --onlyvisible --name 'TRL740 Card Preparation - my tour.crd2' 2>/dev/null | head -1) && [ -n "$seen" ] && break
  sleep 0.2
done
[ -n "$seen" ] || { echo "no window shows the project"; exit 1; }
echo "the window: $(xdotool getwindowname "$seen")"
xdotool windowactivate --sync "$seen" key F1
for i in $(seq 100); do [ -s /home/ann/browsed ] && break; sleep 0.2; done
echo "F1 opened: $(cat /home/ann/browsed)"
# A second start says that one is running.
tessaly & second=$!
for i in $(seq 100); do
  box=$(xdotool search --onlyvisible --name 'Tessaly Error' 2>/dev/null | head -1) && [ -n "$box" ] && break
  sleep 0.2
done
echo "a second start: $(xdotool getwindowname "$box")"
xdotool windowactivate --sync "$box" key Return
wait $second
xdotool windowactivate --sync "$seen" key ctrl+q
wait $first
echo "both ended"
S
chmod +x /home/ann/browser
as_operator env BROWSER=/home/ann/browser xvfb-run -a -s "-screen 0 1280x1024x24" \
  sh /home/ann/session 2>/tmp/session.log || { tail -5 /tmp/session.log; fail "the session"; }
grep -qx 'file:///usr/share/tessaly/manual/manual.html' /home/ann/browsed || fail "the manual"

say "Desktop and file type"
run desktop-file-validate /usr/share/applications/tessaly.desktop
run grep -x 'application/x-tessaly-project=tessaly.desktop;' /usr/share/applications/mimeinfo.cache
type=$(as_operator gio info -a standard::content-type "/home/ann/my tour.crd2" |
  sed -n 's/.*content-type: //p')
handler=$(as_operator xdg-mime query default application/x-tessaly-project)
echo "my tour.crd2 is $type, opened by $handler"
[ "$type $handler" = "application/x-tessaly-project tessaly.desktop" ] || fail "file type"
as_operator gio mime application/x-tessaly-project | sed -n 1p
for icon in apps/tessaly mimetypes/application-x-tessaly-project; do
  [ -s /usr/share/icons/hicolor/scalable/$icon.svg ] || fail "icon $icon"
done

say "Man pages and completion"
rm -f /etc/dpkg/dpkg.cfg.d/*docker*
for page in tessaly tessaly-cli; do
  said=$(man --warnings -E UTF-8 -l -Tutf8 -Z /usr/share/man/man1/$page.1.gz 2>&1 >/dev/null) || true
  [ -z "$said" ] || fail "man $page: $said"
  echo "man $page: $(man -l /usr/share/man/man1/$page.1.gz | wc -l) lines, no warnings"
done
bash -c 'source /usr/share/bash-completion/bash_completion && _completion_loader tessaly-cli || [ $? = 124 ]
  complete -p tessaly-cli'
cmp /usr/share/bash-completion/completions/tessaly-cli /tessaly-cli.bash
bash /check_command_line.sh tessaly-cli

say "Removing"
mapfile -t owned < <(dpkg -L tessaly)
apt-get purge -y -q tessaly >/tmp/purge.log 2>&1 || { cat /tmp/purge.log; fail purge; }
grep -i 'warning' /tmp/purge.log && fail "the purge warned"
for path in "${owned[@]}"; do
  [ -f "$path" ] && fail "$path was left behind"
done
left=$(comm -13 <(sort <<<"$before") <(traces | sort))
[ -z "$left" ] || fail "left behind: $left"
for own in "my tour.crd2" card/0000.crd2 .local/share/Tessaly/firmware/0000.hex; do
  [ -s "/home/ann/$own" ] || fail "the user's own files"
done
echo "${#owned[@]} paths are gone; the user's own files are untouched"
