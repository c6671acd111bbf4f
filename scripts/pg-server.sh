#!/usr/bin/env bash
# Starts or stops a throw-away PostgreSQL 15 server on loopback for the tests.
#   scripts/pg-server.sh start DIR PORT   (prints the connection string)
#   scripts/pg-server.sh stop DIR
#   scripts/pg-server.sh halt DIR         (stops it, keeping its data)
#   scripts/pg-server.sh resume DIR PORT  (starts a halted one again)
set -euo pipefail
bin=/usr/lib/postgresql/15/bin
cmd=${1:?start or stop}
dir=${2:?data directory}
as_pg() {
  if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}
case "$cmd" in
  start)
    port=${3:?port}
    mkdir -p "$dir"
    [ "$(id -u)" -eq 0 ] && chown postgres "$dir"
    as_pg "$bin/initdb" -D "$dir/data" -U postgres -A trust -E UTF8 >"$dir/initdb.log" 2>&1
    "$0" resume "$dir" "$port"
    as_pg "$bin/createdb" -h 127.0.0.1 -p "$port" -U postgres qdbtest
    echo "postgresql://postgres@127.0.0.1:$port/qdbtest"
    ;;
  resume)
    port=${3:?port}
    as_pg "$bin/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w \
      -o "-p $port -c listen_addresses=127.0.0.1 -k $dir -c fsync=off -c synchronous_commit=off -c full_page_writes=off" start >/dev/null
    ;;
  halt)
    as_pg "$bin/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null
    ;;
  stop)
    as_pg "$bin/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null 2>&1 || true
    rm -rf "$dir"
    ;;
  *) echo "usage: $0 start DIR PORT | stop DIR | halt DIR | resume DIR PORT" >&2; exit 2 ;;
esac
