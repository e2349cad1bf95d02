#!/usr/bin/env bash
# Configures (where needed) and builds one preset. Usage: tools/build.sh PRESET [TARGET...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
preset=$1
shift
cd "$root"
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
cmake --build --preset "$preset" ${@:+--target "$@"}
