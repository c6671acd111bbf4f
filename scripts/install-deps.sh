#!/usr/bin/env bash
# Installs every Debian package that building, testing, benchmarking and running the
# explorer need. Idempotent, and quick when everything is already there.
set -euo pipefail

packages=(
  # toolchain
  g++ cmake ninja-build pkg-config ccache
  # clang and its libFuzzer runtime for the fuzz targets
  clang libclang-rt-14-dev
  # Qt 6: Core, Gui, Widgets, Sql, Test; the SQL drivers; Designer for the plugin (whose
  # CMake package asks for OpenGLWidgets)
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libqt6sql6-psql qt6-tools-dev libqt6opengl6-dev
  # lupdate and lrelease for the translations; Qt's own German texts for its standard ones
  qt6-l10n-tools qt6-translations-l10n
  libgl-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  # SQLite declared column types and the raw-scan baseline of the benchmarks
  libsqlite3-dev
  # telling a PostgreSQL session the server ended from a statement that failed
  libpq-dev
  # PostgreSQL server started on loopback by the tests
  postgresql-15 postgresql-client-15
  # a virtual display for the explorer on machines without one; a known font for offscreen tests
  xvfb xauth fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
