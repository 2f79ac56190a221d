#!/bin/bash
# galera.sh start [fresh] | installed | stop | status | kill [N] | restart [N] | freeze [N] | thaw [N]
# A MariaDB Galera cluster of three nodes of this project's own, for trying out. See docs/servers.md.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/servers.sh"
name=galera
[[ ${KOVA_SERVER_NAME:-} != *galera ]] || name=$KOVA_SERVER_NAME
server_command "$name" "$@"
