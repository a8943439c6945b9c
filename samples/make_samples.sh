#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Makes the sample project files in samples/tour: two music lists and a guided
# tour of a small, invented harbour museum in three languages.
#
# Everything is synthesised here, so the samples carry no rights but our own.
# The same versions of sox, lame and espeak-ng give the same bytes on every
# run: nothing below depends on the date or on real random numbers.
#
# Needs: sox, lame, espeak-ng

set -euo pipefail

# A fixed locale keeps number formats (0.5, not 0,5) and UTF-8 names the same
# on every desktop.
export LC_ALL=C.UTF-8

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tour=$here/tour
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for tool in sox lame espeak-ng; do
    command -v "$tool" >/dev/null || { echo "$0: $tool is missing" >&2; exit 1; }
done

# 22.05 kHz mono at 32 kbit/s is good enough to recognise a track by, and
# keeps the whole tour small enough to live in the repository.
rate=22050
bitrate=32

# ---------------------------------------------------------------- synthesis

# -R repeats the same "random" numbers (plucked strings start from noise),
# -D leaves out dither, which is noise as well.
render() { sox -R -D "$@"; }

# layer FILE VOICE SECONDS SHAPE FADE-IN FADE-OUT START:NOTE...
#
# Plays every note for SECONDS from its START on. sox makes one channel for
# each note; the fade shapes them all before they are moved into place, and
# "remix -" brings the channels together.
layer() {
    local file=$1 voice=$2 seconds=$3 shape=$4 fade_in=$5 fade_out=$6
    shift 6
    local synth=() starts=() note
    for note in "$@"; do
        starts+=("${note%%:*}")
        synth+=("$voice" "${note#*:}")
    done
    # -24 dB is head room; the levels are set at the end.
    render -n -r "$rate" -b 24 "$file" synth "$seconds" "${synth[@]}" \
        gain -24 fade "$shape" "$fade_in" "$seconds" "$fade_out" \
        delay "${starts[@]}" remix - gain -n -6
}

# Bells lose the same number of decibels every second, which is the
# logarithmic fade "l". A string decays by itself and is only damped; a reed
# or a pad swells and dies smoothly: "h" for both.
plucks() { layer "$work/$1.wav" pluck    2.6 h 0.002 1.2 "${@:2}"; }
bells()  { layer "$work/$1.wav" sine     3.2 l 0.006 3.1 "${@:2}"; }
reed()   { layer "$work/$1.wav" triangle 0.9 h 0.050 0.7 "${@:2}"; }
pad()    { layer "$work/$1.wav" sine     3.6 h 0.800 1.6 "${@:2}"; }

# mix NAME SECONDS LAYER=VOLUME...
#
# Mixes the layers into NAME.wav, SECONDS long. -3 dB leaves room for the
# small overshoots that MP3 encoding causes.
mix() {
    local name=$1 seconds=$2 inputs=() part
    shift 2
    for part in "$@"; do
        inputs+=(-v "${part#*=}" "$work/${part%%=*}.wav")
    done
    # Mixing needs two files or more; silence is the neutral second one.
    render -n -r "$rate" -b 24 "$work/silence.wav" trim 0 "$seconds"
    render -m "${inputs[@]}" -v 1 "$work/silence.wav" -b 24 "$work/dry.wav" \
        gain -6 trim 0 "$seconds"
    render "$work/dry.wav" -b 16 "$work/$name.wav" \
        reverb 35 50 60 remix - fade t 0.01 "$seconds" 1.5 norm -3
}

# ----------------------------------------------------------------- encoding

# encode WAV MP3 [TAG OPTIONS...]
encode() {
    local wav=$1 mp3=$2
    shift 2
    mkdir -p "$(dirname "$mp3")"
    lame --quiet -m m --cbr -b "$bitrate" --resample "$rate" "$@" "$wav" "$mp3"
}

# track TAGS LIST FILE-NAME-WITHOUT-SUFFIX WAV-NAME
#
# TAGS is "both" (ID3v2 and ID3v1), "v1" or "none", so that a program which
# reads the tags meets every kind. No year is written: a sample has no age.
track() {
    local tags=$1 list=$2 name=$3 wav=$4 options=()
    # The leading number is for sorting only; the title goes without it.
    local text=(--tt "${name#* }" --ta "Tessaly Samples" --tl "$list")
    case $tags in
        both) options=(--add-id3v2 "${text[@]}") ;;
        v1)   options=(--id3v1-only "${text[@]}") ;;
        none) ;;
    esac
    encode "$work/$wav.wav" "$tour/Music/$list/$name.mp3" "${options[@]}"
}

