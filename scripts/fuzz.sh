#!/usr/bin/env bash
# Builds the fuzz targets with clang's libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer, and runs each for the seconds given (30 by default), as many at
# once as there are cores. New inputs found go to build/fuzz/runs/<target>/corpus; a crash,
# hang or sanitizer report fails the run and leaves its input beside the log, to be kept in
# fuzz/regressions/<target>/ once fixed.
#   scripts/fuzz.sh [seconds] [target ...]
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-30}
shift || true
if ! command -v clang++ >/dev/null; then
  echo "fuzz: no clang++ here; the targets ran only as replay tests" >&2
  exit 0
fi

export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:strict_string_checks=1"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"

CC=clang CXX=clang++ cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DQDB_FUZZ=ON -DQDB_BUILD_TESTS=OFF -DQDB_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build build/fuzz -j "$(nproc)"

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for program in build/fuzz/fuzz/fuzz_*; do
    [ -f "$program" ] && [ -x "$program" ] && targets+=("${program##*/fuzz_}")
  done
fi

run() {
  local target=$1 dir=build/fuzz/runs/$1
  mkdir -p "$dir/corpus"
  local inputs=("$dir/corpus" "fuzz/corpus/$target")
  [ -d "fuzz/regressions/$target" ] && inputs+=("fuzz/regressions/$target")
  if "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -seed="${QDB_FUZZ_SEED:-1}" -timeout=10 -rss_limit_mb=2048 \
      -print_final_stats=1 -artifact_prefix="$dir/" "${inputs[@]}" >"$dir/log" 2>&1; then
    echo "fuzz $target: $(grep -o 'Done [0-9]* runs in [0-9]* second(s)' "$dir/log" | tail -1), \
$(grep -o 'cov: [0-9]*' "$dir/log" | tail -1 | cut -d' ' -f2) edges, corpus $(ls "$dir/corpus" | wc -l) inputs"
  else
    echo "fuzz $target: FAILED (log and input in $dir)" >&2
    grep -E 'ERROR|SUMMARY|runtime error|Test unit written' "$dir/log" | head -5 >&2
    return 1
  fi
}

failed=0
running=0
for target in "${targets[@]}"; do
  if [ "$running" -ge "$(nproc)" ]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
  run "$target" &
  running=$((running + 1))
done
while [ "$running" -gt 0 ]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit $failed
