#!/bin/bash
# run_tests.sh [rules|native|servers|windows ...]: runs the built tests, all groups without an argument.
# Prints what failed and ends in "N passed, N failed". Exit code 1 when anything failed.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
groups=("$@")
[ ${#groups[@]} -gt 0 ] || groups=(rules native servers windows)
passed=0
failed=0

# run_program GROUP NAME COMMAND...: counts the cases of one GoogleTest program by its report.
run_program() {
  local group=$1 name=$2
  shift 2
  local folder="build/results/$group"
  mkdir -p "$folder"
  local report="$folder/$name.xml" log="$folder/$name.log" started=$SECONDS
  rm -f "$report"
  "$@" "--gtest_output=xml:$report" >"$log" 2>&1 </dev/null
  local code=$? tests=0 failures=0
  if [ -e "$report" ]; then
    read -r tests failures < <(awk 'match($0,/<testsuites tests="[0-9]+"/){t=substr($0,RSTART+19,RLENGTH-20)}
      match($0,/<testsuites [^>]*failures="[0-9]+"/){s=substr($0,RSTART,RLENGTH);sub(/.*failures="/,"",s);f=s+0}
      match($0,/<testsuite [^>]*skipped="[0-9]+"/){k=substr($0,RSTART,RLENGTH);sub(/.*skipped="/,"",k);skipped+=k}
      END{print t-skipped, f+0}' "$report")
  fi
  if [ "$code" -ne 0 ] && [ "$failures" -eq 0 ]; then
    failures=1  # it ended badly without saying so
    [ "$tests" -gt 0 ] || tests=1
  fi
  passed=$((passed + tests - failures))
  failed=$((failed + failures))
  if [ "$failures" -gt 0 ]; then
    echo "FAILED $group/$name (exit code $code)"
    grep -E -A12 'Failure|ERROR: |runtime error|^\[  FAILED' "$log" | head -60
    echo "  whole output: $log"
  elif [ $((SECONDS - started)) -gt 20 ]; then
    echo "  $group/$name took $((SECONDS - started)) s"
  fi
}

# run_check NAME COMMAND...: one check that is a command.
run_check() {
  local name=$1 log
  shift
  log=$(mktemp)
  if "$@" >"$log" 2>&1; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED $name"
    head -40 "$log"
  fi
  rm -f "$log"
}

# need_server KIND: starts postgres or galera with fresh data, once; it runs until these tests end. Says why it cannot be had.
declare -A server_state
need_server() {
  local log="build/results/servers-$1.log" title=PostgreSQL
  [ "$1" = postgres ] || title="A Galera cluster"
  if [ -z "${server_state[$1]:-}" ]; then
    mkdir -p build/results
    trap stop_servers EXIT
    trap 'exit 130' INT TERM
    server_state[$1]=started
    if ! KOVA_SERVER_NAME="test-$1" "scripts/$1.sh" start fresh >"$log" 2>&1 </dev/null; then
      server_state[$1]=missing
      echo "$title could not be had: $(head -1 "$log") (more: $log)"
    fi
  fi
  [ "${server_state[$1]}" = started ]
}

stop_servers() {
  local kind
  for kind in "${!server_state[@]}"; do
    KOVA_SERVER_NAME="test-$kind" "scripts/$kind.sh" stop
  done
}

# run_on_servers GROUP LIST COMMAND...: the programs that the file LIST names, a line each, on each kind of server. In
# COMMAND, @ stands for the name; scripts/postgres.sh and galera.sh, called by a program, mean the server it runs on.
run_on_servers() {
  local group=$1 kind name names
  mapfile -t names < <(grep -v '^server_lost' "$2")
  shift 2
  for kind in postgres galera; do
    need_server "$kind" || continue
    set -a
    source "build/servers/test-$kind.env"
    set +a
    export KOVA_DB_ACCOUNT=$KOVA_SERVER_OWNER KOVA_DB_PASSWORD=$KOVA_SERVER_OWNER_PASSWORD
    for name in "${names[@]}"; do
      run_program "$group-$kind" "$name" "${@//@/$name}"
    done
    unset "${!KOVA_SERVER_@}" KOVA_DB_ACCOUNT KOVA_DB_PASSWORD
  done
}

# run_in_network NAME: a program on a workstation's machine in the servers' own network, once with each kind of server.
run_in_network() {
  local kind
  for kind in galera postgres; do
    scripts/cluster_net.sh start "$kind" >/dev/null || { echo "The servers' own network could not be had: $1 did not run with $kind"; continue; }
    set -a
    source "build/servers/net-$kind.env"
    set +a
    export KOVA_DB_ACCOUNT=$KOVA_SERVER_OWNER KOVA_DB_PASSWORD=$KOVA_SERVER_OWNER_PASSWORD
    run_program "network-$kind" "$1" timeout 600 scripts/cluster_net.sh run "build/native/tests/$1"
    unset "${!KOVA_SERVER_@}" KOVA_DB_ACCOUNT KOVA_DB_PASSWORD
    scripts/cluster_net.sh stop
  done
}

# Programs that open windows need a display.
in_windows='^window_[a-z]+_test$'

# run_windows DPI: the window tests at a screen scale, with pictures as out/windows-DPI/*.png.
run_windows() {
  local pictures="out/windows-$1" picture
  rm -rf "$pictures"
  mkdir -p "$pictures"
  display_scale "$1"
  export KOVA_PICTURES="Z:${PWD//\//\\}\\${pictures//\//\\}"
  while read -r name; do
    run_program "windows-$1" "$name" wine "build/windows/bin/$name.exe"
  done < <(grep -E "$in_windows" build/windows/test_programs.txt)
  unset KOVA_PICTURES
  for picture in "$pictures"/*.bmp; do
    [ ! -e "$picture" ] || { convert "$picture" "${picture%.bmp}.png" && rm -f "$picture"; }
  done
}

for group in "${groups[@]}"; do
  case $group in
    rules)
      run_check rules/includes scripts/check_includes.sh
      run_check rules/docs scripts/check_docs.sh
      ;;
    native)
      export ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1
      # The form printer's test leaves its pages here; a browser turns them into pictures.
      export KOVA_PAGES="$PWD/out/pages"
      rm -rf "$KOVA_PAGES"
      while read -r name; do
        run_program native "$name" timeout 600 "build/native/tests/$name"
      done <build/native/test_programs.txt
      run_check native/pages scripts/page_pictures.sh out/pages
      run_check native/map_page node tests/pages/map_page_test.mjs
      unset KOVA_PAGES
      ;;
    servers)
      run_on_servers servers build/native/server_tests.txt timeout 600 build/native/tests/@
      run_in_network server_lost_test
      ;;
    windows)
      run_check windows/exports scripts/check_exports.sh
      source scripts/wine_env.sh
      wine_start || exit 1
      while read -r name; do
        run_program windows "$name" wine "build/windows/bin/$name.exe"
      done < <(grep -vE "$in_windows" build/windows/test_programs.txt)
      display_start || exit 1
      display_scale 96
      run_on_servers windows build/windows/server_tests.txt wine build/windows/bin/@.exe
      # Dialogs, at 100, 150 and 200 % of the screen's scale; their pictures are kept.
      for scale in 96 144 192; do
        run_windows "$scale"
      done
      # The answers must not depend on the system's code page: once more where it is 1252.
      wine_locale=C.UTF-8
      display_scale 96
      while read -r name; do
        run_program windows-1252 "$name" wine "build/windows/bin/$name.exe"
      done < <(grep -vE 'recordstore|sample_practice|fuzz' build/windows/test_programs.txt)
      wine_stop
      display_stop
      ;;
    *)
      echo "run_tests.sh: unknown group $group" >&2
      exit 2
      ;;
  esac
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
