#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# clang-tidy over what changed: the C++ files of src/ that differ from where this branch left
# origin/main, on main itself from the commit before. "all" looks at every one (some 15 minutes).
# Needs the build folder build/, for its compile commands and the headers made of .ui files.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" = all ]; then
  files=$(git ls-files 'src/*.cpp')
else
  base=$(git merge-base HEAD origin/main 2>/dev/null || true)
  if [ -z "$base" ] || [ "$base" = "$(git rev-parse HEAD)" ]; then
    base=$(git rev-parse -q --verify HEAD~1 || git hash-object -t tree /dev/null)
  fi
  files=$(git diff --name-only --diff-filter=d "$base" -- 'src/*.cpp')
fi
files=$(grep -v /windows/ <<<"$files" || true)
[ -n "$files" ] || { echo "clang-tidy: nothing changed"; exit 0; }

# clang cannot read what the compiler of the build precompiled.
mkdir -p build/tidy
sed -E 's/ -fpch-preprocess| -Winvalid-pch| -include [^ ]*cmake_pch\.hxx//g' \
  build/compile_commands.json >build/tidy/compile_commands.json
echo "clang-tidy: $(wc -l <<<"$files") files"
xargs -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet <<<"$files" 2> >(grep -v 'warnings generated' >&2)
