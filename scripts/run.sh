#!/usr/bin/env bash
# Builds the project and starts the explorer on the bundled sample database, under a
# virtual display when there is no display.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build/release -j "$(nproc)"

explorer=build/release/apps/explorer/explorer
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  exec xvfb-run -a "$explorer" "$@"
fi
exec "$explorer" "$@"
