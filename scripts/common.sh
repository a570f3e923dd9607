# shellcheck shell=bash
# Shared by the scripts in this directory; sourced, not run.
# Sets VELD_ROOT and defines how the two build trees are configured, so that
# run-demo.sh and run-tests.sh agree and never flip each other's cache.

VELD_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
VELD_JOBS=${VELD_JOBS:-2}
VELD_BUILD_DIR=${VELD_BUILD_DIR:-$VELD_ROOT/build}
VELD_ASAN_BUILD_DIR=${VELD_ASAN_BUILD_DIR:-$VELD_ROOT/build-asan}

# veld_configure DIR [cmake arguments...]
# Ninja is chosen only for a new tree: an existing cache keeps its generator.
veld_configure() {
  local dir=$1
  shift
  local generator=()
  if [[ ! -f "$dir/CMakeCache.txt" ]] && command -v ninja >/dev/null 2>&1; then
    generator=(-G Ninja)
  fi
  cmake -S "$VELD_ROOT" -B "$dir" "${generator[@]}" "$@"
}

# The main tree: gcc, optimised with debug info, tests and benchmarks.
veld_configure_main() {
  CC=gcc CXX=g++ veld_configure "$VELD_BUILD_DIR" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELD_BUILD_TESTS=ON -DVELD_BUILD_BENCHMARKS=ON -DVELD_BUILD_TOOLS=ON \
    -DVELD_BUILD_FUZZERS=OFF -DVELD_SANITIZE=OFF
}

# The sanitizer tree: clang with address and undefined-behaviour sanitizers,
# fuzz targets with their smoke runs, no benchmarks.
veld_configure_asan() {
  CC=clang CXX=clang++ veld_configure "$VELD_ASAN_BUILD_DIR" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELD_BUILD_TESTS=ON -DVELD_BUILD_BENCHMARKS=OFF -DVELD_BUILD_TOOLS=ON \
    -DVELD_BUILD_FUZZERS=ON -DVELD_SANITIZE=ON
}
