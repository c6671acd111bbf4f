#!/usr/bin/env bash
# Builds the benchmarks in an optimised build and runs them; extra arguments go to Google
# Benchmark (for instance --benchmark_filter=Sort).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQDB_BUILD_TESTS=OFF -DQDB_BUILD_BENCH=ON >/dev/null
cmake --build build/bench -j "$(nproc)"
for b in build/bench/bench/bench_*; do
  [ -f "$b" ] && [ -x "$b" ] || continue
  QT_QPA_PLATFORM=offscreen "$b" "$@"
done
