#!/usr/bin/perl
# Every sentence that the program can say must stand in the manual: the texts in src/ that look like
# one (three words or more; of a form those that end like a sentence) are looked up in docs/manual.md. A text with gaps for names and numbers is
# found by its longest piece. tools/no_messages.txt lists what looks like a message and is none.
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
sub longest_piece {
    my ($text) = @_;
    my @pieces = sort { length $b <=> length $a } split /%\d|\\[rn]|\r|\n/, $text;
    my $piece = plain($pieces[0] // '');
    $piece =~ s/^[ .,;:()"]+|[ .,;:()"]+$//g;
    return $piece;
}

my $manual = plain(slurp("$root/docs/manual.md"));
my %none = map { $_ => 1 } grep { length } split /\n/, slurp("$root/tools/no_messages.txt");
my (%used, @missing, $found);

sub judge {
    my ($path, $text) = @_;
    return if 3 > (() = $text =~ /\p{L}{2,}/g) || $text !~ /\S \S/;
    my $piece = longest_piece($text);
    return if length $piece < 5;
    if ($none{$piece}) { $used{$piece} = 1; return; }
    if (index($manual, $piece) >= 0) { ++$found; return; }
    push @missing, "$path: $piece";
}

my @sources;
find({wanted => sub { push @sources, $_ if /\.(cpp|h|ui)$/ }, no_chdir => 1}, "$root/src");
for my $path (sort @sources) {
    next if $path =~ m{/cli/arguments\.cpp$};    # --help says these itself
    my $code = slurp($path);
    if ($path =~ /\.ui$/) {
        judge($path, plain($1)) while $code =~ m{<string[^>]*>([^<]*[.:])</string>}g;
        next;
    }
    $code =~ s{//[^\n]*}{}g;
    while ($code =~ /((?:"(?:[^"\\\n]|\\.)*"\s*)+)/g) {
        my $literals = $1;
        judge($path, join '', $literals =~ /"((?:[^"\\\n]|\\.)*)"/g);
    }
}
my @stale = grep { !$used{$_} } sort keys %none;
print STDERR "not in docs/manual.md: $_\n" for @missing;
print STDERR "in tools/no_messages.txt, but nowhere in src: $_\n" for @stale;
die "the program said less than expected\n" if $found < 100;
exit 1 if @missing || @stale;
print "the manual has all $found messages of the program\n";
