#!/usr/bin/env bash
# Sets up the machine, builds the veld tool in build/ and runs it: the
# version, the library's self-check, then the tour of examples/ (options,
# the registry in a temporary SQLite store, datasets, an export into an
# SQLite file, an XSL report), and, when Qt 6 is there, pictures of the
# dataset viewer's three views in build/screenshots/. Fails when any of it
# fails.
#
# Environment: VELD_BUILD_DIR (tree location), VELD_JOBS, VELD_SKIP_SETUP=1.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$VELD_ROOT"

"$VELD_ROOT/scripts/setup.sh"

veld_configure_main >/dev/null
cmake --build "$VELD_BUILD_DIR" -j "$VELD_JOBS" --target veld_cli

veld="$VELD_BUILD_DIR/tools/veld/veld"
echo
echo "\$ veld --version"
"$veld" --version
echo
echo "\$ veld self-check"
"$veld" self-check
echo
echo "\$ examples/tour.sh"
"$VELD_ROOT/examples/tour.sh" "$veld"

# The dataset viewer over the Qt adapters, when Qt 6 is there: pictures of
# its three views, offscreen.
if cmake --build "$VELD_BUILD_DIR" --target help | grep -q '^veld_viewer:'; then
  cmake --build "$VELD_BUILD_DIR" -j "$VELD_JOBS" --target veld_viewer
  echo
  echo "\$ veld-viewer --screenshots $VELD_BUILD_DIR/screenshots"
  XDG_RUNTIME_DIR=$(mktemp -d) QT_QPA_PLATFORM=offscreen \
    "$VELD_BUILD_DIR/examples/qt/veld-viewer" --screenshots "$VELD_BUILD_DIR/screenshots" 2>/dev/null
else
  echo
  echo "(Qt 6 Widgets not found: no dataset viewer pictures)"
fi
