#!/usr/bin/env bash
# Sets up the machine, then builds and tests the project in two trees:
#   build/       gcc, RelWithDebInfo: unit tests, header checks, fuzz corpus
#                replays and the install test (install.consumer);
#                benchmarks are built, not run.
#   build-asan/  clang with address + undefined-behaviour sanitizers:
#                the same tests, plus a short libFuzzer run of each fuzz target.
#   build-windows/ the library, veld.exe and the test suite cross-built for
#                Windows with mingw-w64 (scripts/build-windows.sh) and run
#                under Wine, with Wine's registry, file system and locale
#                data; when mingw-w64 and Wine are installed.
# Exits non-zero when any step fails and ends with a short summary.
#
# Environment: VELD_BUILD_DIR, VELD_ASAN_BUILD_DIR, VELD_WINDOWS_BUILD_DIR
# (tree locations), VELD_WINEPREFIX (the Wine prefix, kept between runs),
# VELD_JOBS (parallel jobs, default 2), VELD_SKIP_SETUP=1.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$VELD_ROOT"

"$VELD_ROOT/scripts/setup.sh"

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export CTEST_OUTPUT_ON_FAILURE=1

start_all=$SECONDS
summary=()
failures=0
tests_passed=0
tests_failed=0

# step NAME COMMAND...: runs and times one step, recording it for the summary.
step() {
  local name=$1
  shift
  local start=$SECONDS status=ok
  echo
  echo "==> $name"
  if ! "$@"; then
    status=FAILED
    failures=$((failures + 1))
  fi
  summary+=("$(printf '  %-24s %-7s %5ds' "$name" "$status" $((SECONDS - start)))")
  [[ $status == ok ]]
}

skipped() {
  summary+=("$(printf '  %-24s %-7s' "$1" skipped)")
}

# count_tests LOG: adds the counts of ctest's summary line in LOG to the
# totals.
count_tests() {
  local line
  line=$(grep -E '^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+' "$1" | tail -n 1 || true)
  if [[ -n "$line" ]]; then
    local failed total
    failed=$(sed -E 's/.* ([0-9]+) tests? failed out of ([0-9]+).*/\1/' <<<"$line")
    total=$(sed -E 's/.* out of ([0-9]+).*/\1/' <<<"$line")
    tests_passed=$((tests_passed + total - failed))
    tests_failed=$((tests_failed + failed))
  fi
}

# run_ctest DIR: runs the tree's tests and adds its counts to the totals.
run_ctest() {
  local dir=$1 log="$1/ctest-output.log" rc=0
  ctest --test-dir "$dir" --output-on-failure -j "$VELD_JOBS" --no-tests=error \
    --timeout 900 2>&1 | tee "$log" || rc=$?
  count_tests "$log"
  return "$rc"
}

# The Windows build and its tests under Wine; their counts join the totals.
run_windows() {
  local dir=${VELD_WINDOWS_BUILD_DIR:-$VELD_ROOT/build-windows} rc=0
  mkdir -p "$dir"
  local log="$dir/run.log"
  "$VELD_ROOT/scripts/build-windows.sh" 2>&1 | tee "$log" || rc=$?
  count_tests "$log"
  return "$rc"
}

# tree LABEL DIR CONFIGURE_FUNCTION
tree() {
  local label=$1 dir=$2 configure=$3
  if step "$label configure" "$configure" &&
     step "$label build" cmake --build "$dir" -j "$VELD_JOBS"; then
    step "$label test" run_ctest "$dir" || true
  else
    skipped "$label test"
  fi
}

tree "gcc" "$VELD_BUILD_DIR" veld_configure_main || true
tree "asan" "$VELD_ASAN_BUILD_DIR" veld_configure_asan || true
if command -v x86_64-w64-mingw32-g++-posix >/dev/null 2>&1 && [[ -x /usr/lib/wine/wine64 ]]; then
  step "windows (wine)" run_windows || true
else
  skipped "windows (wine)"
fi

echo
echo "==> summary (${VELD_BUILD_DIR#"$VELD_ROOT"/}, ${VELD_ASAN_BUILD_DIR#"$VELD_ROOT"/})"
printf '%s\n' "${summary[@]}"
printf '  %-24s %-7s %5ds\n' "total" "" $((SECONDS - start_all))
if ((failures > 0)); then
  echo "FAILED: $failures step(s)"
fi
echo "tests: $tests_passed passed, $tests_failed failed"
((failures == 0))
