#!/usr/bin/perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Every sentence that the program can say must stand in the manual: the texts in src/ that look like
# one (three words or more; of a form those that end like a sentence) are looked up in docs/manual.md. A text with gaps for names and numbers is
# found by its longest piece. tools/no_messages.txt lists what looks like a message and is none. The
# other way round, every row of the manual's tables of messages must hold one.
use strict;
use warnings;
use File::Find;

my ($root) = @ARGV or die "usage: check_messages.pl ROOT\n";

sub slurp {
    my ($path) = @_;
    open my $file, '<:encoding(UTF-8)', $path or die "$path: $!\n";
    local $/;
    return scalar <$file>;
}
# Blanks and what Markdown adds do not count.
sub plain {
    my ($text) = @_;
    $text =~ s/\\(["*<>|_#])/$1/g;
    $text =~ s/&lt;/</g;
    $text =~ s/&gt;/>/g;
    $text =~ s/&amp;/&/g;
    $text =~ s/[*`]//g;
    $text =~ s/\s+/ /g;
    return lc $text;
}
# What stands between the gaps, the longest piece first.
sub pieces {
    my ($text) = @_;
    my @pieces = map { plain($_) } split /%\d|\\[rn]|\r|\n/, $text;
    s/^[ .,;:()"]+|[ .,;:()"]+$//g for @pieces;
    return sort { length $b <=> length $a } @pieces, '';
}

my $manual_text = slurp("$root/docs/manual.md");
my $manual = plain($manual_text);
my %none = map { $_ => 1 } grep { length } split /\n/, slurp("$root/tools/no_messages.txt");
my (%used, @missing, $found, %said);

sub judge {
    my ($path, $text) = @_;
    my @pieces = pieces($text);
    $said{$_} = 1 for grep { length >= 6 && $text =~ /%\d|\S \S+ \S/ } @pieces;
    return if 3 > (() = $text =~ /\p{L}{2,}/g) || $text !~ /\S \S/;
    my $piece = $pieces[0];
    return if length $piece < 5;
    if ($none{$piece}) { $used{$piece} = 1; return; }
    if (index($manual, $piece) >= 0) { ++$found; return; }
    push @missing, "$path: $piece";
}

my @sources;
find({wanted => sub { push @sources, $_ if /\.(cpp|h|ui)$/ }, no_chdir => 1}, "$root/src");
for my $path (sort @sources) {
    next if $path =~ m{/cli/main\.cpp$};    # --help says these itself
    my $code = slurp($path);
    if ($path =~ /\.ui$/) {
        judge($path, plain($1)) while $code =~ m{<string[^>]*>([^<]*[.:])</string>}g;
        next;
    }
    $code =~ s{//[^\n]*}{}g;
    while ($code =~ /((?:u?"(?:[^"\\\n]|\\.)*"(?:_s)?\s*)+)/g) {
        my $literals = $1;
        judge($path, join '', $literals =~ /"((?:[^"\\\n]|\\.)*)"/g);
    }
}

my (@unsaid, $column);
for my $line (split /\n/, $manual_text) {
    if ($line !~ /^\|/) { undef $column; next; }
    my @cells = split /(?<!\\)\|/, $line;
    if (!defined $column) {
        ($column) = grep { $cells[$_] =~ /^ (Message|Text|Reason|Problem or note) $/ } 1 .. $#cells;
        $column //= 0;
        next;
    }
    next if $column == 0 || $line =~ /^\|-/;
    my $row = plain($cells[$column]);
    push @unsaid, $cells[$column] if !grep { index($row, $_) >= 0 } keys %said;
}
my @stale = grep { !$used{$_} } sort keys %none;
print STDERR "not in docs/manual.md: $_\n" for @missing;
print STDERR "in tools/no_messages.txt, but nowhere in src: $_\n" for @stale;
print STDERR "in docs/manual.md, but nowhere in src:$_\n" for @unsaid;
die "the program said less than expected\n" if $found < 100;
exit 1 if @missing || @stale || @unsaid;
print "the manual has all $found messages of the program\n";