# spoken LANGUAGE-FOLDER VOICE TITLE SENTENCE
#
# The file name is the title on the display of the player, so it is the same
# in every language. Speech goes without tags: nothing would show them.
spoken() {
    local folder=$1 voice=$2 title=$3 sentence=$4
    espeak-ng -b 1 -v "$voice" -s 155 -w "$work/voice.wav" "$sentence"
    # A short rest at both ends, because a player cuts in and out abruptly.
    # The speech is cut free of the silence of the voice itself first, and
    # compressed a little, so that it is not much softer than the music.
    render "$work/voice.wav" -r "$rate" -c 1 -b 16 "$work/speech.wav" \
        gain -3 silence 1 0.02 0.3% reverse silence 1 0.02 0.3% reverse \
        compand 0.003,0.08 -60,-60,-30,-22,0,-9 0 -90 0.003 \
        pad 0.15 0.35 norm -3
    encode "$work/speech.wav" "$tour/Speech/$folder/$title.mp3"
}

rm -rf "$tour"

# -------------------------------------------------------------------- music

# Two digits in every name: this list sorts the same way by any rule.
list="Harbour Morning"

plucks m1 0:C3 0:G3 2.4:A2 2.4:E3 4.8:F2 4.8:C3 7.2:G2 7.2:D3 9.6:C3
bells  m2 0:E5 0.6:G5 1.2:C6 2.4:B5 3.0:A5 3.6:E5 4.8:A5 5.4:C6 6.0:F5 7.2:D5 7.8:G5 8.4:B5 9.6:C6
mix    bell 12 m1=0.7 m2=0.8
track  both "$list" "01 Morning Bell" bell

plucks m1 0:D3 0.3:A3 0.6:D4 0.9:F#4 1.2:A4 1.5:F#4 1.8:D4 2.1:A3 \
          2.4:B2 2.7:F#3 3.0:B3 3.3:D4 3.6:F#4 3.9:D4 4.2:B3 4.5:F#3 \
          4.8:G2 5.1:D3 5.4:G3 5.7:B3 6.0:D4 6.3:B3 6.6:G3 6.9:D3 \
          7.2:A2 7.5:E3 7.8:A3 8.1:C#4 8.4:E4 8.7:D4 9.0:D3
mix    nets 11 m1=1
track  both "$list" "02 Drying Nets" nets

pad    m1 0:F3 0:A3 0:C4 2.6:D3 2.6:F3 2.6:A3 5.2:Bb2 5.2:F3 5.2:D4 7.8:C3 7.8:G3 7.8:E4
plucks m2 0.4:C5 1.4:A4 2.0:F4 3.0:D5 4.0:A4 5.6:F5 6.2:D5 6.8:Bb4 8.2:E5 9.2:G4
mix    fog 12.5 m1=0.8 m2=0.6
track  v1   "$list" "03 Thin Fog" fog

plucks m1 0:G2 0.8:D3 1.6:G2 2.4:D3 3.2:C3 4.0:G3 4.8:D3 5.6:A3 6.4:G2
reed   m2 0:D5 0.4:B4 0.8:G4 1.2:B4 1.6:D5 2.0:E5 2.4:D5 3.2:E5 3.6:G5 4.0:E5 4.8:F#5 5.2:D5 5.6:A4 6.4:G4
mix    market 9 m1=0.8 m2=0.45
track  both "$list" "04 Market Boats" market

# Plain numbers: sorted letter by letter, "10" would come before "2".
list="Evening Lights"

pad    m1 0:A2 0:E3 0:C4 2.6:F2 2.6:C3 2.6:A3 5.2:C3 5.2:G3 5.2:E4 7.8:G2 7.8:D3 7.8:B3
bells  m2 0.6:E5 1.3:A5 3.2:F5 3.9:C5 5.8:G5 6.5:E5 8.4:D5 9.1:B4
mix    lamps 12 m1=0.8 m2=0.6
track  both "$list" "1 First Lamps" lamps

plucks m1 0:E3 0.5:B3 1.0:G4 1.5:B3 2.0:C3 2.5:G3 3.0:E4 3.5:G3 \
          4.0:G2 4.5:D3 5.0:B3 5.5:D3 6.0:D3 6.5:A3 7.0:F#4 7.5:A3 8.0:E3 8.0:B3 8.0:E4
reed   m2 0:B4 1.0:E5 2.0:G5 3.0:E5 4.0:D5 5.0:B4 6.0:A4 7.0:F#4 8.0:E4
mix    quay 10.5 m1=0.8 m2=0.35
track  both "$list" "2 Quiet Quay" quay

