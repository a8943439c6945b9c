#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# make-ico.sh FROM.svg TO.ico: all the sizes that Windows asks for, the largest as PNG.
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for size in 16 20 24 32 40 48 64 96 128 256; do
  rsvg-convert -w $size -h $size "$1" -o "$scratch/$(printf %03d $size).png"
done
icotool -c -o "$2" "$scratch"/0*.png "$scratch"/128.png --raw="$scratch/256.png"
