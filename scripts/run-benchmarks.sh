#!/usr/bin/env bash
# Builds the main tree and runs every benchmark program in bench/, printing
# each figure next to its baseline from the same run (bench/compare.py).
#
# Usage: scripts/run-benchmarks.sh [REGEX]   (REGEX filters benchmark names)
# Environment: as scripts/run-tests.sh (VELD_BUILD_DIR, VELD_JOBS, VELD_SKIP_SETUP).
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$VELD_ROOT"

"$VELD_ROOT/scripts/setup.sh"
veld_configure_main >/dev/null
cmake --build "$VELD_BUILD_DIR" -j "$VELD_JOBS"

filter=()
[[ $# -gt 0 ]] && filter=("--benchmark_filter=$1")
mapfile -t programs < <(find "$VELD_BUILD_DIR/bench" -maxdepth 1 -type f -perm -u+x -name '*_bench' | sort)
for program in "${programs[@]}"; do
  python3 "$VELD_ROOT/bench/compare.py" "$program" -- "${filter[@]}"
  echo
done
