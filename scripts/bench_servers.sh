#!/bin/bash
# Measures the record store on database servers: a PostgreSQL server and a Galera cluster of its own, which it starts and ends.
# Single operations against plain ODBC, 200 workstations at work, a practice's move to the server against its bulk load.
# usage: bench_servers.sh [PATIENTS RESERVATIONS]: of the practice that moves. The large one: 100000 1000000.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
scripts/build.sh bench
bin=build/bench/bin
work=$(mktemp -d build/bench/work.XXXXXX)
kind=
finish() {
  rm -rf "$work"
  [ -z "$kind" ] || KOVA_SERVER_NAME=bench-$kind scripts/$kind.sh stop
}
trap finish EXIT
"$bin/sample_practice" "$work/practice" --patients "${1:-10000}" --reservations "${2:-100000}" >"$work/practice.log" 2>&1
for kind in postgres galera; do
  export KOVA_SERVER_NAME=bench-$kind
  scripts/$kind.sh start fresh >"$work/start.log" || { echo "$kind: cannot be had, not measured"; continue; }
  set -a
  . "${KOVA_SERVERS:-build/servers}/$KOVA_SERVER_NAME.env"
  set +a
  export KOVA_DB_ACCOUNT=$KOVA_SERVER_OWNER KOVA_DB_PASSWORD=$KOVA_SERVER_OWNER_PASSWORD
  mkdir "$work/$kind"
  "$bin/server_bench" "$work/$kind"
  for practices in 20 1; do
    mkdir "$work/$kind-$practices"
    "$bin/desks_bench" "$work/$kind-$practices" 200 $practices
  done
  scripts/bench_migration.sh "$work/practice"
  scripts/$kind.sh stop
done
kind=
