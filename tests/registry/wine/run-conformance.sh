#!/usr/bin/env bash
# Cross-builds the registry backend conformance suite with mingw-w64 and runs
# it under Wine against Wine's registry, in a private Wine prefix.
#
# Usage: run-conformance.sh BUILD_DIR
# Environment: VELD_WINEPREFIX (default: BUILD_DIR/wineprefix, kept between
# runs because creating one takes a while), VELD_JOBS.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../../.." && pwd)
build=${1:?usage: run-conformance.sh BUILD_DIR}
wine=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver
for tool in x86_64-w64-mingw32-g++-posix "$wine" "$wineserver"; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "run-conformance.sh: $tool is missing (scripts/setup.sh installs it)" >&2
    exit 1
  fi
done

mkdir -p "$build"
build=$(cd "$build" && pwd)
export WINEPREFIX=${VELD_WINEPREFIX:-$build/wineprefix}
export WINEDEBUG=-all
export DISPLAY=

generator=()
if [[ ! -f "$build/CMakeCache.txt" ]] && command -v ninja >/dev/null 2>&1; then
  generator=(-G Ninja)
fi
cmake -S "$here" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-mingw-w64.cmake" >/dev/null
cmake --build "$build" -j "${VELD_JOBS:-2}"

if [[ ! -f "$WINEPREFIX/system.reg" ]]; then
  echo "run-conformance.sh: creating the Wine prefix $WINEPREFIX"
  "$wine" wineboot -i >/dev/null 2>&1
  "$wineserver" -w
fi
# A running server saves each test program its start-up wait. Wine's own
# services start with the first program and stay; start them here, away from
# ctest's output pipes, or ctest would wait for them to close.
"$wineserver" -p
trap '"$wineserver" -k >/dev/null 2>&1 || true' EXIT
"$wine" wineboot >/dev/null 2>&1 </dev/null
ctest --test-dir "$build" --output-on-failure
