#!/bin/bash
# postgres.sh start [fresh] | installed | stop | status | kill [N] | restart [N] | freeze [N] | thaw [N]
# A PostgreSQL server of this project's own, for trying out. See docs/servers.md.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/servers.sh"
name=postgres
[[ ${KOVA_SERVER_NAME:-} != *postgres ]] || name=$KOVA_SERVER_NAME
server_command "$name" "$@"
