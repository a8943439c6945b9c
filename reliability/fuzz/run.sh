#!/usr/bin/env bash
# Lets every target run for SECONDS seconds, or for RUNS runs if that is said, from its corpus and
# fresh seeds. TARGETS names some of them only. With MINIMISE=1 the corpora are then made anew, of
# the fewest and smallest inputs that reach everything that was reached.
set -euo pipefail
cd "$(dirname "$0")/../.."

build=${BUILD:-build-fuzz}
work=$build/fuzz
corpora=reliability/fuzz/corpus
targets=${TARGETS:-project image hex playlist mounts tags snapshot}
limit="-max_total_time=${SECONDS_EACH:-60}"
[ -z "${RUNS:-}" ] || limit="-runs=$RUNS"

# A single input has a minute and 1 GB. Inputs are short, so that many can be tried.
options=(-timeout=60 -rss_limit_mb=1024 -print_final_stats=1)
declare -A longest=([project]=1200 [image]=900 [hex]=400 [playlist]=300 [mounts]=300 [tags]=1200
  [snapshot]=800)
export ASAN_OPTIONS=quarantine_size_mb=8:malloc_context_size=4
"$build/fuzz-seeds" "$work/seeds"

failed=0
for target in $targets; do
  mkdir -p "$work/found/$target" "$work/crashes" "$corpora/$target"
  dictionary=()
  [ ! -f "reliability/fuzz/$target.dict" ] || dictionary=("-dict=reliability/fuzz/$target.dict")
  log=$work/$target.log
  echo "fuzz-$target $limit"
  if ! "$build/fuzz-$target" "${options[@]}" "${dictionary[@]}" "$limit" -max_len="${longest[$target]}" \
    "-artifact_prefix=$work/crashes/$target-" "$work/found/$target" "$corpora/$target" \
    "$work/seeds/$target" >"$log" 2>&1; then
    echo "  FOUND SOMETHING: see $log"
    grep -a -m 3 -E 'ERROR|what\(\)|runtime error|Test unit written' "$log" | sed 's/^/  /' || true
    failed=1
    continue
  fi
  grep -aw DONE "$log" | sed 's/^/  /'
  if [ -n "${MINIMISE:-}" ]; then
    rm -rf "$work/minimal"
    mkdir "$work/minimal"
    "$build/fuzz-$target" -merge=1 "${options[@]}" "$work/minimal" "$corpora/$target" \
      "$work/found/$target" "$work/seeds/$target" >"$work/$target-merge.log" 2>&1
    find "$corpora/$target" -type f ! -name 'fault-*' -delete
    cp "$work"/minimal/* "$corpora/$target/"
    echo "  corpus: $(find "$corpora/$target" -type f | wc -l) files"
  fi
done
exit $failed
