#!/bin/bash
# Measures under Wine, on a virtual display, how long each dialog takes until it is on the screen, against an empty dialog
# with the same controls. Uses a sample practice that it lays out under build/windows/bench-practice.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
KOVA_TARGETS="dialogs_bench sample_practice empty_database mail_templates address_list" scripts/build.sh windows
export KOVA_WINE_LOCALE=ja_JP.UTF-8
practice=build/windows/bench-practice
[ -e "$practice/app.ini" ] ||
  scripts/wine_run.sh build/windows/bin/sample_practice.exe "$practice" --seed 1 --today "$(date +%Y%m%d)" >"$practice.log"
source scripts/wine_env.sh
wine_start
display_start
trap 'wine_stop; display_stop' EXIT
display_scale 96
scripts/wine_run.sh build/windows/bin/dialogs_bench.exe --app "$practice/app.ini"
