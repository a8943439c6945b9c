#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# check_command_line.sh PROGRAM: sets the options of every command, as --help names them, against
# those that the completion offers and those that the man page explains.
set -euo pipefail
export LC_ALL=C # ranges of letters and the order of words
program=$1
here=$(cd "$(dirname "$0")" && pwd)
source "$here/tessaly-cli.bash"
page=$(sed 's/\\-/-/g' "$here/tessaly-cli.1")
faults=0

fault() { echo "$*" >&2; faults=$((faults + 1)); }

# The words that the completion offers behind the given ones.
offered() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _tessaly_cli
    [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}" | sort
}
options_in_help() {
    "$program" "$@" --help | sed -n '/^Options:/,/^$/s/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | sort
}
# The part of the man page about one command; without one, what stands before the commands.
part_of_page() {
    if [ $# -eq 0 ]; then
        sed '/^\.SH COMMANDS/q' <<<"$page"
    else
        sed -n "/^\.SS $1\$/,/^\.S[HS] /p" <<<"$page"
    fi
}
compare() {
    local help completion option
    help=$(options_in_help "$@")
    completion=$(offered tessaly-cli "$@" -)
    [ -n "$help" ] || fault "$program $* --help names no options"
    [ "$help" = "$completion" ] ||
        fault "options of \"$*\" differ: help has [${help//$'\n'/ }], completion [${completion//$'\n'/ }]"
    for option in $help; do
        case $option in -h | --help) continue ;; esac
        grep -qE -- "$option( |,|\$|\\\\)" <<<"$(part_of_page "$@")" ||
            fault "the man page says nothing of \"$* $option\""
    done
}

commands=$("$program" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p' | sort)
[ "$commands" = "$(offered tessaly-cli "")" ] || fault "the commands differ"
compare
for command in $commands; do
    compare "$command"
done
[ $faults -eq 0 ] && echo "completion and man page agree with --help: $(wc -w <<<"$commands") commands"
