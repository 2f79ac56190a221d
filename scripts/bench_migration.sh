#!/bin/bash
# Measures `kovacall migrate` of a practice to a server against the server's own bulk load, COPY FROM and LOAD DATA, of the
# same rows into empty tables with the same indexes; both over the network's loopback, in one run. Prints seconds and
# ours / bulk load. The migration's comparison is told apart: a bulk load has none. The server is the one of the environment.
# usage: bench_migration.sh FOLDER-OF-THE-PRACTICE
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD
practice=$(realpath "$1")
kovacall=$root/build/bench/bin/kovacall
work=$(mktemp -d build/bench/work.XXXXXX)
work=$root/$work
trap '[ $BASHPID != $$ ] || rm -rf "$work"' EXIT
host=${KOVA_SERVER_HOSTS%%,*} port=${KOVA_SERVER_HOSTS%%,*}
host=${host%:*} port=${port##*:}

now() { date +%s.%N; }
client() {  # DATABASE, SQL on standard input; as the account that lays out the tables
  if [ "$KOVA_SERVER_KIND" = PostgreSQL ]; then
    PGPASSWORD=$KOVA_DB_PASSWORD PGSSLMODE=disable psql -h "$host" -p "$port" -U "$KOVA_DB_ACCOUNT" -d "$1" -qAt -v ON_ERROR_STOP=1
  else
    MYSQL_PWD=$KOVA_DB_PASSWORD mariadb --local-infile=1 -h "$host" -P "$port" -u "$KOVA_DB_ACCOUNT" -N "$1"
  fi
}
lay_out() {  # FOLDER DATABASE
  mkdir -p "$1"
  printf '[Server]\r\nKind=%s\r\nHosts=%s\r\nDatabase=%s\r\nAccount=%s\r\n' "$KOVA_SERVER_KIND" "$host:$port" "$2" \
    "$KOVA_DB_ACCOUNT" >"$1/kova.server"
  "$kovacall" create-db "$1" >/dev/null
}

to=$work/to load=$work/load name=kova_bench_$$
lay_out "$to" "${name}_to"
lay_out "$load" "${name}_load"
begun=$(now)
"$kovacall" migrate "$practice" "$to" 2> >(
  while IFS= read -r -d : line; do
    [[ $line != *comparing* ]] || { now >"$work/compared"; exec cat >/dev/null; }
  done) >"$work/result"
ended=$(now)
[ "$(cat "$work/result")" = 0 ] || { cat "$work/result"; exit 1; }
compared=$(cat "$work/compared")
if [ "$KOVA_SERVER_KIND" = PostgreSQL ]; then
  tables=$(client "${name}_to" <<<"SELECT tablename FROM pg_tables WHERE schemaname = 'public'
    AND tablename NOT IN ('store_info', 'store_client', 'counter', 'change_stamp') ORDER BY 1;")
  for table in $tables; do client "${name}_to" <<<"\\copy \"$table\" TO '$work/$table.rows'"; done
  for table in $tables; do echo "\\copy \"$table\" FROM '$work/$table.rows'"; done >"$work/sql"
else
  tables=$(client "${name}_to" <<<"SELECT table_name FROM information_schema.tables WHERE table_schema = '${name}_to'
    AND table_name NOT IN ('store_info', 'store_client', 'counter', 'change_stamp') ORDER BY 1;")
  for table in $tables; do
    # Bytes as hexadecimal digits, for LOAD DATA to take back: they need not be text.
    columns="" into="" set=""
    while read -r column type; do
      if [[ $type == *b* && $type != *big* ]]; then
        columns+=",HEX(\`$column\`)" into+=",@$column" set+=",\`$column\`=UNHEX(@$column)"
      else
        columns+=",\`$column\`" into+=",\`$column\`"
      fi
    done < <(client "${name}_to" <<<"SELECT column_name, data_type FROM information_schema.columns WHERE
      table_schema = '${name}_to' AND table_name = '$table' ORDER BY ordinal_position;")
    client "${name}_to" <<<"SELECT ${columns:1} FROM \`$table\` ORDER BY id;" |
      sed 's/\bNULL$/\\N/' >"$work/$table.rows"
    echo "LOAD DATA LOCAL INFILE '$work/$table.rows' INTO TABLE \`$table\` CHARACTER SET utf8mb4 (${into:1}) SET ${set:1};"
  done >"$work/sql"
fi
loaded=$(now)
client "${name}_load" <"$work/sql"
loaded=$(awk "BEGIN { print $(now) - $loaded }")
rows=0
for table in $tables; do
  count="SELECT count(*) FROM "
  [ "$KOVA_SERVER_KIND" = PostgreSQL ] && count+="\"$table\"" || count+="\`$table\`"
  one=$(client "${name}_to" <<<"$count;") other=$(client "${name}_load" <<<"$count;")
  [ "$one" = "$other" ] || { echo "$table: $one rows migrated, $other loaded"; exit 1; }
  rows=$((rows + one))
done
awk -v kind="$KOVA_SERVER_KIND" -v rows=$rows -v bulk="$loaded" "BEGIN {
  copy = $compared - $begun; all = $ended - $begun
  printf \"%s, %d records: bulk load %.2f s; migrate: copying %.2f s, comparing %.2f s\n\", kind, rows, bulk, copy, all - copy
  printf \"  copying / bulk load   %.2f   aim <= 2\n  all / bulk load       %.2f\n\", copy / bulk, all / bulk }"
for table in "${name}_to" "${name}_load"; do
  [ "$KOVA_SERVER_KIND" = PostgreSQL ] && echo "DROP DATABASE $table" | client postgres || echo "DROP DATABASE $table" | client "$table"
done
