#!/usr/bin/perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Each room of src/ includes only the rooms that the table in docs/architecture.md allows it, and
# nothing but the window knows widgets.
use strict;
use warnings;
use File::Find;

my ($root) = @ARGV or die "usage: check_rooms.pl ROOT\n";

open my $page, '<', "$root/docs/architecture.md" or die "docs/architecture.md: $!\n";
my %may_use;
while (<$page>) {
    last if %may_use && !/^\|/;
    next unless my ($room, $rooms) = /^\| `(\w+)` \|(.*)/;
    $may_use{$room} = join ' ', $rooms =~ /`(\w+)`/g;
}
die "docs/architecture.md has no table of rooms\n" unless %may_use;

my (@faults, %seen);
find({wanted => sub { judge($_) if /\.(cpp|h)$/ }, no_chdir => 1}, "$root/src");

sub judge {
    my ($path) = @_;
    my ($room) = $path =~ m{/src/(\w+)/};
    my $known = $room && $may_use{$room};
    push(@faults, "$path: the table has no room $room"), return unless defined $known;
    $seen{$room} = 1;
    open my $file, '<', $path or die "$path: $!\n";
    while (my $line = <$file>) {
        if ($line =~ m{^#include "(\w+)/} && $1 ne $room) {
            push @faults, "$path:$.: $room may not use $1" if " $known " !~ / $1 /;
        }
        if ($line =~ m{^#include <(Q\w*(?:Widget|Dialog|Application|Painter|Pixmap)\w*)>} && $1 !~ /^QCoreApplication$/) {
            push @faults, "$path:$.: only the window knows $1" if $room ne 'app';
        }
    }
}

push @faults, map { "src/$_ is gone, but the table has it" } grep { !$seen{$_} } keys %may_use;
print "$_\n" for sort @faults;
exit(@faults ? 1 : 0);
