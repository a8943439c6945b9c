# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What the harnesses share that mount volumes of their own.

checks=0
failures=0
scene=start

# Starts the script anew where its mounts are nobody else's. That needs no privileges where the
# kernel lets users have namespaces.
own_mounts() {
  local namespace=(unshare --mount)
  if [ -z "${TESSALY_INSIDE:-}" ]; then
    [ "$(id -u)" -eq 0 ] || namespace+=(--user --map-root-user)
    TESSALY_INSIDE=1 exec "${namespace[@]}" "$0" "$@"
  fi
  mount --make-rprivate /
}

fail() {
  failures=$((failures + 1))
  printf 'FAILED, %s: %s\n' "$scene" "$*"
}

# The last line of a harness.
verdict() {
  printf '%d runs, %d failures\n' "$checks" "$failures"
  [ "$failures" -eq 0 ]
}
