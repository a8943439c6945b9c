#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the Debian packages that building and testing need, and those named as arguments; does
# nothing when all of them are there.
set -euo pipefail

packages=(
  g++ cmake ninja-build make pkg-config git ca-certificates
  clang-format                 # make lint
  qt6-base-dev                 # Qt 6 Core and Widgets
  libtag1-dev                  # TagLib: MP3 tags
  libmpg123-dev                # frames of MP3 files, and what they sound like
  libebur128-dev               # loudness
  libxxhash-dev                # verification of written files
  libcli11-dev                 # command line
  libgtest-dev libgmock-dev    # make test
  libbenchmark-dev             # make bench
  bc                           # make bench
  pandoc                       # the manual as HTML
  srecord                      # an independent reader of Intel HEX for the tests
  dosfstools mtools fusefat    # real FAT volumes for the demo
)
packages+=("$@")

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

echo "Installing: ${missing[*]}"
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Run this as root, or install sudo." >&2; exit 1; }
  sudo=(sudo)
fi
"${sudo[@]}" apt-get update -q
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -q --no-install-recommends "${missing[@]}"
