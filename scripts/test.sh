#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test twice: in a normal build and in an
# AddressSanitizer + UndefinedBehaviorSanitizer build. Exits non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

export QT_QPA_PLATFORM=offscreen
jobs=$(nproc)
# Paths relative to the checkout in the compiler cache: a fresh clone reuses what another
# checkout on this machine compiled.
export CCACHE_BASEDIR="$PWD"
export CCACHE_NOHASHDIR=1

# A PostgreSQL server on loopback for the SQL tests, stopped whatever happens; without
# the server binaries the PostgreSQL cases are skipped.
if [ -x /usr/lib/postgresql/15/bin/initdb ] && [ -z "${QDB_PG_URL:-}" ]; then
  pgdir=$(mktemp -d /tmp/qdb-pg.XXXXXX)
  chmod 755 "$pgdir"
  trap 'rm -rf "$pgdir"' EXIT
  for attempt in 1 2 3; do
    port=$(( 20000 + RANDOM % 20000 ))
    if QDB_PG_URL=$(scripts/pg-server.sh start "$pgdir/pg$attempt" "$port"); then
      trap 'scripts/pg-server.sh stop "$pgdir/pg'"$attempt"'"; rm -rf "$pgdir"' EXIT
      export QDB_PG_URL
      echo "PostgreSQL for the tests: $QDB_PG_URL"
      break
    fi
    echo "PostgreSQL did not start on port $port (see $pgdir/pg$attempt/server.log)" >&2
  done
  [ -n "${QDB_PG_URL:-}" ] || echo "The PostgreSQL cases will be skipped." >&2
fi

suite() {
  local name=$1; shift
  echo "== $name build =="
  cmake -S . -B "build/$name" -G Ninja -DQDB_WARNINGS_AS_ERRORS=ON "$@" >/dev/null
  cmake --build "build/$name" -j "$jobs"
  echo "== $name tests =="
  ctest --test-dir "build/$name" --output-on-failure -j "$jobs"
}

suite release -DCMAKE_BUILD_TYPE=RelWithDebInfo

ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:strict_string_checks=1:detect_stack_use_after_return=1" \
LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0" \
UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
  suite sanitize -DCMAKE_BUILD_TYPE=Debug -DQDB_SANITIZE=ON

# Each fuzz target for a short while in a clang build of its own (skipped without clang);
# scripts/fuzz.sh 600 is the long run.
scripts/fuzz.sh 30
