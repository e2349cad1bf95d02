#!/usr/bin/env bash
# Packs a Windows build: the portable zip, and the installer where makensis is at hand.
# Usage: WIN_SYSROOT=... tools/windows/pack.sh BUILD_FOLDER     (prints the files made)
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "$1" && pwd)
sysroot=${WIN_SYSROOT:?}
most_bytes=$((45 * 1024 * 1024))
version=$(sed -n 's/^project(Wavelark VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
out=$build/Wavelark

fail() {
    echo "windows: $*" >&2
    exit 1
}

rm -rf "$out"
mkdir -p "$out/platforms" "$out/styles" "$out/imageformats" "$out/iconengines" "$out/licences"
cp "$build"/wavelark.exe "$build"/wavelark_*.dll "$out"
[ ! -d "$build/Languages" ] || cp -r "$build/Languages" "$out"
plugins=$sysroot/qt/plugins
cp "$plugins/platforms/qwindows.dll" "$out/platforms"
cp "$plugins/styles/qwindowsvistastyle.dll" "$out/styles"
cp "$plugins"/imageformats/{qgif,qico,qjpeg,qsvg}.dll "$out/imageformats"
cp "$plugins/iconengines/qsvgicon.dll" "$out/iconengines"

# Every library that one of these asks for, and the libraries that those ask for. What the sysroot
# does not have comes with Windows; it must be one of the system's own.
system='^(advapi32|bcrypt|comdlg32|crypt32|d3d9|d3d11|dnsapi|dwmapi|dxgi|dxva2|gdi32|imm32|iphlpapi|kernel32|mpr|msvcrt|ncrypt|netapi32|ole32|oleaut32|powrprof|psapi|rpcrt4|secur32|setupapi|shell32|shlwapi|taskschd|user32|userenv|uxtheme|version|winhttp|winmm|winspool|wmvcore|ws2_32|wsock32|wtsapi32)\.(dll|drv)$'
queue=("$out"/*.exe "$out"/*.dll "$out"/*/*.dll)
while [ ${#queue[@]} -gt 0 ]; do
    file=${queue[0]}
    queue=("${queue[@]:1}")
    while read -r name; do
        [ ! -e "$out/$name" ] || continue
        for folder in "$sysroot/qt/bin" "$sysroot/deps/bin"; do
            if [ -e "$folder/$name" ]; then
                cp "$folder/$name" "$out"
                queue+=("$out/$name")
                continue 2
            fi
        done
        grep -qiE "$system" <<< "$name" || fail "$(basename "$file") asks for $name, which nobody has"
    done < <(x86_64-w64-mingw32-objdump -p "$file" | sed -n 's/.*DLL Name: //p')
done

cp "$root/LICENSE" "$out/LICENSE.txt"
licence() { # name in the pack, Debian package that has the same source
    cp "/usr/share/doc/$2/copyright" "$out/licences/$1.txt" 2> /dev/null ||
        fail "no licence text of $1: the package $2 is not installed"
}
licence Qt libqt5core5a
licence Qt-SVG libqt5svg5
licence FFmpeg libavcodec59
licence LAME libmp3lame0
licence Opus libopus0
licence Ogg libogg0
licence Vorbis libvorbis0a
licence SDL libsdl2-2.0-0
licence curl libcurl4
licence TagLib libtag1v5
licence zlib zlib1g
licence GCC-runtime libstdc++6
licence MinGW-w64 mingw-w64-common
for text in GPL-2 GPL-3 LGPL-2 LGPL-2.1 LGPL-3 Apache-2.0; do
    cp -L "/usr/share/common-licenses/$text" "$out/licences/$text.txt"
done

zip=$build/Wavelark-$version-windows-x64.zip
rm -f "$zip"
(cd "$build" && zip -q -9 -r "$zip" Wavelark)
bytes=$(stat -c %s "$zip")
[ "$bytes" -le $most_bytes ] || fail "$zip has $bytes bytes, more than $most_bytes"
echo "$zip"

command -v makensis > /dev/null || exit 0
(cd "$out" && find . -type f | sed 's|^\./||; s|/|\\|g; s|.*|Delete "$INSTDIR\\&"|'
    find . -mindepth 1 -depth -type d | sed 's|^\./||; s|/|\\|g; s|.*|RMDir "$INSTDIR\\&"|') > "$build/removal.nsh"
installer=$build/Wavelark-$version-setup.exe
makensis -V2 "-DVERSION=$version" "-DSOURCE=$out" "-DOUTPUT=$installer" "-DICON=$root/resources/wavelark.ico" \
    "-DLICENCE=$out/LICENSE.txt" "-DREMOVAL=$build/removal.nsh" \
    "-DKILOBYTES=$(du -sk "$out" | cut -f1)" "$root/tools/windows/installer.nsi" > "$build/installer.log" 2>&1 ||
    fail "makensis has failed: $(tail -n 3 "$build/installer.log" | tr '\n' ' ')"
echo "$installer"
