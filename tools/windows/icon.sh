#!/usr/bin/env bash
# Makes resources/wavelark.ico anew from resources/wavelark.svg, to be run when the picture changes.
# Needs the packages librsvg2-bin and icoutils, which the build itself does without.
set -euo pipefail
resources=$(cd "$(dirname "$0")/../../resources" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for size in 16 20 24 32 40 48 64; do
    rsvg-convert -w $size -h $size "$resources/wavelark.svg" -o "$work/$size.png"
    pictures+=("$work/$size.png")
done
rsvg-convert -w 256 -h 256 "$resources/wavelark.svg" -o "$work/256.png"
icotool -c -o "$resources/wavelark.ico" "${pictures[@]}" --raw="$work/256.png"
