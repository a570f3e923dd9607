#!/usr/bin/env bash
# Installs the Debian packages the project builds and tests with, when any is
# missing. Silent and quick when everything is there, so that every other
# script can call it first.
#
#   setup.sh [--bench]   --bench adds what the benchmarks compare against
#                        (lxml and pandas for Debian's python3)
# VELD_SKIP_SETUP=1 skips the check (for machines managed some other way).
set -euo pipefail

if [[ "${VELD_SKIP_SETUP:-0}" == 1 ]]; then
  exit 0
fi

packages=(
  # Toolchains and build tools.
  build-essential cmake ninja-build pkg-config
  clang libclang-rt-14-dev  # libFuzzer and the sanitizer runtimes for clang
  clang-format clang-tidy
  # Libraries the library is built on.
  libxml2-dev libxslt1-dev libsqlite3-dev libicu-dev uuid-dev unixodbc-dev
  # Tests and benchmarks.
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  # Command-line tools and servers that tests drive: ODBC drivers for the
  # table-export conformance tests, a PostgreSQL server to run them against.
  xsltproc sqlite3 python3 unixodbc libsqliteodbc odbc-postgresql postgresql
  # The registry backend conformance suite, cross-built for Windows and run
  # under Wine (the posix thread model has the std::mutex GoogleTest needs).
  g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix wine64
  # The Windows build: zlib for mingw-w64; what unpacks, regenerates and
  # builds the dependencies it makes from Debian source packages.
  libz-mingw-w64-dev dpkg-dev tcl autoconf automake libtool unicode-data
  # The Qt Widgets adapters of the controls, and the dataset viewer.
  qt6-base-dev
  # The Python module and its tests (Debian's python3 and its pytest).
  python3-dev pybind11-dev python3-pybind11 python3-pytest
)
if [[ "${1:-}" == --bench ]]; then
  packages+=(python3-lxml python3-pandas)
fi

if ! command -v dpkg-query >/dev/null 2>&1; then
  echo "setup.sh: this script installs Debian packages; install these by hand:" >&2
  echo "  ${packages[*]}" >&2
  exit 1
fi

# One dpkg-query for all packages keeps the common case (nothing missing) fast.
# Unknown packages are reported on stderr and simply do not appear as installed.
installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null |
            awk '$2 == "installed" { print $1 }' || true)
missing=()
for pkg in "${packages[@]}"; do
  if ! grep -qxF "$pkg" <<<"$installed"; then
    missing+=("$pkg")
  fi
done

if ((${#missing[@]} == 0)); then
  exit 0
fi

echo "setup.sh: installing ${missing[*]}"
if [[ "$(id -u)" == 0 ]]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "setup.sh: not root and no sudo; install as root: apt-get install ${missing[*]}" >&2
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
# Wait for another apt run to finish instead of failing on its lock.
apt_opts=(-q -o DPkg::Lock::Timeout=300)
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "${apt_opts[@]}" update >/dev/null
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get "${apt_opts[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
echo "setup.sh: done"
