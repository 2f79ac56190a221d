#!/bin/bash
# Installs what is missing, builds both builds, runs every test. The last line counts what passed and failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
scripts/build.sh native windows
scripts/run_tests.sh
