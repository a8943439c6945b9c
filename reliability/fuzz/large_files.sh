#!/usr/bin/env bash
# Offers tessaly-cli files that are no files, far too large, or as large as the formats allow, and
# checks each answer: the exit code, a word of the message, the most memory (MB) and the time
# (TIME_LIMIT seconds, 60 unless said).
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

# Every command that reads a file, with a file of that name.
offer() {
  local file=$1 megabytes=$2 word=$3
  expect 1 "$megabytes" "$word" show "$file"
  expect 1 "$megabytes" "$word" check "$file"
  expect 1 "$megabytes" "$word" image "$file" -o image.bin
  expect 1 "$megabytes" "$word" create "$file" --card card --yes
}

# project FILE CODE: what the code prints, with record(KIND, ITEM, GROUP, PATH), is a project.
records='sub text { pack("vva*", 8, length($_[0]), $_[0]) }
sub record { join("", map { text($_) } @_) . pack("vvva4", 0, 0, 0, $tag) } binmode STDOUT;'
# Every save ends with the last trigger.
project() { perl -e "$records $2; \$tag = '6   '; print record('empty', '', '', '')" >"$1"; }

mkdir card folder
mkfifo pipe.crd2 pipe.m3u
ln -s gone dangling.crd2

echo "== no files"
for file in pipe.crd2 /dev/zero /dev/null; do
  offer "$file" 60 "device or a pipe"
done
offer folder 60 "directory"
offer dangling.crd2 60 "No such file"
for file in pipe.m3u /dev/zero dangling.crd2; do
  expect 1 60 "no such folder or file" import "$file" --output new.crd2
done

echo "== 2 GB"
for start in 'S3A07' ':1'; do
  printf '%s' "$start" >large.crd2
  truncate -s 2G large.crd2
  offer large.crd2 60 "larger than"
done
cp --sparse=always large.crd2 large.m3u
expect 1 60 "larger than" import large.m3u --output new.crd2
cp --sparse=always large.crd2 card/0000.crd2
cp --sparse=always large.crd2 card/0000.xd3
expect 1 60 "larger than" verify card
rm card/*

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
project languages.crd2 'print map({ record("lstLangs", "", "", "L$_") } 1 .. 60000),
  map({ record("lstDefaultLangs", "", "L$_", "") } 1 .. 60000), map({ record("lstSpTitles", "", "", "T$_") } 1 .. 60000)'
expect 3 1000 "BLOCKS" check languages.crd2

echo "== equal names"
project equal.crd2 'print map { record("music", "The very same one", "L", "p$_") } 1 .. 100_000'
expect 1 400 "the same name" check equal.crd2
{ printf 'Name\tLocation\n'; perl -e 'print "N\ta.mp3\n" x 9995'; } >equal.txt
expect 0 450 "9995 tracks" import equal.txt --output equal-list.crd2
{ printf 'Name\tLocation\n'; perl -e 'print "N\ta.mp3\n" x 50000'; } >equal.txt
expect 1 350 "the same name" import equal.txt --output equal-list.crd2

echo "== tags that claim gigabytes"
mkdir tags
touch tags/empty.mp3
truncate -s 4G tags/zeros.mp3
printf 'ID3\x04\x00\x00\x7f\x7f\x7f\x7fTIT2\x00\x00\x00\x05\x00\x00\x00TourAPIC\x7f\x7f\x7f\x7f\x00\x00' >tags/claims.mp3
truncate -s 4G tags/claims.mp3
{ printf 'ID3\x04\x00\x00\x03\x7f\x7f\x7f'; perl -e 'binmode STDOUT; print "PRIV\0\0\0\1\0\0x" x 700_000'; } >tags/frames.mp3
mkfifo tags/pipe.mp3
ln -s gone tags/dangling.mp3
mkdir tags/folder.mp3
ln -s /dev/zero tags/device.mp3
expect 0 250 "with" import tags --output tags.crd2

[ "$failures" = 0 ] || { echo "$failures were not as they should be."; exit 1; }
echo "Every answer was as it should be."
