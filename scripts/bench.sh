#!/bin/bash
# Measures the library natively, optimised: ours, the baseline and their ratio, from one run.
# KOVA_COORDINATES names a whole PostGeo.csv to measure the map with.
# KOVA_ADDRESS_LIST names a whole postal address list to measure on; without it one as long is made up.
# The large practice (1,000,000 reservations) is made once, under build/bench/practice.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
scripts/build.sh bench
bin=build/bench/bin
if [ ! -e build/bench/practice/.complete ]; then
  rm -rf build/bench/practice
  started=$SECONDS
  "$bin/sample_practice" build/bench/practice --large >build/bench/practice.log
  echo "large practice made in $((SECONDS - started)) s   aim <= 300 s"
  touch build/bench/practice/.complete
fi
work=$(mktemp -d build/bench/work.XXXXXX)
trap 'rm -rf "$work"' EXIT
"$bin/operations_bench" "$work"
"$bin/mail_bench" "$work"
"$bin/cashless_bench" "$work"
"$bin/map_bench" "$work" ${KOVA_COORDINATES:+"$KOVA_COORDINATES"}
"$bin/pickers_bench" "$work"
"$bin/practice_bench" "$work"
"$bin/printing_bench" "$work"
"$bin/postal_bench" "$work" ${KOVA_ADDRESS_LIST:+"$KOVA_ADDRESS_LIST"}
"$bin/visitflow_bench" build/bench/practice "$work"
"$bin/recordstore_bench" build/bench/practice
"$bin/scan_memory" build/bench/practice
