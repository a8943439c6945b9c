#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the pictures in docs/images: the real windows on a virtual screen.
set -euo pipefail
cd "$(dirname "$0")/../.."
tools/install-dependencies.sh xvfb xauth fonts-dejavu-core
cmake --build --preset release --target tessaly-screenshots
mkdir -p docs/images
QT_SCALE_FACTOR=${SCALE:-1} xvfb-run -a -s "-screen 0 1600x1200x24" \
  build/tessaly-screenshots build "${PICTURES:-docs/images}"
