#!/bin/bash
# Installs what is missing, builds both builds, runs every test; those of the native build while the other one is built. The
# last line counts what passed, failed and was skipped.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
scripts/build.sh native
rm -rf build/results
export KOVA_KEEP_SERVERS=1
trap 'scripts/run_tests.sh stop_servers' EXIT
scripts/run_tests.sh rules native postgres galera network &
native=$!
built=0
scripts/build.sh windows || built=$?
[ $built -ne 0 ] || scripts/run_tests.sh windows scaled windows-1252
wait $native
[ $built -eq 0 ] || exit $built
scripts/run_tests.sh total
