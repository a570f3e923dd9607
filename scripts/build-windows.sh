#!/usr/bin/env bash
# Cross-builds the library, veld.exe and the test suite for 64-bit Windows
# with mingw-w64, and runs the tests under Wine through CTest.
#
#   scripts/build-windows.sh [--deps-only]
#
# 1. A prefix of static libraries the library is built on, made from Debian's
#    own source packages (libxml2, libxslt, SQLite, fetched with apt-get source
#    through a deb-src list of this script's own) and from what Debian ships
#    for mingw-w64 (zlib) or as sources (GoogleTest). It is kept and reused
#    while its recipe is unchanged.
# 2. The project, configured with cmake/toolchain-mingw-w64.cmake against
#    that prefix, built, and its tests run by ctest under Wine in a private
#    Wine prefix (each test program through CMAKE_CROSSCOMPILING_EMULATOR).
#
# Environment: VELD_WINDOWS_BUILD_DIR (default build-windows),
# VELD_WINDOWS_DEPS (the prefix; default under ${XDG_CACHE_HOME:-~/.cache}),
# VELD_WINEPREFIX (default BUILD_DIR/wineprefix), VELD_JOBS.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=${VELD_WINDOWS_BUILD_DIR:-$VELD_ROOT/build-windows}
host=x86_64-w64-mingw32
cc=$host-gcc-posix
cxx=$host-g++-posix
wine=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver
for tool in "$cc" "$cxx" "$wine" "$wineserver" dpkg-source tclsh autoreconf libtoolize; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "build-windows.sh: $tool is missing (scripts/setup.sh installs it)" >&2
    exit 1
  fi
done

# --- 1. The dependency prefix ---------------------------------------------

# The recipe below, hashed: a prefix made by another recipe is made again.
recipe=$(sed -n '/^# --- 1\./,/^# --- 2\./p' "${BASH_SOURCE[0]}" | sha256sum | cut -c1-12)
deps=${VELD_WINDOWS_DEPS:-${XDG_CACHE_HOME:-$HOME/.cache}/veld/mingw-w64-deps-$recipe}

log() { echo "build-windows.sh: $*"; }

fetch_sources() {
  local work=$1
  mkdir -p "$work/apt/lists/partial" "$work/apt/cache/archives/partial" "$work/src"
  cat >"$work/apt/sources.list" <<'EOF'
deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian bookworm main
deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian-security bookworm-security main
EOF
  local apt=(apt-get -q -o "Dir::Etc::SourceList=$work/apt/sources.list"
             -o Dir::Etc::SourceParts=/dev/null -o "Dir::State::Lists=$work/apt/lists"
             -o "Dir::Cache=$work/apt/cache")
  # apt drops to its own user to download, which cannot write here.
  [[ "$(id -u)" == 0 ]] && apt+=(-o APT::Sandbox::User=root)
  "${apt[@]}" update >/dev/null
  (cd "$work/src" && "${apt[@]}" source libxml2 libxslt sqlite3 >/dev/null 2>&1)
}

