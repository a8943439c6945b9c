#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Card runs on real FAT volumes: by mcopy into the image, and by the kernel of a machine in user mode,
# which needs neither root nor loop devices. Exit code 1 when something failed, 3 when this machine
# does not start the other one, so that nothing is promised that was not tried.
set -euo pipefail
cd "$(dirname "$0")/../.."

program=$PWD/build/tessaly-fat
work=$(mktemp -d "$([ -w /dev/shm ] && echo /dev/shm || echo /tmp)/tessaly-fat-XXXXXX")
trap 'rm -rf "$work"' EXIT
result=0

echo "What the guards let through and stop, by mcopy:"
"$program" limits || result=1

echo "Mounted by the kernel of Linux:"
if command -v linux.uml >/dev/null; then
  truncate -s 140M "$work/disk.img"
  timeout 3600 linux.uml mem=256M rootfstype=hostfs ro ubda="$work/disk.img" quiet \
    init="$PWD/reliability/fat/guest.sh" TESSALY_FAT="$program" ONLY="${ONLY:-}" con=null con0=fd:0,fd:1 \
    </dev/null 2>/dev/null | tee "$work/kernel.log" || true
  if ! grep -q '^The machine is up' "$work/kernel.log"; then
    # It knows no processor whose registers take more room than those with AVX-512.
    echo "NOT TRIED: linux.uml does not start on this processor."
    [ "$result" -ne 0 ] || result=3
  elif ! grep -q '^kernel: all kept' "$work/kernel.log"; then
    echo "The machine did not get through."
    result=1
  fi
else
  echo "NOT TRIED: there is no linux.uml (Debian package user-mode-linux)."
fi
exit $result
