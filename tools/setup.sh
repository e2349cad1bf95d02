#!/usr/bin/env bash
# Installs what is missing of the packages in tools/packages.txt.
# Usage: tools/setup.sh build | test | windows        (each includes the ones before)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
want=${1:-build}

list() { # the packages of one section
    awk -v section="[$1]" '/^#/ || /^$/ {next} /^\[/ {on = ($0 == section); next} on' "$here/packages.txt"
}

packages=$(list build)
[ "$want" = build ] || packages="$packages $(list test)"
[ "$want" != windows ] || packages="$packages $(list windows)"

missing=()
for package in $packages; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
        missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "setup: these packages are missing and neither root nor sudo is at hand: ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi
echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
