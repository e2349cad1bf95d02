#!/usr/bin/env bash
# Windows from nothing: prepares the libraries, builds, runs the tests under Wine, packs the program
# and starts what was packed. Writes to build/windows, build/wine and the cache of the libraries
# alone.  WIN_CACHE: that cache; WAVELARK_WINDOWS_PACK: the packed libraries, else they are built;
# WAVELARK_WINDOWS=pack: builds, packs and tries what was packed, without the tests one by one.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
cd "$root"
pack=${WAVELARK_WINDOWS_PACK:-$root/../shared/windows/win-sysroot.tar.xz}
build=$root/build/windows
jobs=$(nproc)
export WINEPREFIX=${WINEPREFIX:-$root/build/wine}
started=$SECONDS

fail() {
    echo "windows: $*" >&2
    exit 1
}

mkdir -p "$build"
tools/setup.sh windows 2> "$build/setup.log" ||
    fail "packages are missing and cannot be installed: $(grep . "$build/setup.log" | tail -n 1)"
wine=${WAVELARK_WINE:-/usr/lib/wine/wine64}
[ -x "$wine" ] || fail "Wine is not here ($wine), so nothing can be tested; the package is wine64"

WIN_SYSROOT=$("$here/win-sysroot.sh" path)
export WIN_SYSROOT
cache=$(dirname "$WIN_SYSROOT")
unpack() { # the pack to the cache; all of it or nothing
    local key fresh
    key=$(basename "$WIN_SYSROOT")
    mkdir -p "$cache"
    fresh=$(mktemp -d "$cache/unpack-XXXXXX")
    if ! tar -C "$fresh" -xJf "$pack" 2> "$build/unpack.log"; then
        rm -rf "$fresh"
        fail "the packed libraries are damaged: $pack ($(head -n 1 "$build/unpack.log"))"
    fi
    if [ ! -d "$fresh/$key" ]; then
        echo "windows: $pack is of another recipe than $key; building the libraries instead"
    else
        mv "$fresh/$key" "$WIN_SYSROOT"
    fi
    rm -rf "$fresh"
}
[ -e "$WIN_SYSROOT/.done-trim" ] || [ ! -e "$pack" ] || unpack
if [ ! -e "$WIN_SYSROOT/.done-trim" ]; then
    echo "windows: building the libraries, about 18 minutes once"
    "$here/win-sysroot.sh" > "$build/sysroot.log" 2>&1 ||
        fail "the libraries cannot be built: $(grep -m 1 -E '^(E|Err):?|error' "$build/sysroot.log" | sed 's/Failed to fetch [^ ]* *//'); see build/windows/sysroot.log"
fi
"$here/extras.sh"
echo "windows: libraries ready after $((SECONDS - started)) s"

(cmake --preset windows && nice cmake --build --preset windows -j "$jobs") > "$build/build.log" 2>&1 || {
    grep -E 'error|undefined reference|FAILED' "$build/build.log" | head -n 20 >&2
    fail "the build has failed; all of it is in build/windows/build.log"
}
echo "windows: built after $((SECONDS - started)) s"

stop_wine() { # of this Wine folder alone
    [ ! -d "$WINEPREFIX" ] || /usr/lib/wine/wineserver -k > /dev/null 2>&1 || true
}
trap stop_wine EXIT
# The Wine folder is made here, not by the first test, whose time limit it would break.
"$here/wine-run.sh" cmd /c exit > "$build/wine.log" 2>&1 ||
    fail "Wine does not start: $(grep . "$build/wine.log" | tail -n 1)"
# Wine's server stays up between the batches. The structure tests look at the source and need no second
# look.
run_tests() {
    local result=0 log=$build/Testing/Temporary/LastTest.log
    # Wine's own services live on and would hold ctest's pipes if a test had started them.
    stop_wine
    /usr/lib/wine/wineserver -w
    /usr/lib/wine/wineserver -p
    "$here/wine-run.sh" cmd /c exit >> "$build/wine.log" 2>&1
    nice ctest --test-dir "$build" -j $((2 * jobs)) --output-on-failure --no-tests=error \
        -E '^structure[.]' > "$build/ctest.log" 2>&1 || result=$?
    passed=$((0 $(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?[.].*/+ \1/p' "$log")))
    sed -n 's/^\[  FAILED  \] \([^ ,]*[.][^ ,]*\)\r\?$/windows: failed: \1/p' "$log" | sort -u
    [ $result -eq 0 ] || fail "tests have failed ($(sed -n 's/^\([0-9]*% tests passed.*\)/\1/p' "$build/ctest.log")); all of it is in build/windows/ctest.log"
    echo "windows: $passed tests passed after $((SECONDS - started)) s"
}
summary="no tests run, only the build and what was packed"
if [ "${WAVELARK_WINDOWS:-1}" != pack ]; then
    run_tests
    summary="$passed tests passed"
fi

mapfile -t packed < <("$here/pack.sh" "$build")
[ ${#packed[@]} -gt 0 ] || exit 1
"$here/try-pack.sh" "$build" "${packed[@]}"
for file in "${packed[@]}"; do
    echo "windows: ${file#"$root/"} $(stat -c %s "$file") bytes"
done
echo "windows: $summary; $((SECONDS - started)) s in all"
