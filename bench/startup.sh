#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The start of the program without a screen and on a virtual one.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-dependencies.sh xvfb xauth
QT_QPA_PLATFORM=offscreen build/tessaly-startup-bench
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" build/tessaly-startup-bench
