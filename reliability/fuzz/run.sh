#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Lets every target run for SECONDS_EACH seconds, or for RUNS runs if that is said, from its corpus.
# TARGETS names some of them only. What was found goes into build-fuzz/found; with MINIMISE=1 the
# corpora are packed anew with it, of the fewest and smallest inputs that reach everything that was
# reached, and of those that once were faults.
set -euo pipefail
cd "$(dirname "$0")/../.."

build=${BUILD:-build-fuzz}
limit="-max_total_time=${SECONDS_EACH:-60}"
[ -z "${RUNS:-}" ] || limit="-runs=$RUNS"

# A single input has a minute and 1 GB. Inputs are short, so that many can be tried.
options=(-timeout=60 -rss_limit_mb=1024 -print_final_stats=1)
declare -A longest=([project]=1200 [image]=900 [hex]=400 [playlist]=300 [mounts]=300 [tags]=1200 [sound]=2500
  [snapshot]=800)
export ASAN_OPTIONS=quarantine_size_mb=8:malloc_context_size=4

failed=0
for TARGET in ${TARGETS:-project image hex playlist mounts tags sound snapshot}; do
  export TARGET
  corpus=$build/reliability/fuzz/corpus/$TARGET
  found=$build/found/$TARGET
  mkdir -p "$found"
  dictionary=()
  [ ! -f "reliability/fuzz/$TARGET.dict" ] || dictionary=("-dict=reliability/fuzz/$TARGET.dict")
  echo "$TARGET $limit"
  if ! "$build/tessaly-fuzz" "${options[@]}" "${dictionary[@]}" "$limit" \
    -max_len="${longest[$TARGET]}" "-artifact_prefix=$build/found/crash-$TARGET-" "$found" "$corpus" \
    >"$found.log" 2>&1; then
    echo "  FOUND SOMETHING: see $found.log"
    grep -a -m 3 -E 'ERROR|what\(\)|runtime error|Test unit written' "$found.log" | sed 's/^/  /' || true
    failed=1
    continue
  fi
  grep -aw DONE "$found.log" | sed 's/^/  /'
  [ -n "${MINIMISE:-}" ] || continue
  rm -rf "$found.minimal"
  mkdir "$found.minimal"
  "$build/tessaly-fuzz" -merge=1 "${options[@]}" "$found.minimal" "$corpus" "$found" \
    >"$found.merge.log" 2>&1
  find "$corpus" -name 'fault-*' -exec cp {} "$found.minimal" \;
  find "$found.minimal" -type f -printf '%f\n' | LC_ALL=C sort |
    tar -C "$found.minimal" -cJf "reliability/fuzz/corpus/$TARGET.tar.xz" --files-from=- \
      --format=ustar --mtime=@0 --owner=0 --group=0 --numeric-owner --mode=644
  echo "  corpus: $(find "$found.minimal" -type f | wc -l) files"
done
exit $failed
