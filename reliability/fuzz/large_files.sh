#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Offers tessaly-cli files that are far too large, or as large as the formats allow, and checks each
# answer: the exit code, a word of the message, the most memory (MB) and the time (TIME_LIMIT
# seconds, 60 unless said). What is no file at all is in odd_files_test.cpp.
# shellcheck disable=SC2016 # the variables in quotes are those of perl
set -euo pipefail
export LC_ALL=C.UTF-8 LANGUAGE= # the messages of the system
cd "$(dirname "$0")/../.."

cli=$PWD/${BUILD:-build}/tessaly-cli
limit=${TIME_LIMIT:-60}
work=$(mktemp -d "${TMPDIR:-/tmp}/tessaly large XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

# expect EXIT MEGABYTES WORD ARGUMENT...
expect() {
  local code=$1 megabytes=$2 word=$3 status=0
  shift 3
  /usr/bin/time -o usage -f '%M %e' timeout "$limit" "$cli" "$@" >out 2>err </dev/null || status=$?
  local memory seconds verdict=ok
  read -r memory seconds < <(tail -1 usage)
  memory=$((memory / 1024))
  [ "$status" = "$code" ] || verdict="exit code $status instead of $code"
  [ "$memory" -le "$megabytes" ] || verdict="more than $megabytes MB"
  grep -q -- "$word" out err || verdict="no word of \"$word\""
  [ "$verdict" = ok ] || failures=$((failures + 1))
  printf '%-58s %5d MB %6.2f s  %s\n' "$*" "$memory" "$seconds" "$verdict"
  [ "$verdict" = ok ] || { head -c 300 err; }
}

# project FILE CODE: what the code prints, with record(KIND, ITEM, GROUP, PATH), is a project.
records='sub text { pack("vva*", 8, length($_[0]), $_[0]) }
sub record { join("", map { text($_) } @_) . pack("vvva4", 0, 0, 0, $tag) } binmode STDOUT;'
# Every save ends with the last trigger.
project() { perl -e "$records $2; \$tag = '6   '; print record('empty', '', '', '')" >"$1"; }

echo "== 2 GB"
mkdir card
for start in 'S3A07' ':1'; do
  printf '%s' "$start" >large.crd2
  truncate -s 2G large.crd2
  for command in show check "create --card card --yes"; do
    # shellcheck disable=SC2086 # words
    expect 1 60 "larger than" $command large.crd2
  done
done
ln large.crd2 large.m3u
expect 1 60 "larger than" import large.m3u --output new.crd2
ln large.crd2 card/0000.crd2
ln large.crd2 card/0000.xd3
expect 1 60 "larger than" verify card

echo "== as large as may be"
truncate -s 250M zeros.crd2
expect 0 700 "up to byte" show zeros.crd2
perl -e 'binmode STDOUT; print ":\n" x 100_000_000' >colons.hex
expect 1 600 "100000000 bad lines" show colons.hex
project texts.crd2 'print record("speech", "a", "b", "x" x 65535) for 1 .. 3900'
expect 3 1100 "BLOCKS" check texts.crd2
# 40 languages, 400 lists, 100,000 records, among them texts of 65,535 characters.
project full.crd2 'print map({ record("lstLangs", "", "", "Language $_") } 1 .. 40),
  map({ record("lstSpTitles", "", "", "Title $_") } 1 .. 100),
  map({ my $t = $_; map { record("speech", "Title $t", "Language $_", "/s/$t/$_.mp3") } 1 .. 40 } 1 .. 100),
  record("setup", "", "title1", "x" x 65535),
  map({ my $l = $_; map { record("music", "Track $_", "List $l", "/m/$l/$_.mp3") } 1 .. 238 } 1 .. 400)'
expect 3 400 "BLOCKS" check full.crd2
expect 1 400 "the player can hold" image full.crd2 -o image.bin
expect 0 700 "records, " show full.crd2
expect 0 1000 '"complete": true' show full.crd2 --json
project most.crd2 'print map { my $l = $_; map { record("music", "Track $_", "List $l", "/m.mp3") } 1 .. 5000 } 1 .. 49'
expect 3 400 "245000 tracks, " check most.crd2
project languages.crd2 'print map({ record("lstLangs", "", "", "L$_") } 1 .. 60000),
  map({ record("lstDefaultLangs", "", "L$_", "") } 1 .. 60000), map({ record("lstSpTitles", "", "", "T$_") } 1 .. 60000)'
expect 3 1000 "BLOCKS" check languages.crd2

echo "== equal names"
project equal.crd2 'print map { record("music", "The very same one", "L", "p$_") } 1 .. 100_000'
expect 1 400 "the same name" check equal.crd2
{ printf 'Name\tLocation\n'; perl -e 'print "N\ta.mp3\n" x 9995'; } >equal.txt
expect 0 450 "9995 tracks" import equal.txt --output equal-list.crd2

echo "== tags that claim gigabytes"
mkdir tags
truncate -s 4G tags/zeros.mp3
printf 'ID3\x04\x00\x00\x7f\x7f\x7f\x7fAPIC\x7f\x7f\x7f\x7f\x00\x00' >tags/claims.mp3
truncate -s 4G tags/claims.mp3
mkfifo tags/pipe.mp3
ln -s /dev/zero tags/device.mp3
expect 0 250 "with" import tags --output tags.crd2

[ "$failures" = 0 ] || { echo "$failures were not as they should be."; exit 1; }
echo "Every answer was as it should be."
