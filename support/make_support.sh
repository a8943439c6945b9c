#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Makes the support files: the chimes that come with the program, and
# stand-ins for the files that only the maker of the player can supply.
#
# The same versions of sox and lame give the same bytes on every run.
#
# Usage: make_support.sh [--force]
#
# A stand-in is written only where there is no file yet, because the maker's
# own files are put in the very same places and must not be lost by running
# this again. --force writes the stand-ins over whatever is there.
#
# Needs: sox, lame

set -euo pipefail

# Number formats (0.5, not 0,5) must not depend on the desktop.
export LC_ALL=C

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

force=no
case ${1-} in
    "") ;;
    --force) force=yes ;;
    *) echo "usage: $0 [--force]" >&2; exit 2 ;;
esac

for tool in sox lame; do
    command -v "$tool" >/dev/null || { echo "$0: $tool is missing" >&2; exit 1; }
done

rate=44100

# -D leaves out dither: noise would differ from run to run.
render() { sox -R -D "$@"; }

# encode WAV MP3 BITRATE [OPTIONS...]
encode() {
    lame --quiet -m m --cbr -b "$3" --resample "$rate" "${@:4}" "$1" "$2"
}

# wanted FILE: should the stand-in FILE be written?
wanted() {
    if [[ -e $1 && $force = no ]]; then
        echo "kept: ${1#"$here"/}"
        return 1
    fi
}

mkdir -p "$here/files" "$here/firmware" "$here/Chimes"

# ---------------------------------------------------------------- stand-ins

# 1 kHz at -20 dBFS for ten seconds. The short fades only avoid clicks.
tone=$here/files/9998.mp3
if wanted "$tone"; then
    render -n -r "$rate" -b 16 "$work/tone.wav" synth 10 sine 1000 gain -20 fade t 0.02 10 0.02
    # lame lowers the level to 95 % at this bit rate; take that back.
    encode "$work/tone.wav" "$tone" 32 --scale 1.0526
    # A calibration tone has to be right, so look at what came out: a sine of
    # amplitude 0.1 has an RMS of 0.0707. Allowed are about 0.1 dB either way.
    level=$(sox "$tone" -n trim 1 8 stat 2>&1 | awk '/^RMS +amplitude/ { print $3 }')
    if ! awk "BEGIN { exit !($level > 0.0699 && $level < 0.0715) }"; then
        echo "$0: the level of ${tone#"$here"/} is wrong: RMS $level" >&2
        exit 1
    fi
fi

config=$here/files/0007.cfg
if wanted "$config"; then
    printf 'STAND-IN: TO BE REPLACED BY THE FILE OF THE PLAYER MAKER\r\n' >"$config"
fi

# Only the end-of-file record: a valid Intel HEX file that programs nothing.
firmware=$here/firmware/0000.hex
if wanted "$firmware"; then
    printf ':00000001FF\r\n' >"$firmware"
fi

# ------------------------------------------------------------------- chimes

# strike FILE FREQUENCY START SECONDS ATTACK RATIO:LEVEL:LIFE...
#
# One stroke of a bell. Each partial sounds at RATIO times FREQUENCY, with
# LEVEL and for LIFE (as a share of SECONDS): high partials die first, and that
# is what makes a few sines sound like metal.
strike() {
    local file=$1 frequency=$2 start=$3 seconds=$4 attack=$5 inputs=() n=0 partial
    local ratio level life hertz length
    shift 5
    for partial in "$@"; do
        IFS=: read -r ratio level life <<<"$partial"
        hertz=$(awk "BEGIN { printf \"%.2f\", $frequency * $ratio }")
        length=$(awk "BEGIN { printf \"%.3f\", $seconds * $life }")
        render -n -r "$rate" -b 24 "$work/partial$n.wav" \
            synth "$length" sine "$hertz" gain -18 fade h "$attack" 0 fade l 0 "$length" "$length"
        inputs+=(-v "$level" "$work/partial$n.wav")
        n=$((n + 1))
    done
    render -m "${inputs[@]}" -b 24 "$work/$file.wav" pad "$start"
}

# chime NAME SECONDS STROKE...
# -4 dB leaves room for the small overshoots that MP3 encoding causes.
chime() {
    local name=$1 seconds=$2 inputs=() stroke
    shift 2
    for stroke in "$@"; do
        inputs+=(-v 0.5 "$work/$stroke.wav")
    done
    # Mixing needs two files or more; silence is the neutral second one.
    render -n -r "$rate" -b 24 "$work/silence.wav" trim 0 "$seconds"
    render -m "${inputs[@]}" -v 1 "$work/silence.wav" -b 24 "$work/mixed.wav"
    render "$work/mixed.wav" -b 16 "$work/chime.wav" \
        trim 0 "$seconds" fade t 0 "$seconds" 0.5 norm -4
    encode "$work/chime.wav" "$here/Chimes/$name.mp3" 64
}

# A falling third on two tone bars.
bar=(1:1:1 2:0.3:0.7 4:0.25:0.3 9.2:0.05:0.1)
strike first  659.26 0    2.6 0.003 "${bar[@]}"
strike second 523.25 0.55 2.6 0.003 "${bar[@]}"
chime "Two Tones" 2.2 first second

# Three rising strokes of a small bell.
bell=(0.5:0.25:1 1:1:0.9 1.2:0.3:0.6 2:0.45:0.6 2.67:0.2:0.4 4:0.15:0.25)
strike first  783.99  0   3.4 0.002 "${bell[@]}"
strike second 987.77  0.4 3.4 0.002 "${bell[@]}"
strike third  1174.66 0.8 3.4 0.002 "${bell[@]}"
chime "Three Bells" 2.8 first second third

# One low stroke. The pairs of close partials beat against each other, which
# gives the slow shimmer of a gong.
gong=(1:1:1 1.012:0.5:1 1.48:0.5:0.9 2.09:0.5:0.8 2.11:0.3:0.8 2.76:0.25:0.6 3.91:0.15:0.4 5.4:0.08:0.25)
strike first 196 0 5.5 0.025 "${gong[@]}"
chime "Soft Gong" 2.9 first
