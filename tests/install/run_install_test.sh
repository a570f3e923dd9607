#!/usr/bin/env bash
# Installs a built tree into a temporary prefix and uses it from outside:
#  1. the files of the package are there, and the exported target drags in
#     no third-party library (they are private to libveld.so);
#  2. the installed veld tool runs without LD_LIBRARY_PATH, also after the
#     prefix is moved (its RUNPATH is relative);
#  3. consumer/ configures with find_package(VeldCommonUtility) against the
#     prefix, builds, and runs with libveld.so resolved from the prefix;
#  4. consumer/main.cc also builds alone with `pkg-config --cflags --libs veld`.
# The prefix is removed at the end.
#
# Usage: run_install_test.sh [BUILD_DIR]   (default: <repo>/build)
# Environment: CMAKE, CXX, CMAKE_GENERATOR pick the tools for the consumer.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
build_dir=$(cd "${1:-$root/build}" && pwd)
cmake_cmd=${CMAKE:-cmake}
cxx=${CXX:-c++}
generator=${CMAKE_GENERATOR:-}
if [[ -z "$generator" ]] && command -v ninja >/dev/null 2>&1; then
  generator=Ninja
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/veld-install-test.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
log="$work/log.txt"

fail() {
  echo "FAIL: $*" >&2
  if [[ -s "$log" ]]; then
    echo "---- last output ----" >&2
    tail -n 40 "$log" >&2
  fi
  exit 1
}
ok() { echo "ok: $*"; }

