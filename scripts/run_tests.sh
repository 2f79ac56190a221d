#!/bin/bash
# run_tests.sh [GROUP ...]: runs the built tests of some groups, side by side; all groups without an argument.
#   rules             who may include whom, documents, pictures in documents
#   native            the programs of the native build
#   postgres galera   those that work on a server
#   network           the loss of servers, on machines of their own (scripts/cluster_net.sh)
#   windows           the programs of the Windows build, also on servers; its windows at 100 %, pictures in out/windows-96
#   scaled            its windows at 150 and 200 %, pictures in out/windows-144 and out/windows-192
#   windows-1252      the same programs where the system's code page is 1252
# Prints what failed and ends in "N passed, N failed, N skipped". Exit code 1 when anything failed.
# `run_tests.sh total` prints that line for all groups since build/results was last removed.
# KOVA_KEEP_SERVERS=1 leaves the servers running for the next call; `run_tests.sh stop_servers` stops them.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
results=build/results
server_files="${KOVA_SERVERS:-build/servers}"
at_once=2  # programs of one group

# ---- counting: a file a program, $results/GROUP/NAME.count, of its cases that passed, failed and were skipped ----

# count GROUP NAME PASSED FAILED SKIPPED
count() { echo "$3 $4 $5" >"$results/$1/$2.count"; }

