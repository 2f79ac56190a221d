#!/bin/bash
# check_pictures.sh FOLDER: every picture FOLDER/*.png must be opaque and show more than one colour. Exit code 1 when one
# does not, or when there is none.
set -uo pipefail
bad=0 seen=0
while read -r opaque colours picture; do
  seen=1
  [ "$opaque" = True ] || [ "$opaque" = true ] || { echo "$picture: is transparent in places"; bad=1; }
  [ "$colours" -gt 1 ] || { echo "$picture: is of one colour"; bad=1; }
done < <(identify -format '%[opaque] %k %d/%f\n' "$1"/*.png 2>&1)
[ $seen = 1 ] || { echo "$1: no pictures"; bad=1; }
exit $bad
