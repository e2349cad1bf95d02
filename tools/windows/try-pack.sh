#!/usr/bin/env bash
# Tries under Wine what pack.sh made: the zip, unpacked to a folder with a blank and letters of other
# scripts in its name, records from a station; the installer installs, and removes again.
# Usage: WIN_SYSROOT=... WINEPREFIX=... tools/windows/try-pack.sh BUILD_FOLDER ZIP [INSTALLER]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# One display for all of it: what Wine has begun without one never gets windows.
if [ -z "${TRY_PACK_DISPLAY:-}" ]; then
    /usr/lib/wine/wineserver -k 2> /dev/null || true
    TRY_PACK_DISPLAY=1 exec xvfb-run -a "$0" "$@"
fi
build=$(cd "$1" && pwd)
zip=$2
installer=${3:-}
work=$(mktemp -d)
station=
cleanup() {
    [ -z "$station" ] || kill "$station" 2> /dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "windows: $*" >&2
    exit 1
}
# With a real window; only the libraries that were packed are found.
packed() { WINE_BARE=1 QT_QPA_PLATFORM=windows SDL_AUDIODRIVER=dummy timeout -k 5 120 "$here/wine-run.sh" "$@"; }

ffmpeg -v error -f lavfi -i sine=duration=20 -c:a libmp3lame -b:a 128k -write_xing 0 -id3v2_version 0 "$work/Artist - Song.mp3"
: > "$work/station"
"$here/wine-run.sh" "$build/wavelark-demo-station.exe" --port 0 --bitrate 128000 "$work/Artist - Song.mp3" > "$work/station" 2>&1 &
station=$!
for _ in $(seq 100); do
    grep -q '^http' "$work/station" && break
    sleep 0.1
done
url=$(grep -m 1 '^http' "$work/station" | tr -d '\r') || fail "the station for the trial does not start"

record() { # program, the folder for its data, what it is
    local result=0 file seconds
    packed "$1" "/url=$url" "/name=Trial" "/action=Record (Split)" /duration=12 /end_action=1 > "$work/log" 2>&1 || result=$?
    [ $result -eq 0 ] || fail "$3 ends with $result: $(tail -n 1 "$work/log")"
    ! grep -q 'Failed to create platform window' "$work/log" || fail "$3 shows no window"
    file=$(find "$2" -path '*Recordings*' -name '*.mp3' 2> /dev/null | head -n 1)
    [ -n "$file" ] || {
        tail -n 20 "$2/Wavelark.log" >&2 || true
        fail "$3 has recorded nothing: $(tail -n 1 "$work/log")"
    }
    seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$file")
    [ "${seconds%.*}" -ge 3 ] || fail "$3 has recorded $seconds s only"
    echo "windows: $3 has recorded $seconds s"
}

folder="$work/Wäve lärk – Ордер"
mkdir -p "$folder"
unzip -q "$zip" -d "$folder"
record "$folder/Wavelark/wavelark.exe" "$folder/Wavelark" "the unpacked zip"

[ -n "$installer" ] || exit 0
drive=$WINEPREFIX/drive_c
target="$drive/Program Files/Wavelark"
home=$(echo "$drive"/users/*/ | tr ' ' '\n' | grep -v Public | head -n 1)
packed "$installer" /S > "$work/log" 2>&1 || fail "the installer ends with $?: $(tail -n 1 "$work/log")"
[ -e "$target/wavelark.exe" ] || fail "the installer has installed nothing"
packed "$target/wavelark.exe" "/url=$url" "/name=Trial" /duration=2 /end_action=1 > "$work/log" 2>&1 ||
    fail "the installed program ends with $?: $(tail -n 1 "$work/log")"
[ -d "$home/Wavelark" ] || fail "the installed program does not keep its data in the user's folder"
[ ! -e "$target/Brindlecove" ] || fail "the installed program writes to Program Files"
touch "$target/of the user.txt"
packed "$target/uninstall.exe" /S > "$work/log" 2>&1 || fail "the removal ends with $?"
left() { find "$target" -type f ! -name 'of the user.txt' | head -n 3; }
for _ in $(seq 300); do # a copy of the uninstaller goes on by itself, so that it can remove the first
    [ -n "$(left)" ] || break
    sleep 0.1
done
[ -z "$(left)" ] || fail "the removal leaves $(left)"
[ -e "$target/of the user.txt" ] && [ -d "$home/Wavelark" ] || fail "the removal takes what is the user's"
rm -rf "$target" "$home/Wavelark"
echo "windows: the installer installs and removes"