total() {
  local passed failed skipped
  read -r passed failed skipped < <(cat /dev/null "$results"/*/*.count | awk '{p+=$1; f+=$2; s+=$3} END {print p+0, f+0, s+0}')
  echo "$passed passed, $failed failed, $skipped skipped"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}

# run_program GROUP NAME COMMAND...: one GoogleTest program, counted by its report.
run_program() {
  local group=$1 name=$2
  shift 2
  local report="$results/$group/$name.xml" log="$results/$group/$name.log" started=$SECONDS
  "$@" "--gtest_output=xml:$report" >"$log" 2>&1 </dev/null
  local code=$? tests=0 failures=0 skipped=0
  if [ -e "$report" ]; then
    read -r tests failures skipped < <(awk 'match($0,/<testsuites tests="[0-9]+"/){t=substr($0,RSTART+19,RLENGTH-20)}
      match($0,/<testsuites [^>]*failures="[0-9]+"/){s=substr($0,RSTART,RLENGTH);sub(/.*failures="/,"",s);f=s+0}
      match($0,/<testsuite [^>]*skipped="[0-9]+"/){k=substr($0,RSTART,RLENGTH);sub(/.*skipped="/,"",k);skipped+=k}
      END{print t-skipped, f+0, skipped+0}' "$report")
  fi
  if [ "$code" -ne 0 ] && [ "$failures" -eq 0 ]; then
    failures=1  # it ended badly without saying so
    [ "$tests" -gt 0 ] || tests=1
  fi
  count "$group" "$name" $((tests - failures)) "$failures" "$skipped"
  mkdir -p "build/durations/$group"
  echo $((SECONDS - started)) >"build/durations/$group/$name"
  if [ "$failures" -gt 0 ]; then
    echo "FAILED $group/$name (exit code $code)
$(grep -E -A12 'Failure|ERROR: |runtime error|^\[  FAILED' "$log" | head -60)
  whole output: $log"
  elif [ $((SECONDS - started)) -gt 20 ]; then
    echo "  $group/$name took $((SECONDS - started)) s"
  fi
}

# run_check GROUP NAME COMMAND...: one check that is a command.
run_check() {
  local group=$1 name=$2 log="$results/$1/$2.log"
  shift 2
  if "$@" >"$log" 2>&1 </dev/null; then
    count "$group" "$name" 1 0 0
  else
    count "$group" "$name" 0 1 0
    echo "FAILED $group/$name
$(head -40 "$log")"
  fi
}

# skip_program GROUP NAME: counts the cases of a native program as skipped.
skip_program() { count "$1" "$2" 0 0 "$("build/native/tests/$2" --gtest_list_tests 2>/dev/null | grep -c '^  ')"; }

# The programs of the file LIST whose names match PATTERN; -v: those that do not. The longest of the last run come first.
programs() {
  local group=$1 list=$2 name
  shift 2
  grep -E "$@" "$list" | while read -r name; do
    echo "$(cat "build/durations/$group/$name" 2>/dev/null) $name"
  done | awk '{print NF == 2 ? $1 : 0, NR, $NF}' | sort -k1,1nr -k2,2n | cut -d' ' -f3
}

# run_all GROUP COMMAND...: the programs that standard input names, some at a time. In COMMAND, @ stands for the name.
run_all() {
  local group=$1 name running=0
  shift
  while read -r name; do
    if [ $((running += 1)) -gt $at_once ]; then
      wait -n
    fi
    run_program "$group" "$name" "${@//@/$name}" &
  done
  wait
}

# ---- servers ----

# need_server KIND: starts postgres or galera with fresh data, once for all groups and both builds. False when it cannot
# be had: a package is missing, and its tests are skipped; or it does not start, which is a failure.
need_server() {
  local kind=$1 state="$results/servers/$1.state" log="$results/servers/$1.log"
  mkdir -p "$results/servers"
  (
    flock 9
    [ ! -e "$state" ] || exit 0
    if ! scripts/"$kind".sh installed >"$log" 2>&1; then
      echo missing >"$state"
      echo "Tests on $kind are skipped: $(head -1 "$log")"
    elif KOVA_SERVER_NAME="test-$kind" scripts/"$kind".sh start fresh >"$log" 2>&1 </dev/null 9>&-; then
      echo up >"$state"
    else
      echo failed >"$state"
      count servers "$kind" 0 1 0
      echo "FAILED servers/$kind: it does not start
$(tail -20 "$log")"
    fi
  ) 9>"$results/servers/$kind.starts"
  [ "$(cat "$state")" = up ]
}

stop_servers() {
  local kind
  for kind in postgres galera; do
    [ ! -e "$results/servers/$kind.state" ] || KOVA_SERVER_NAME="test-$kind" scripts/"$kind".sh stop
    rm -f "$results/servers/$kind.state"
  done
}

# on_server NAME COMMAND...: with the server's facts in the environment; scripts/postgres.sh and galera.sh, called by the
# command, mean that server.
on_server() (
  set -a
  source "$server_files/$1.env"
  KOVA_DB_ACCOUNT=$KOVA_SERVER_OWNER KOVA_DB_PASSWORD=$KOVA_SERVER_OWNER_PASSWORD
  set +a
  shift
  "$@"
)

# run_on_server GROUP KIND BUILD COMMAND...: the build's programs that work on servers, one at a time, since some of them
# freeze the server. In COMMAND, @ stands for the name.
run_on_server() {
  local group=$1 kind=$2 list="build/$3/server_tests.txt" name
  shift 3
  mkdir -p "$results/$group"
  for name in $(grep -v '^server_lost' "$list"); do
    if need_server "$kind"; then
      (
        flock 9
        on_server "test-$kind" run_program "$group" "$name" "${@//@/$name}" 9>&-
      ) 9>"$results/servers/$kind.lock"
    else
      skip_program "$group" "$name"
    fi
  done
}

run_network() {
  local kind code log="$results/network/start.log"
  scripts/cluster_net.sh start >"$log" 2>&1 </dev/null
  code=$?
  if [ $code -eq 0 ]; then
    for kind in galera postgres; do
      on_server "net-$kind" run_program network "server_lost_test-$kind" timeout 900 \
        scripts/cluster_net.sh run build/native/tests/server_lost_test &
    done
    wait
    scripts/cluster_net.sh stop
  elif [ $code -eq 3 ]; then
    echo "server_lost_test is skipped: $(tail -1 "$log")"
    skip_program network server_lost_test
  else
    count network start 0 1 0
    echo "FAILED network/start
$(tail -20 "$log")"
  fi
}

# ---- Windows: each system has a prefix and a display of its own, so that several run side by side ----

# start_windows PREFIX LOCALE DPI
start_windows() {
  export KOVA_WINEPREFIX="$PWD/build/$1" KOVA_WINE_LOCALE=$2
  source scripts/wine_env.sh
  wine_start && display_start && display_scale "$3"
}

stop_windows() { wine_stop; display_stop; }

in_windows='^window_[a-z]+_test$'  # programs that open windows
# What these windows do is the same at every scale of the screen.
whatever_the_scale='-*.TwoHostsOnOnePractice:*.TwoOfOneProcessWorkSideBySide:*.SeesOtherWorkstations*'

# under_wine PROGRAM ARGUMENT...: those of one system that open windows run one at a time, since they share the keyboard.
under_wine() {
  local together=()
  [[ ! $1 =~ $in_windows ]] || together=(flock "$WINEPREFIX/display.lock")
  "${together[@]}" "${wine_command[@]}" "build/windows/bin/$1.exe" "${@:2}"
}

# run_windows GROUP ARGUMENT...: the programs that open windows. Their pictures are kept as out/GROUP/*.png.
run_windows() {
  local group=$1 name folder="out/$1"
  shift
  rm -rf "$folder"
  mkdir -p "$folder" "$results/$group"
  export KOVA_PICTURES="Z:${PWD//\//\\}\\${folder//\//\\}"
  for name in $(programs "$group" build/windows/test_programs.txt "$in_windows"); do
    run_program "$group" "$name" under_wine "$name" "$@"
  done
  unset KOVA_PICTURES
  run_check "$group" pictures scripts/window_pictures.sh "$folder"
}

# The programs of the Windows build that open no windows, but those whose name matches PATTERN.
run_windows_programs() {  # GROUP PATTERN
  run_all "$1" under_wine @ < <(programs "$1" build/windows/test_programs.txt -vE "$in_windows|$2")
}

# ---- groups ----

run_group() {
  local kind
  rm -rf "${results:?}/$1"
  mkdir -p "$results/$1"
  export ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1
  case $1 in
    rules)
      run_check rules includes scripts/check_includes.sh
      run_check rules docs scripts/check_docs.sh
      run_check rules pictures scripts/check_pictures.sh docs/images
      ;;
    native)
      # The form printer's test leaves its pages here; a browser turns them into pictures.
      export KOVA_PAGES="$PWD/out/pages"
      rm -rf "$KOVA_PAGES"
      run_all native timeout 900 build/native/tests/@ < <(programs native build/native/test_programs.txt .)
      run_check native pages scripts/page_pictures.sh out/pages
      run_check native map_page node tests/pages/map_page_test.mjs
      ;;
    postgres | galera) run_on_server "$1" "$1" native timeout 900 build/native/tests/@ ;;
    network) run_network ;;
    windows)
      run_check windows exports scripts/check_exports.sh
      start_windows wine ja_JP.UTF-8 96 || return 1
      run_windows_programs windows '^$' &
      run_windows windows-96 &
      for kind in postgres galera; do
        run_on_server "windows-$kind" $kind windows under_wine @ &
      done
      wait_for_all
      stop_windows
      ;;
    scaled)
      for kind in 144 192; do
        start_windows wine-scaled ja_JP.UTF-8 $kind || return 1
        run_windows windows-$kind "--gtest_filter=$whatever_the_scale"
        stop_windows
      done
      ;;
    windows-1252)
      start_windows wine-1252 C.UTF-8 96 || return 1
      run_windows_programs windows-1252 'recordstore|sample_practice|fuzz' &
      run_windows windows-1252-windows &
      wait_for_all
      stop_windows
      ;;
    *)
      echo "run_tests.sh: unknown group $1" >&2
      return 2
      ;;
  esac
}

# Of this shell's jobs, all but the display.
wait_for_all() {
  local pid
  for pid in $(jobs -rp); do
    [ "$pid" = "${display_pid:-}" ] || wait "$pid"
  done
}

case ${1:-} in
  total)
    total
    exit
    ;;
  stop_servers)
    stop_servers
    exit
    ;;
esac
groups=("$@")
[ ${#groups[@]} -gt 0 ] || groups=(rules native postgres galera network windows scaled windows-1252)
mkdir -p "$results"
pids=()
finish() {
  [ ${#pids[@]} -eq 0 ] || kill "${pids[@]}" 2>/dev/null
  [ -n "${KOVA_KEEP_SERVERS:-}" ] || stop_servers
}
trap finish EXIT
trap 'exit 130' INT TERM
for group in "${groups[@]}"; do
  run_group "$group" &
  pids+=($!)
done
for at in "${!pids[@]}"; do
  # What a group could not begin is no passed test.
  wait "${pids[at]}" || count "${groups[at]}" group 0 1 0
done
pids=()
[ -n "${KOVA_KEEP_SERVERS:-}" ] || total