build_deps() {
  local work
  work=$(mktemp -d)
  trap 'rm -rf "$work"' RETURN
  local jobs=${VELD_JOBS:-2} staging="$deps.new"
  rm -rf "$staging"
  mkdir -p "$staging"
  log "building the dependency prefix $deps"
  fetch_sources "$work"
  local configure=(--host=$host --prefix="$staging" --disable-shared --enable-static)
  export CC=$cc CXX=$cxx

  # Debian's patches change configure.ac and Makefile.am: regenerate, as
  # Debian's own build does. Only the libraries are built and installed.
  (cd "$work"/src/libxml2-*/ && autoreconf -fi >/dev/null 2>&1 &&
    ./configure "${configure[@]}" --without-python --without-lzma --without-icu \
      --without-http --without-ftp --without-iconv --with-zlib >/dev/null &&
    make -j "$jobs" libxml2.la >/dev/null 2>&1 &&
    make install-libLTLIBRARIES install-binSCRIPTS install-pkgconfigDATA >/dev/null &&
    make -C include install >/dev/null)

  (cd "$work"/src/libxslt-*/ && autoreconf -fi >/dev/null 2>&1 &&
    ./configure "${configure[@]}" --with-libxml-prefix="$staging" --without-python \
      --without-crypto --without-plugins >/dev/null &&
    make -j "$jobs" -C libxslt >/dev/null 2>&1 && make -j "$jobs" -C libexslt >/dev/null 2>&1 &&
    make -C libxslt install >/dev/null && make -C libexslt install >/dev/null)

  # The Debian source is SQLite's whole tree: its amalgamation is generated
  # by native tools (and tclsh), then compiled for Windows.
  (cd "$work"/src/sqlite3-*/ && autoreconf -fi >/dev/null 2>&1 && mkdir native && cd native &&
    CC=gcc ../configure >/dev/null && make sqlite3.c >/dev/null 2>&1 &&
    "$cc" -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_OMIT_LOAD_EXTENSION -c sqlite3.c -o sqlite3.o &&
    "$host-ar" rcs "$staging/lib/libsqlite3.a" sqlite3.o &&
    cp sqlite3.h sqlite3ext.h "$staging/include/")

  cmake -S /usr/src/googletest -B "$work/googletest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$VELD_ROOT/cmake/toolchain-mingw-w64.cmake" \
    -DCMAKE_INSTALL_PREFIX="$staging" >/dev/null
  cmake --build "$work/googletest" -j "$jobs" >/dev/null
  cmake --install "$work/googletest" >/dev/null
  unset CC CXX

  rm -rf "$deps"
  mv "$staging" "$deps"
}

if [[ ! -f "$deps/lib/libxml2.a" || ! -f "$deps/lib/libxslt.a" ||
      ! -f "$deps/lib/libsqlite3.a" || ! -f "$deps/lib/libgtest.a" ]]; then
  start=$SECONDS
  build_deps
  log "dependency prefix built in $((SECONDS - start))s"
else
  log "reusing the dependency prefix $deps"
fi
[[ "${1:-}" == --deps-only ]] && exit 0

# --- 2. The project ---------------------------------------------------------

mkdir -p "$build"
build=$(cd "$build" && pwd)
generator=()
if [[ ! -f "$build/CMakeCache.txt" ]] && command -v ninja >/dev/null 2>&1; then
  generator=(-G Ninja)
fi
cmake -S "$VELD_ROOT" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$VELD_ROOT/cmake/toolchain-mingw-w64.cmake" \
  -DVELD_WINDOWS_DEPS="$deps" \
  -DVELD_BUILD_TESTS=ON -DVELD_BUILD_TOOLS=ON -DVELD_BUILD_BENCHMARKS=OFF \
  -DVELD_BUILD_FUZZERS=OFF -DVELD_BUILD_QT=OFF -DVELD_BUILD_PYTHON=OFF >/dev/null
cmake --build "$build" -j "${VELD_JOBS:-2}"

export WINEPREFIX=${VELD_WINEPREFIX:-$build/wineprefix}
export WINEDEBUG=-all
export DISPLAY=
if [[ ! -f "$WINEPREFIX/system.reg" ]]; then
  log "creating the Wine prefix $WINEPREFIX"
  "$wine" wineboot -i >/dev/null 2>&1
  "$wineserver" -w
fi
# A running server saves each test program its start-up wait. Wine's own
# services start with the first program and stay; start them here, away from
# ctest's output pipes, or ctest would wait for them to close.
"$wineserver" -p
trap '"$wineserver" -k >/dev/null 2>&1 || true' EXIT
"$wine" wineboot >/dev/null 2>&1 </dev/null
# Now and then Wine ends a program before it has run (a test "fails" in no
# time, a different one each time); a failed test gets one more run.
ctest --test-dir "$build" --output-on-failure -j "${VELD_JOBS:-2}" --no-tests=error --timeout 900 \
  --repeat until-pass:2
