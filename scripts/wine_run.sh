#!/bin/bash
# wine_run.sh PROGRAM ARGUMENT...: runs a Windows program in the project's Wine prefix, made when missing. The
# build runs its own programs by it.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
KOVA_WINEPREFIX="${KOVA_WINEPREFIX:-$root/build/wine}"
# A locale that every machine has: arguments come through in UTF-8, and what the programs answer does not depend
# on the system's code page.
KOVA_WINE_LOCALE="${KOVA_WINE_LOCALE:-C.UTF-8}"
mkdir -p "$(dirname "$KOVA_WINEPREFIX")"
source "$root/scripts/wine_env.sh"
# Wine's services outlive the program and would hold a pipe to the caller open: files stand in between.
output=$(mktemp -d)
trap 'rm -rf "$output"' EXIT
{
  flock 9
  wine_start >"$output/out" 2>"$output/err" </dev/null 9>&-  # not 0 also when a server runs already
} 9>"$KOVA_WINEPREFIX.lock"
code=1
if [ -e "$KOVA_WINEPREFIX/.ready" ]; then
  wine "$@" >"$output/out" 2>"$output/err"
  code=$?
fi
cat "$output/out"
cat "$output/err" >&2
exit "$code"