plucks m1 0:C4 0.25:E4 0.5:G4 0.75:C5 1.5:A4 2.0:G4 2.5:E4 \
          3.0:D4 3.25:F4 3.5:A4 3.75:D5 4.5:C5 5.0:A4 5.5:F4 \
          6.0:G3 6.25:D4 6.5:G4 6.75:B4 7.5:D5 8.0:C5 8.0:C4
mix    dance 10 m1=1
track  none "$list" "3 Pier Dance" dance

bells  m1 0:D5 0.5:F5 1.0:A5 1.5:D6 2.5:C6 3.0:A5 3.5:F5 4.5:G5 5.0:Bb5 5.5:D6 6.5:C6 7.0:A5 7.5:D5
pad    m2 0:D3 0:A3 0:F4 2.5:F3 2.5:C4 4.5:Bb2 4.5:D3 4.5:G3
mix    stars 10.5 m1=0.7 m2=0.7
track  both "$list" "4 Low Stars" stars

pad    m1 0:C3 0:G3 0:E4 2.8:A2 2.8:E3 2.8:C4 5.6:F2 5.6:C3 5.6:A3 8.4:C3 8.4:G3 8.4:C4
plucks m2 0.7:G4 1.4:E4 2.1:C4 3.5:C5 4.2:A4 4.9:E4 6.3:A4 7.0:F4 7.7:D4 8.4:E4 9.1:C4
mix    ferry 13 m1=0.8 m2=0.7
track  both "$list" "10 Last Ferry" ferry

# ------------------------------------------------------------------- speech

english() { spoken English en-gb "$@"; }
german()  { spoken German  de    "$@"; }
french()  { spoken French  fr    "$@"; }

title="Welcome"
english "$title" "Welcome to the harbour museum. Please follow the blue lamps through the house."
german  "$title" "Willkommen im Hafenmuseum. Bitte folgen Sie den blauen Lampen durch das Haus."
french  "$title" "Bienvenue au musée du port. Suivez les lampes bleues à travers la maison."

title="Old Harbour"
english "$title" "This model shows the old harbour. Ninety boats tied up here every evening."
german  "$title" "Dieses Modell zeigt den alten Hafen. Jeden Abend legten hier neunzig Boote an."
french  "$title" "Cette maquette montre le vieux port. Chaque soir, quatre-vingt-dix bateaux y accostaient."

# Left out in French: a title may be missing in a language.
title="Rope Walk"
english "$title" "Ropes were made in this long room. A good rope maker walked ten miles a day."
german  "$title" "In diesem langen Raum entstanden die Seile. Ein guter Seiler lief am Tag fünfzehn Kilometer."

title="Fish Market"
english "$title" "The market opened at four in the morning. A bell told the town that the fish had come."
german  "$title" "Der Markt öffnete um vier Uhr morgens. Eine Glocke meldete der Stadt den frischen Fisch."
french  "$title" "Le marché ouvrait à quatre heures du matin. Une cloche annonçait l'arrivée du poisson."

# The one name with letters outside ASCII.
title="Café Römer"
english "$title" "In the café of the Römer family, captains and clerks sat at the same table."
german  "$title" "Im Café der Familie Römer saßen Kapitäne und Schreiber am selben Tisch."
french  "$title" "Au café de la famille Römer, capitaines et commis partageaient la même table."

# The one name that is too long for the display of 16 characters.
title="The Lighthouse Keeper"
english "$title" "The keeper climbed two hundred steps every night to light the lamp."
german  "$title" "Jede Nacht stieg der Wärter zweihundert Stufen hinauf, um die Lampe anzuzünden."
french  "$title" "Chaque nuit, le gardien montait deux cents marches pour allumer la lampe."

title="The Great Storm"
english "$title" "The great storm lasted three days. The mark on the wall shows how high the water stood."
german  "$title" "Der große Sturm dauerte drei Tage. Die Marke an der Wand zeigt, wie hoch das Wasser stand."
french  "$title" "La grande tempête dura trois jours. La marque sur le mur indique le niveau de l'eau."

title="Goodbye"
english "$title" "Thank you for your visit. Please return the player at the desk. Goodbye!"
german  "$title" "Vielen Dank für Ihren Besuch. Bitte geben Sie das Gerät an der Kasse zurück. Auf Wiedersehen!"
french  "$title" "Merci de votre visite. Veuillez rendre l'appareil à l'accueil. Au revoir !"

# ------------------------------------------------------------------- result

# A diskette's worth is the limit we set ourselves for the repository.
limit=1400000
total=$(find "$tour" -type f -printf '%s\n' | awk '{ sum += $1 } END { print sum }')
echo "samples/tour: $total bytes"
if (( total >= limit )); then
    echo "$0: samples/tour has grown to $limit bytes or more" >&2
    exit 1
fi
