#!/usr/bin/perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes what a run at full size needs in the empty folder that is the current one:
#
#   sources/   9,995 small MP3s with a title tag, in one folder
#   tour/      the same files (hard links) as the largest card: 16 languages, 548 titles, 255 lists
#              of 1,318 tracks, 91 titles that lack a language, so that the image has 65,526 bytes;
#              one more than an even number never is
#   long/      as lists of 5,000 and 2,995 tracks and 125 titles in 16 languages: more than the
#              image can hold
#   all.m3u    a playlist of all sources
use strict;
use warnings;
use Cwd;

sub source { sprintf "sources/%05d.mp3", $_[0] }

# COUNT files in a folder, called NAME and a number: the next of the sources.
my $used = 0;
sub place {
    my ($folder, $name, $count) = @_;
    system('mkdir', '-p', $folder) == 0 or die;
    link source(++$used), sprintf("%s/%s %04d.mp3", $folder, $name, $_) or die "$folder: $!" for 1 .. $count;
}

mkdir 'sources';
open my $list, '>', 'all.m3u' or die;
for my $number (1 .. 9995) {
    open my $file, '>:raw', source($number) or die;
    my $title = "\0Track $number";
    my $frame = 'TIT2' . pack('N', length $title) . "\0\0" . $title;
    print $file "ID3\3", "\0" x 5, chr(length $frame), $frame, ("\xFF\xFB\x10\xC4" . "\0" x 100) x 2;
    print $list getcwd, '/', source($number), "\r\n";
}
print $list "the end\r\n";    # a plain playlist is read up to its last line, without that

place(sprintf('tour/Speech/Lang %02d', $_), 'Title', $_ < 16 ? 548 : 457) for 1 .. 16;
# List 126, the last that a trigger can name, has as many tracks as it can name.
place(sprintf('tour/Music/List %03d', $_), 'Track', $_ == 126 ? 510 : $_ <= 46 ? 4 : 3) for 1 .. 255;
$used = 0;
place(sprintf('long/Speech/Lang %02d', $_), 'Title', 125) for 1 .. 16;
place('long/Music/1 of 5000 tracks', 'Track', 5000);
place('long/Music/2 of 2995 tracks', 'Track', 2995);