# Prints the file libveld.so.N resolves to for a binary, as the loader sees it
# with LD_LIBRARY_PATH unset.
resolved_libveld() {
  env -u LD_LIBRARY_PATH ldd "$1" | awk '$1 ~ /^libveld\.so/ { print $3 }'
}
expect_libveld_from() {  # binary libdir
  local got
  got=$(resolved_libveld "$1")
  [[ -n "$got" && "$got" != "not" ]] || fail "$1: libveld.so is not found without LD_LIBRARY_PATH"
  [[ "$(readlink -f "$got")" == "$(readlink -f "$2")"/* ]] ||
    fail "$1: libveld.so resolves to $got, not to the prefix ($2)"
}

# 1. Install and look at what was installed.
"$cmake_cmd" --install "$build_dir" --prefix "$prefix" >"$log" 2>&1 || fail "cmake --install"
pc_file=$(find "$prefix" -name veld.pc -path '*/pkgconfig/*' | head -n 1)
[[ -n "$pc_file" ]] || fail "veld.pc was not installed"
libdir=$(dirname "$(dirname "$pc_file")")
cmakedir="$libdir/cmake/VeldCommonUtility"
for f in "$prefix/include/veld/veld.h" "$libdir/libveld.so" \
         "$cmakedir/VeldCommonUtilityConfig.cmake" \
         "$cmakedir/VeldCommonUtilityConfigVersion.cmake" \
         "$cmakedir/VeldCommonUtilityTargets.cmake"; do
  [[ -e "$f" ]] || fail "not installed: ${f#"$prefix"/}"
done
soname=$(objdump -p "$libdir/libveld.so" | awk '$1 == "SONAME" { print $2 }')
[[ "$soname" =~ ^libveld\.so\.[0-9]+$ && -e "$libdir/$soname" ]] ||
  fail "libveld.so has no versioned SONAME (got '$soname')"
# Public headers only: internal headers live in src/ and must not leak out.
[[ -z "$(find "$prefix/include" -type f ! -name '*.h')" ]] || fail "non-header files under include/"
if grep -q 'INTERFACE_LINK_LIBRARIES' "$cmakedir"/VeldCommonUtilityTargets*.cmake; then
  grep -n 'INTERFACE_LINK_LIBRARIES' "$cmakedir"/VeldCommonUtilityTargets*.cmake >"$log"
  fail "the exported Veld::veld has link dependencies; consumers would need them too"
fi
if grep -q 'find_dependency' "$cmakedir/VeldCommonUtilityConfig.cmake"; then
  fail "the package config looks for dependencies"
fi
ok "installed $soname, headers, CMake package and veld.pc (no exported dependencies)"

# 2. The tool, without LD_LIBRARY_PATH, before and after moving the prefix.
if [[ -x "$prefix/bin/veld" ]]; then
  if objdump -p "$prefix/bin/veld" | grep -q 'NEEDED *libveld\.so'; then
    expect_libveld_from "$prefix/bin/veld" "$libdir"
  else
    echo "note: the installed veld tool does not link libveld.so"
  fi
  env -u LD_LIBRARY_PATH "$prefix/bin/veld" --version >"$log" 2>&1 || fail "installed veld --version"
  mv "$prefix" "$work/moved"
  env -u LD_LIBRARY_PATH "$work/moved/bin/veld" --version >"$log" 2>&1 ||
    fail "veld --version after moving the prefix"
  mv "$work/moved" "$prefix"
  ok "installed tool runs ($(head -n 1 "$log")), also from a moved prefix"
else
  echo "note: the veld tool is not installed (VELD_BUILD_TOOLS=OFF); skipped"
fi

# 3. find_package from an outside project.
consumer_build="$work/consumer-build"
gen_args=()
[[ -n "$generator" ]] && gen_args=(-G "$generator")
"$cmake_cmd" -S "$here/consumer" -B "$consumer_build" "${gen_args[@]}" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_PREFIX_PATH="$prefix" >"$log" 2>&1 || fail "configuring the consumer"
found_dir=$(sed -n 's/^VeldCommonUtility_DIR:PATH=//p' "$consumer_build/CMakeCache.txt")
[[ "$(readlink -f "$found_dir")" == "$(readlink -f "$prefix")"/* ]] ||
  fail "find_package found VeldCommonUtility in $found_dir, not in the prefix"
"$cmake_cmd" --build "$consumer_build" >"$log" 2>&1 || fail "building the consumer"
consumer="$consumer_build/veld_consumer"
expect_libveld_from "$consumer" "$libdir"
env -u LD_LIBRARY_PATH "$consumer" >"$log" 2>&1 || fail "running the consumer"
sed 's/^/  /' "$log"
ok "find_package(VeldCommonUtility) consumer builds and runs"

# 3b. The Qt adapters, when they were built and installed.
if [[ -e "$cmakedir/VeldQtTargets.cmake" ]]; then
  qt_build="$work/qt-consumer-build"
  "$cmake_cmd" -S "$here/qt_consumer" -B "$qt_build" "${gen_args[@]}" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$cxx" \
    -DCMAKE_PREFIX_PATH="$prefix" >"$log" 2>&1 || fail "configuring the Qt consumer"
  "$cmake_cmd" --build "$qt_build" >"$log" 2>&1 || fail "building the Qt consumer"
  env -u LD_LIBRARY_PATH XDG_RUNTIME_DIR="$work" "$qt_build/veld_qt_consumer" >"$log" 2>&1 ||
    fail "running the Qt consumer"
  sed 's/^/  /' "$log"
  ok "Veld::veld_qt consumer builds and runs"
else
  echo "note: veld_qt is not installed (no Qt 6 Widgets); skipped"
fi

# 3c. The Python module, when it was built and installed.
module=$(find "$prefix" -name 'veld.cpython-*.so' | head -n 1)
if [[ -n "$module" ]]; then
  env -u LD_LIBRARY_PATH PYTHONPATH="$(dirname "$module")" PYTHONDONTWRITEBYTECODE=1 \
    /usr/bin/python3 -c 'import veld; print("veld module:", veld.Format(1234.5, "#,##0.00"))' \
    >"$log" 2>&1 || fail "importing the installed Python module"
  sed 's/^/  /' "$log"
  ok "the installed Python module imports and runs (${module#"$prefix"/})"
else
  echo "note: the Python module is not installed; skipped"
fi

# 4. pkg-config.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs veld 2>"$log") || fail "pkg-config --cflags --libs veld"
pkg-config --static --libs veld >"$log" 2>&1 || fail "pkg-config cannot resolve veld's private requirements"
version=$(pkg-config --modversion veld)
# shellcheck disable=SC2086  # the flags are meant to split into words
"$cxx" -std=c++20 -o "$work/pc_consumer" "$here/consumer/main.cc" $flags \
  -Wl,-rpath,"$libdir" >"$log" 2>&1 || fail "compiling with pkg-config flags: $flags"
expect_libveld_from "$work/pc_consumer" "$libdir"
env -u LD_LIBRARY_PATH "$work/pc_consumer" >"$log" 2>&1 || fail "running the pkg-config consumer"
ok "pkg-config veld $version: $flags"

echo "install test passed"
