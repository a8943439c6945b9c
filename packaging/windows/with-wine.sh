#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-wine.sh COMMAND...: runs a command with a fresh Wine of its own and a screen that nobody sees.
# E: is a drive that this Wine calls removable; TESSALY_CARD_DRIVE names it to the tests, and
# TESSALY_CARD_FOLDER is where it lies on this machine.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
"$root/tools/install-dependencies.sh" wine wine64 xvfb xauth fonts-dejavu-core

scratch=$(mktemp -d)
export HOME=$scratch/home WINEPREFIX=$scratch/wine WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree=;mshtml="  # no offer to install what nobody here needs
export TESSALY_CARD_DRIVE=E:\\ TESSALY_CARD_FOLDER=$scratch/card
mkdir "$HOME" "$TESSALY_CARD_FOLDER"
trap 'wineserver -k || true; rm -rf "$scratch"' EXIT

wine wineboot --init > "$scratch/wineboot.log" 2>&1
ln -sfn "$TESSALY_CARD_FOLDER" "$WINEPREFIX/dosdevices/e:"
wine reg add 'HKLM\Software\Wine\Drives' /v e: /t REG_SZ /d floppy /f > /dev/null 2>&1
wineserver -w  # the drives are read when it starts
xvfb-run -a -s "-screen 0 1600x1200x24" "$@"
