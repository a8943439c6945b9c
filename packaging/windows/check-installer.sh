#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# check-installer.sh SETUP.exe, inside with-wine.sh: installs, installs again, and uninstalls for the
# user; what the operator put there has to stay, everything else has to go.
set -euo pipefail
setup=$1
programs=$(dirname "$(winepath -u 'C:\users')")/users/$(id -un)/AppData/Local/Programs
folder=$programs/Tessaly
menu=$programs/../../Roaming/Microsoft/Windows/'Start Menu'/Programs/Tessaly.lnk
uninstall='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tessaly'
types='HKCU\Software\Classes'

fail() {
  echo "FAILED: $*" >&2
  exit 1
}
value() { wine reg query "$1" ${2:+/v} "${2:-/ve}" 2> /dev/null | tr -d '\r'; }
contains() { grep -qF -- "$2" <<< "$1" || fail "'$2' is not in '$1'"; }
gone() { ! wine reg query "$1" > /dev/null 2>&1 || fail "$1 is still there"; }

wine "$setup" /S
for file in tessaly.exe tessaly-cli.exe Uninstall.exe files/9998.mp3 files/0007.cfg \
  firmware/0000.hex Chimes manual/manual.html licences/qt6-base-dev.txt; do
  [ -e "$folder/$file" ] || fail "$file was not installed"
done
[ -f "$menu" ] || fail "there is no entry in the start menu"
contains "$(value "$types\\.crd2")" Tessaly.Project
contains "$(value "$types\\Tessaly.Project\\shell\\open\\command")" 'Tessaly\tessaly.exe" "%1"'
contains "$(value "$types\\Tessaly.Project\\DefaultIcon")" 'tessaly.exe,1'
contains "$(value "$uninstall" UninstallString)" 'Tessaly\Uninstall.exe'
version=$(wine "$folder/tessaly-cli.exe" --version 2> /dev/null | tr -d '\r')
contains "$(value "$uninstall" DisplayVersion)" "$version"
echo "installed: $(find "$folder" -type f | wc -l) files, tessaly-cli $version"

# The maker's firmware, a project and a half-done run.
firmware=':0201200001A438\r\n:00000001FF\r\n'
printf %b "$firmware" > "$folder/firmware/0000.hex"
echo project > "$folder/mine.crd2"
touch "$folder/files/tmp.bin"
rm "$folder/files/0007.cfg"
wine "$setup" /S
[ -f "$folder/files/0007.cfg" ] || fail "a second installation did not put a lost file back"
printf %b "$firmware" | cmp - "$folder/firmware/0000.hex" || fail "the maker's firmware is gone"

# The uninstaller goes on as a copy of itself, so that it can delete itself.
wine "$folder/Uninstall.exe" /S
for _ in $(seq 120); do
  [ -e "$folder/Uninstall.exe" ] || break
  sleep 0.5
done
left=$(cd "$folder" && find . -type f | sort | tr '\n' ' ')
[ "$left" = "./firmware/0000.hex ./mine.crd2 " ] || fail "left behind: $left"
wineserver -w
[ ! -e "$menu" ] || fail "the entry in the start menu is still there"
for key in "$uninstall" "$types\\.crd2" "$types\\Tessaly.Project"; do
  gone "$key"
done
echo "uninstalled: the maker's firmware and the project stayed, nothing else did"
