#!/bin/bash
# cluster_net.sh: the servers on machines of their own in a network of their own, whose links can be cut: the three nodes of a
# cluster at 10.77.0.11 to .13, PostgreSQL at 10.77.0.21, the workstations at 10.77.0.1. Each is a network namespace, the links
# meet in a bridge. A cut link says nothing to anybody: packets vanish. Needs root and a kernel that gives namespaces.
#
#   start [galera] [postgres]   both without a name; the facts are in build/servers/net-NAME.env (or below KOVA_SERVERS)
#   run COMMAND...              on a workstation's machine
#   cut MACHINE                 1, 2, 3 or postgres: nobody reaches it
#   part MACHINE                a node: workstations reach it, the other nodes do not
#   mend MACHINE                both together again
#   kill | restart | freeze | thaw MACHINE
#   status
#   stop
#
# start ends in code 3, with a line that says why, where there can be no such network.
set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/servers.sh"
hub="$net_tag-hub"

in_space() { nsenter "--net=/run/netns/$1" "${@:2}"; }

# machine MACHINE: its server, node number, namespace, link and the last figure of its address.
machine() {
  case ${1:-} in
    1 | 2 | 3) server=net-galera n=$1 space=$(net_space galera "$1") link=to-galera$1 ;;
    postgres) server=net-postgres n=1 space=$(net_space postgres 1) link=to-postgres1 ;;
    *) say "No such machine: ${1:-}. They are 1, 2, 3 and postgres."; exit 2 ;;
  esac
}

# Everybody knows everybody's hardware address beforehand: a machine that is cut off must not be told of as unreachable.
hardware() { echo "02:77:00:00:00:$(printf %02x "${1##*.}")"; }
machines="10.77.0.1 10.77.0.11 10.77.0.12 10.77.0.13 10.77.0.21"
know_all() {
  local own=$1 device=$2 other
  for other in $machines; do
    [ "$other" = "$own" ] || ip neigh replace "$other" lladdr "$(hardware "$other")" dev "$device" nud permanent
  done
}

plug() {
  local kind=$1 number=$2 space address link="to-$1$2"
  space=$(net_space "$kind" "$number")
  address=$(net_address "$kind" "$number")
  ip netns add "$space"
  in_space "$space" ip link set lo up
  in_space "$hub" ip link add "$link" type veth peer name net0 address "$(hardware "$address")" netns "$space"
  in_space "$hub" ip link set "$link" master bridge up
  in_space "$space" ip address add "$address/24" dev net0
  in_space "$space" ip link set net0 up
  in_space "$space" bash -c "$(declare -f know_all hardware); machines='$machines'; know_all $address net0"
}

net_down() {
  local space
  for space in "$hub" "$(net_space postgres 1)" "$(net_space galera 1)" "$(net_space galera 2)" "$(net_space galera 3)"; do
    [ ! -e "/run/netns/$space" ] || ip netns delete "$space"
  done
}

net_up() {
  local why n
  if [ "$(id -u)" -ne 0 ]; then
    why="it needs root"
  elif ! why=$(ip netns add "$hub" 2>&1 &&
    in_space "$hub" ip link add bridge address "$(hardware 10.77.0.1)" type bridge 2>&1); then
    why=${why:-no network namespaces here}
  else
    in_space "$hub" ip link set lo up
    in_space "$hub" ip address add 10.77.0.1/24 dev bridge
    in_space "$hub" ip link set bridge up
    why=$(plug postgres 1 2>&1 && for n in 1 2 3; do plug galera $n 2>&1; done)
    in_space "$hub" bash -c "$(declare -f know_all hardware); machines='$machines'; know_all 10.77.0.1 bridge"
  fi
  [ -z "$why" ] || { say "A network for faults could not be had: $why"; net_down; return 3; }
}

command=${1:-}
shift || true
case $command in
  start)
    server_stop net-postgres
    server_stop net-galera
    net_down 2>/dev/null
    net_up || exit
    for kind in ${*:-postgres galera}; do
      server_start "net-$kind" fresh || { "$0" stop; exit 1; }
    done
    ;;
  stop)
    server_stop net-postgres
    server_stop net-galera
    net_down
    ;;
  run) exec nsenter "--net=/run/netns/$hub" -- "$@" ;;
  cut)
    machine "${1:-}"
    in_space "$hub" ip link set "$link" nomaster
    ;;
  part)
    machine "${1:-}"
    for other in 1 2 3; do
      [ "$other" = "$n" ] || in_space "$space" ip neigh replace "$(net_address galera "$other")" lladdr 02:77:00:00:00:ff dev net0 \
        nud permanent
    done
    ;;
  mend)
    machine "${1:-}"
    in_space "$space" bash -c "$(declare -f know_all hardware); machines='$machines'; know_all $(net_address "${server#net-}" "$n") net0"
    in_space "$hub" ip link set "$link" master bridge
    ;;
  kill | restart | freeze | thaw)
    machine "${1:-}"
    server_command "$server" "$command" "$n"
    ;;
  status)
    for server in net-postgres net-galera; do
      [ ! -e "$servers/$server" ] || server_status "$server"
    done
    ;;
  *) sed -n '2,/^$/{/^#/!q;s/^# \{0,1\}//p}' "$0" >&2; exit 2 ;;
esac
