#!/usr/bin/perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes examples of what is called .mp3 in the folder that is the current one, always the same bytes.
# What a name says is all that is odd about a file; where it says nothing else, there are two seconds
# of noise in MPEG-1 layer III, 44.1 kHz, stereo, 64 kbit/s.
use strict;
use warnings;
srand 1;

sub put {
    my ($name, @bytes) = @_;
    open my $file, '>:raw', "$name.mp3" or die "$name: $!";
    print $file @bytes or die "$name: $!";
    close $file or die "$name: $!";
}

# One frame of layer III: of MPEG version 1, 2 or 2.5, free format with 0 kbit/s. It needs no frame
# before it. GAIN 0 is silence; 4 more is twice as loud.
sub frame {
    my ($version, $rate, $channels, $kbps, $gain) = @_;
    my $one = $version == 1;
    my @kbps = $one ? (0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320)
                    : (0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160);
    my ($index) = grep { $kbps[$_] == $kbps } 0 .. 14;
    my $factor = {1 => 1, 2 => 2, 2.5 => 4}->{$version};
    my $rate_index = {44100 => 0, 48000 => 1, 32000 => 2}->{$rate * $factor};
    my $size = $kbps ? int(($one ? 144 : 72) * 1000 * $kbps / $rate) : 300;
    my $header = '1' x 11 . {1 => '11', 2 => '10', 2.5 => '00'}->{$version} . '011'
        . sprintf('%04b%02b', $index, $rate_index) . '00' . ($channels == 1 ? '11' : '00') . '000100';
    # A granule has no large values and no scale factors: one byte for each four of its lowest
    # frequencies, which are 1 or -1 as the bits of the lower half say.
    my $granules = $channels * ($one ? 2 : 1);
    my $lines = $gain ? 16 : 0;
    my $granule = sprintf('%012b%09b%08b', 8 * $lines, 0, $gain) . '0' x ($one ? 29 : 33) . '1';
    my $shared = $one ? 9 + ($channels == 1 ? 5 + 4 : 3 + 8) : 8 + $channels;
    my $bytes = pack('B*', $header . '0' x $shared . $granule x $granules)
        . join '', map { chr int rand 16 } 1 .. $granules * $lines;
    return $bytes . "\0" x ($size - length $bytes);
}

sub frames {
    my ($count, @format) = @_;
    return join '', map { frame(@format) } 1 .. $count;
}

# The frame before the sound that says how many follow. Players go by it.
sub counting {
    my ($mark, $frames, $bytes) = @_;
    my $text = $mark eq 'VBRI' ? pack('A4 n3 N2 n4', $mark, 1, 0, 0, $bytes, $frames, 0, 1, 2, 1)
                               : pack('A4 N3', $mark, 3, $frames, $bytes);
    my $frame = frame(1, 44100, 2, 64, 0);
    substr $frame, 4 + 32, length $text, $text;
    return $frame;
}

sub id3 {
    my ($frame_name, $body, $padding) = @_;
    my $frame = pack('A4 N n', $frame_name, length $body, 0) . $body . "\0" x $padding;
    my $size = length $frame;
    return "ID3\3\0\0" . pack('C4', map { $size >> $_ & 127 } 21, 14, 7, 0) . $frame;
}

my @usual = (1, 44100, 2, 64, 184);
my $frame = frame(@usual);
my $size = length $frame;
my $two_seconds = frames(77, @usual);
my $picture = "\0image/png\0\3\0\x89PNG\r\n\x1A\n" . "\0" x 1000;

# No MPEG sound.
put('HTML page', "<!DOCTYPE html>\n<html><head><title>Not found</title></head>\n", "<p>404</p>\n" x 200, '</html>');
put('WAV', 'RIFF', pack('V', 36 + 44100), 'WAVEfmt ', pack('V v2 V2 v2', 16, 1, 1, 22050, 44100, 2, 16),
    'data', pack('V', 44100), map { pack 'v', int rand 65536 } 1 .. 22050);
# Frames of silence; 13 is their length, 6 + 7 for the header.
put('AAC', ("\xFF\xF1\x50\x80" . pack('n', 13 << 5 | 31) . "\xFC\x21\x10\x04\x60\x8C\x1C") x 86);
put('text', "Announcement 4: turn left at the harbour.\n" x 50);
put('empty');
put('random bytes', map { chr int rand 256 } 1 .. 65536);
put('picture only', id3('APIC', $picture, 0));
put('ID3 longer than the file', substr id3('APIC', $picture, 5000), 0, 3000);
put('layer II', ("\xFF\xFD\x80\x04" . "\0" x 413) x 77);

# Not all there, or not what it says.
put('one frame', $frame);
put('cut in a frame', substr $two_seconds, 0, 40 * $size + $size / 2);
put('cut at a frame, Info counts 613', counting('Info', 613, 614 * $size), $two_seconds);
put('VBRI counts 613', counting('VBRI', 613, 614 * $size), $two_seconds);
put('Xing counts 10 of 77', counting('Xing', 10, 11 * $size), $two_seconds);
put('junk between frames', frames(30, @usual), 'no frame ' x 100, frames(47, @usual));
put('broken frame', frames(30, @usual), substr($frame, 0, 4), "\xFE" x ($size - 4), frames(46, @usual));
put('rate and channels change', $two_seconds, frames(56, 1, 32000, 1, 64, 184));
put('100 silent seconds', frames(3829, 1, 44100, 2, 64, 0));
my $silence = frames(115, 1, 44100, 2, 64, 0);
put('3 silent seconds at both ends', $silence, $two_seconds, $silence);
put('clipped', frames(77, 1, 44100, 2, 64, 196));

# Odd, and good.
put('ID3 of 10 MB', id3('PRIV', "\0" x 10_000_000, 1000), $two_seconds);
my $item = pack('V2 A7 A6', 6, 0, "Artist\0", 'Nobody');
my ($head, $foot) = map { pack('A8 V4 x8', 'APETAGEX', 2000, 32 + length $item, 1, $_) } 0xA0000000, 0x80000000;
put('APE tag at the end', $two_seconds, $head, $item, $foot);
put('MPEG-1 mono', frames(77, 1, 44100, 1, 64, 184));
put('MPEG-1 stereo', $two_seconds);
put('MPEG-2 mono', frames(77, 2, 22050, 1, 32, 184));
put('MPEG-2 stereo', frames(77, 2, 22050, 2, 64, 184));
put('MPEG-2.5 mono', frames(28, 2.5, 8000, 1, 16, 184));
put('MPEG-2.5 stereo', frames(38, 2.5, 11025, 2, 32, 184));
put('free format', frames(77, 1, 44100, 2, 0, 184));
my $vbr = join '', map { frame(1, 44100, 2, $_ % 3 ? 64 : 128, $_ % 3 ? 176 : 184) } 1 .. 77;
put('VBR', counting('Xing', 77, $size + length $vbr), $vbr);
