#!/usr/bin/env bash
# The demo: a radio station on the loopback interface, three of its tracks played and recorded.
# Needs neither network nor display nor sound device. Usage: tools/demo.sh BUILD_FOLDER
set -euo pipefail
build=$1
work=$(mktemp -d)
station_pid=
cleanup() {
    [ -n "$station_pid" ] && kill "$station_pid" 2>/dev/null || true
    rm -rf "$work/tracks"
}
trap cleanup EXIT

mkdir -p "$work/tracks" "$work/data"
seconds=10
track() { # name, notes: a short tune of its own for every track
    local filter="" n=0 note
    local name=$1
    shift
    for note in "$@"; do
        filter+="sine=frequency=$note:duration=$(awk "BEGIN{print $seconds/$#}"):sample_rate=44100[s$n];"
        n=$((n + 1))
    done
    for ((i = 0; i < n; i++)); do filter+="[s$i]"; done
    ffmpeg -v error -y -filter_complex "${filter}concat=n=$n:v=0:a=1,volume=0.6[out]" -map '[out]' \
        -ac 2 -c:a libmp3lame -b:a 128k -write_xing 0 -id3v2_version 0 "$work/tracks/$name.mp3"
}
track "The Early Birds - Morning Call" 523 587 659 784 1047
track "Hedge and Field - Noon Song" 392 494 587 494 392
track "The Swifts - Evening Flight" 880 784 659 587 440

"$build/wavelark-demo-station" --port 0 --bitrate 128000 --burst 8192 "$work/tracks/"*.mp3 > "$work/station" &
station_pid=$!
for _ in $(seq 50); do
    [ -s "$work/station" ] && break
    sleep 0.1
done
url=$(head -n 1 "$work/station")
echo "Demo station: $url"

export WAVELARK_DATA="$work/data"
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || export QT_QPA_PLATFORM=offscreen
"$build/wavelark" "/url=$url" "/name=Demo Station" "/action=Record (Split)" /duration=34 /end_action=1 /show=minimized

echo
echo "Written to $work/data/Recordings:"
find "$work/data/Recordings" -type f -printf '%T@\t%s\t%p\n' | sort -n | while IFS=$'\t' read -r _ bytes file; do
    length=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$file" || echo '?')
    printf '  %8d bytes  %6.2f s  %s\n' "$bytes" "$length" "${file##*/}"
    ffmpeg -v error -i "$file" -f null - </dev/null
done
