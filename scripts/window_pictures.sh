#!/bin/bash
# window_pictures.sh FOLDER: turns the pictures that programs took of their windows, FOLDER/*.bmp, into FOLDER/*.png, and
# checks them. Exit code 1 when one cannot be read or is not whole.
set -uo pipefail
bad=0
for picture in "$1"/*.bmp; do
  [ -e "$picture" ] || continue
  convert "$picture" "${picture%.bmp}.png" && rm -f "$picture" || bad=1
done
"$(dirname "$0")/check_pictures.sh" "$1" || bad=1
exit $bad
