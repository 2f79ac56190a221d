#!/bin/bash
# postgres.sh
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/servers.sh"
server_command "${KOVA_SERVER_NAME:-postgres}" "$@"
