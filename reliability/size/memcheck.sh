#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The tests of the core and of the window under valgrind's memcheck: no access to memory that is not
# the program's, no leak. Tests of the command line are left out: they only start another program.
set -euo pipefail
cd "$(dirname "$0")/../.."

# With a seed Qt hashes texts by instructions that read past their end, within the same page: no
# fault, but one that memcheck sees. Without a seed it does not use them.
export QT_HASH_SEED=0

# check KINDS PROGRAM: ends with an error when memcheck finds one, or a leak of these kinds.
check() {
  valgrind --quiet --leak-check=full --show-leak-kinds="$1" --errors-for-leak-kinds="$1" \
    --num-callers=30 --error-exitcode=9 --suppressions=reliability/size/window.supp \
    "$2" --gtest_brief=1
}

check definite,indirect,possible build/tessaly_core_tests
# Qt's threads live to the end, and what they hold counts as possibly lost.
QT_QPA_PLATFORM=offscreen check definite,indirect build/tessaly_app_tests
echo "memcheck: no invalid access, no leak"
