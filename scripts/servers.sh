# Sourced: database servers of this project's own, for tests and for trying out: a PostgreSQL server and a MariaDB Galera
# cluster of three nodes, in folders under build/servers. A server with its data is called by a name, NAME below; its records
# stay until it is started fresh. What a program needs to reach it is in build/servers/NAME.env, for a shell to source.
# KOVA_SERVERS names another folder for all of it.
#
# A server is found by its command line, which names its folder, never by a number kept in a file: so one that a crashed run
# left behind is found, and no stranger is ended.
kova_root=${kova_root:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
servers="${KOVA_SERVERS:-$kova_root/build/servers}"
server_files=$servers  # where NAME.env lies, wherever the servers live
pg_bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
server_patience="${KOVA_SERVER_PATIENCE:-180}"  # seconds that a start may take

say() { echo "$*" >&2; }

# wait_until SECONDS COMMAND...: false when the command has not succeeded by then.
wait_until() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    [ $SECONDS -lt $end ] || return 1
    sleep 0.25
  done
}

# server_user KIND: the command before every one that works on its files, in `as`; servers do not run as root.
server_user() {
  as=()
  [ "$(id -u)" -eq 0 ] || return 0
  local user=mysql
  [ "$1" = galera ] || user=postgres
  as=(setpriv "--reuid=$user" "--regid=$user" --init-groups --)
}

# Where the servers live: where they cannot reach build/servers, as below a home folder closed to them, elsewhere.
servers_folder() {
  mkdir -p "$servers"
  [ ! -e "$servers/elsewhere" ] || servers=$(cat "$servers/elsewhere")
  mkdir -p "$servers"
  if ! "${as[@]}" test -x "$servers"; then
    local folder base
    for base in "${TMPDIR:-/tmp}" /var/tmp /tmp; do
      ! "${as[@]}" test -x "$base" || break
    done
    folder=$(mktemp -d "$base/kova-servers-XXXXXX") && chmod 755 "$folder"
    say "The servers' user may not enter $servers: they live in $folder"
    echo "$folder" >"$servers/elsewhere"
    servers=$folder
  fi
}

# server_kind NAME: postgres or galera.
server_kind() { case $1 in *galera*) echo galera ;; *) echo postgres ;; esac; }

# server_missing KIND: says what is not installed; false when nothing is missing.
server_missing() {
  local program
  if [ "$1" = postgres ]; then
    [ -x "$pg_bin/postgres" ] || { echo "the package postgresql is not installed"; return; }
  else
    [ -x /usr/sbin/mariadbd ] || { echo "the package mariadb-server is not installed"; return; }
    [ -e /usr/lib/galera/libgalera_smm.so ] || { echo "the package galera-4 is not installed"; return; }
  fi
  for program in openssl ss setpriv; do
    command -v "$program" >/dev/null || { echo "the program $program is not installed"; return; }
  done
  false
}

# free_port: a port below those that the system hands out, on which nobody listens; none twice in one run.
taken_ports=" "
free_port() {
  local port
  while true; do
    port=$((20000 + RANDOM % 12000))
    [[ $taken_ports != *" $port "* ]] && [ -z "$(ss -Htln "sport = :$port")" ] && break
  done
  taken_ports+="$port "
  free_port=$port
}

# ---- the template: made once, copied for every fresh start ----

# An authority, a certificate of it for the servers' addresses, and a stranger's authority.
make_certificates() {
  local folder=$1 who
  mkdir -p "$folder"
  for who in ca other-ca; do
    openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 3650 -subj "/CN=Kova test $who" \
      -keyout "$folder/$who.key" -out "$folder/$who.pem"
  done
  openssl req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj "/CN=localhost" \
    -keyout "$folder/server.key" -out "$folder/server.csr"
  openssl x509 -req -in "$folder/server.csr" -CA "$folder/ca.pem" -CAkey "$folder/ca.key" -CAcreateserial -days 3650 \
    -extfile <(echo "subjectAltName=DNS:localhost,IP:127.0.0.1$(printf ',IP:10.77.0.%s' 11 12 13 21)") \
    -out "$folder/server.pem"
  rm -f "$folder"/*.csr "$folder"/*.srl "$folder/ca.key" "$folder/other-ca.key"
}

make_passwords() {
  local who
  for who in admin owner desk sst; do
    echo "${who}_password=$(openssl rand -hex 12)"
  done
}

make_postgres_template() {
  "$pg_bin/initdb" -D "$1/data" -U kova_admin -E UTF8 --locale=C -A scram-sha-256 --pwfile=<(echo "$admin_password") --no-sync
  printf '%s\n' "create role kova_owner login createdb password '$owner_password'" \
    "create role kova_desk login password '$desk_password'" |
    "$pg_bin/postgres" --single -D "$1/data" -c fsync=off postgres
}

# A cluster's first node, once started and stopped: its copies join without the whole of the data being sent.
template_decided() { grep -qs 'ready for connections' "$1/server.log" || ! kill -0 "$2" 2>/dev/null; }
make_galera_template() {
  mkdir "$1/data"
  mariadb-install-db --no-defaults --datadir="$1/data" --auth-root-authentication-method=normal --skip-test-db \
    --skip-name-resolve --innodb-log-file-size=32M
  local sst="kova_sst@localhost"
  cat >"$1/accounts.sql" <<END
drop user if exists ''@localhost, root@localhost;
create user kova_admin@'%' identified by '$admin_password';
grant all on *.* to kova_admin@'%' with grant option;
create user kova_owner@'%' identified by '$owner_password';
grant all on \`kova%\`.* to kova_owner@'%' with grant option;
create user kova_desk@'%' identified by '$desk_password';
create user $sst identified by '$sst_password';
grant reload, process, lock tables, binlog monitor, replica monitor on *.* to $sst;
END
  galera_settings "$1" galera 1 127.0.0.1 0 $template_ports "" >"$1/my.cnf"
  mariadbd --defaults-file="$1/my.cnf" --wsrep-new-cluster --skip-networking --init-file="$1/accounts.sql" &
  local pid=$!
  wait_until "$server_patience" template_decided "$1" "$pid" || true
  kill "$pid"
  wait "$pid"
  rm "$1/accounts.sql" "$1/my.cnf"
}

# server_template KIND: makes it unless this script and these packages have made it already.
server_template() {
  local kind=$1 folder="$servers/template-$1" stamp
  stamp=$(cksum <"${BASH_SOURCE[0]}"; { "$pg_bin/postgres" --version || mariadbd --version; } 2>/dev/null)
  (
    flock 9
    [ "$(cat "$folder/stamp" 2>/dev/null)" != "$stamp" ] || exit 0
    rm -rf "$folder"
    mkdir -p "$folder"
    if [ ! -e "$servers/tls" ]; then
      make_certificates "$servers/tls.new" >"$servers/tls.log" 2>&1 || { cat "$servers/tls.log" >&2; exit 1; }
      mv "$servers/tls.new" "$servers/tls"
    fi
    cp -a "$servers/tls" "$folder/tls"
    make_passwords >"$folder/passwords"
    source "$folder/passwords"
    [ "$(id -u)" -ne 0 ] || chown -R "${as[1]#*=}:${as[2]#*=}" "$folder"
    local template_ports=
    for _ in 1 2 3; do
      free_port
      template_ports+=" $free_port"
    done
    # In a shell of its own, which has the user's rights and perhaps may not read this script.
    if ! "${as[@]}" bash -c "$(declare -f); set -eu; cd '$folder'; source passwords; mkdir tmp; export TMPDIR='$folder/tmp'
        pg_bin='$pg_bin' template_ports='$template_ports' server_patience=$server_patience; make_${kind}_template '$folder'" \
      >"$folder/make.log" 2>&1 </dev/null 9>&-; then
      tail -n 20 "$folder/make.log" "$folder/server.log" >&2
      say "$kind: the first data could not be laid out"
      exit 1
    fi
    rm -f "$folder/server.log"
    echo "$stamp" >"$folder/stamp"
  ) 9>"$servers/lock"
}

# ---- settings, and why: docs/servers.md ----

# postgres_settings FOLDER ADDRESS PORT
postgres_settings() {
  cat <<END
data_directory = '$1/data'
hba_file = '$1/pg_hba.conf'
ident_file = '$1/pg_ident.conf'
listen_addresses = '$2'
port = $3
unix_socket_directories = ''
ssl = on
ssl_cert_file = '$1/tls/server.pem'
ssl_key_file = '$1/tls/server.key'
password_encryption = scram-sha-256
max_connections = 250
shared_buffers = 64MB
max_wal_size = 256MB
# A move or a sale is on the disk before the desk is told so.
fsync = on
synchronous_commit = on
# A workstation that vanished gives back its locks within some 10 s; one that hangs in a transaction within a minute.
tcp_keepalives_idle = 4
tcp_keepalives_interval = 2
tcp_keepalives_count = 3
tcp_user_timeout = 10000
client_connection_check_interval = 2000
idle_in_transaction_session_timeout = 60000
END
}

# galera_settings FOLDER NAME N ADDRESS PORT GROUP_PORT IST_PORT SST_PORT MEMBERS
galera_settings() {
  cat <<END
[mariadbd]
datadir=$1/data
tmpdir=$1/tmp
socket=sock
log-error=$1/server.log
pid-file=pid
bind-address=$4
port=$5
skip-name-resolve
ssl-cert=$1/tls/server.pem
ssl-key=$1/tls/server.key
ssl-ca=$1/tls/ca.pem
character-set-server=utf8mb4
collation-server=utf8mb4_nopad_bin
max-connections=250
performance-schema=off
innodb-buffer-pool-size=64M
innodb-log-file-size=32M
key-buffer-size=1M
aria-pagecache-buffer-size=1M
table-open-cache=200
# Three nodes in one practice lose their power together: each has a transaction on its own disk before the desk is told so.
innodb-flush-log-at-trx-commit=1
innodb-doublewrite=1
# Galera replicates rows and needs this way of numbering.
binlog-format=row
default-storage-engine=InnoDB
innodb-autoinc-lock-mode=2
# A workstation that moved to another node reads what it wrote.
wsrep-sync-wait=7
# A workstation that vanished gives back its locks within some 10 s; one that hangs in a transaction within a minute.
tcp-keepalive-time=4
tcp-keepalive-interval=2
tcp-keepalive-probes=3
idle-transaction-timeout=60
wsrep-on=1
wsrep-provider=/usr/lib/galera/libgalera_smm.so
wsrep-cluster-name=$2
wsrep-cluster-address=gcomm://$9
wsrep-node-name=node$3
wsrep-node-address=$4:$6
wsrep-sst-method=mariabackup
wsrep-sst-auth=kova_sst:$sst_password
wsrep-sst-receive-address=$4:$8
wsrep-slave-threads=2
# A node that falls silent is given up after 3 s; the others answer again within 5.
wsrep-provider-options="gmcast.listen_addr=tcp://$4:$6; ist.recv_addr=$4:$7; ist.recv_bind=$4:$7; gcache.size=32M; \
evs.keepalive_period=PT0.5S; evs.inactive_check_period=PT0.5S; evs.suspect_timeout=PT3S; evs.inactive_timeout=PT5S; \
evs.install_timeout=PT5S; pc.recovery=false"
END
}

# ---- a server by its name ----

# server_load NAME: its folder, kind, nodes with addresses, ports and network namespaces.
server_load() {
  name=$1
  kind=$(server_kind "$name")
  server_user "$kind"
  servers_folder
  folder="$servers/$name"
  [ "$kind" = galera ] && nodes="1 2 3" || nodes=1
  [ ! -e "$folder/nodes" ] || source "$folder/nodes"
}

# The process of node N, or nothing. A server's children briefly look like it: the first is it.
node_pid() {
  local file pid=
  for file in $(grep -lzxF -e "$folder/node$1/my.cnf" -e "--defaults-file=$folder/node$1/my.cnf" \
    -e "config_file=$folder/node$1/postgresql.conf" /proc/[0-9]*/cmdline 2>/dev/null | sort -V); do
    pid=${file#/proc/} pid=${pid%/cmdline}
    case $(cat "/proc/$pid/comm" 2>/dev/null) in postgres | mariadbd) echo "$pid"; return ;; esac
  done
  false
}

node_gone() { ! node_pid "$1" >/dev/null; }

# node_query N SQL: the answer's first column, asked as the administrator.
node_query() {
  local in=() text
  [ -z "${node_space[$1]:-}" ] || in=(nsenter "--net=/run/netns/${node_space[$1]}")
  if [ "$kind" = postgres ]; then
    PGPASSWORD=$admin_password PGCONNECT_TIMEOUT=3 "${in[@]}" "$pg_bin/psql" -qAtX -h "${node_address[$1]}" -p "${node_port[$1]}" \
      -U kova_admin -d postgres -c "$2" 2>/dev/null
  else
    MYSQL_PWD=$admin_password "${in[@]}" mariadb --no-defaults -sN --connect-timeout=3 -h "${node_address[$1]}" -P "${node_port[$1]}" \
      -u kova_admin -e "$2" 2>/dev/null
  fi
}

# galera_state N NAME: one of the cluster's status variables, as node N sees it.
galera_state() { node_query "$1" "select variable_value from information_schema.global_status where variable_name='wsrep_$2'"; }

# Whether node N answers; a cluster's, when it may be written to. A server that has ended meanwhile is an answer as well.
node_ready() {
  if [ "$kind" = postgres ]; then
    [ "$(node_query "$1" 'select 1')" = 1 ]
  else
    [ "$(galera_state "$1" ready)" = ON ]
  fi
}
node_decided() { node_ready "$1" || { [ "$2" != "$(node_pid "$1")" ] && sleep 0.2 && node_gone "$1"; }; }

# node_launch N ARGUMENT...: starts the process of node N.
node_launch() {
  local n=$1 home="$folder/node$1" program in=()
  shift
  [ -z "${node_space[$n]:-}" ] || in=(nsenter "--net=/run/netns/${node_space[$n]}")
  if [ "$kind" = postgres ]; then
    program=("$pg_bin/postgres" -c "config_file=$home/postgresql.conf")
  else
    program=(mariadbd "--defaults-file=$home/my.cnf")
  fi
  (cd "$home" && exec setsid "${in[@]}" "${as[@]}" env "TMPDIR=$home/tmp" "${program[@]}" "$@" </dev/null >>"$home/server.log" 2>&1 8>&- 9>&-) &
  disown $!
}

node_comes() { wait_until "$2" node_decided "$1" "$(node_pid "$1")" && node_ready "$1"; }

# node_wait N: until it answers; its log's end when it does not.
node_wait() {
  if ! node_comes "$1" "$server_patience"; then
    say "$name: node $1 does not start; the end of $folder/node$1/server.log:"
    tail -n 15 "$folder/node$1/server.log" >&2
    return 1
  fi
}

# galera_recover N...: asks those that did not end properly how far their data go, all at once.
galera_recover() {
  local n home pids=()
  for n in "$@"; do
    home="$folder/node$n"
    rm -f "$home/recover.log"
    grep -qsE '^seqno: *[0-9]' "$home/data/grastate.dat" && continue
    (cd "$home" && exec timeout "$server_patience" "${as[@]}" env "TMPDIR=$home/tmp" mariadbd "--defaults-file=$home/my.cnf" --wsrep-recover \
      --skip-networking "--log-error=$home/recover.log" >/dev/null 2>&1 8>&- 9>&-) &
    pids+=($!)
  done
  [ ${#pids[@]} -eq 0 ] || wait "${pids[@]}" || true
}

# The position of node N: UUID:number where it was asked, else nothing; and the number alone, in `position`.
galera_position() {
  local home="$folder/node$1"
  recovered=$(sed -n 's/.*Recovered position: *//p' "$home/recover.log" 2>/dev/null | tail -1)
  position=${recovered##*:}
  position=${position:-$(sed -n 's/^seqno: *//p' "$home/data/grastate.dat" 2>/dev/null)}
  position=${position:-0}
}

# node_rejoin N ARGUMENT...: starts a node on the data that it has.
node_rejoin() {
  if [ "$kind" = galera ]; then
    galera_position "$1"
    [ -z "$recovered" ] || set -- "$@" "--wsrep-start-position=$recovered"
  fi
  node_launch "$@"
}

# node_lay_out N: its folder with fresh data where there are none, and its settings.
node_lay_out() {
  local n=$1 home="$folder/node$1" members= other
  if [ ! -e "$home/data" ]; then
    mkdir -p "$home"
    cp -a --reflink=auto "$servers/template-$kind/data" "$home/data.new"
    [ "$n" = 1 ] || [ "$kind" = postgres ] || sed -i 's/^safe_to_bootstrap:.*/safe_to_bootstrap: 0/' "$home/data.new/grastate.dat"
    cp -a "$servers/tls" "$home/tls"
    chmod 600 "$home/tls/server.key"
    mv "$home/data.new" "$home/data"
  fi
  if [ "$kind" = postgres ]; then
    postgres_settings "$home" "${node_address[$n]}" "${node_port[$n]}" >"$home/postgresql.conf"
    printf '%s\n' "host all all 127.0.0.0/8 scram-sha-256" "host all all 10.77.0.0/24 scram-sha-256" >"$home/pg_hba.conf"
    : >"$home/pg_ident.conf"
  else
    for other in $nodes; do
      members+=${members:+,}${node_address[$other]}:${node_group_port[$other]}
    done
    galera_settings "$home" "$name" "$n" "${node_address[$n]}" "${node_port[$n]}" "${node_group_port[$n]}" \
      "${node_ist_port[$n]}" "${node_sst_port[$n]}" "$members" >"$home/my.cnf"
    chmod 600 "$home/my.cnf"
  fi
  mkdir -p "$home/tmp"  # of its own: the environment's may be closed to the server's user
  : >>"$home/server.log"
  [ "$(id -u)" -ne 0 ] || chown -R "${as[1]#*=}:${as[2]#*=}" "$home"
}

# Addresses and ports. On loopback those of the last time, unless somebody listens there by now; a server called net-... has a
# machine of its own, see cluster_net.sh.
server_addresses() {
  local n port
  if [[ $name = net-* ]]; then
    for n in $nodes; do
      node_port[n]=5432 node_address[n]=$(net_address "$kind" "$n") node_space[n]=$(net_space "$kind" "$n")
      [ "$kind" = postgres ] || node_port[n]=3306 node_group_port[n]=4567 node_ist_port[n]=4568 node_sst_port[n]=4444
    done
    return
  fi
  for n in $nodes; do
    for port in "${node_port[$n]:-0}" "${node_group_port[$n]:-1}" "${node_ist_port[$n]:-1}" "${node_sst_port[$n]:-1}"; do
      [ "$port" -ne 0 ] && [ -z "$(ss -Htln "sport = :$port")" ] || node_port=()
    done
  done
  [ ${#node_port[@]} -eq 0 ] || return 0
  for n in $nodes; do
    node_address[n]=127.0.0.1
    free_port && node_port[n]=$free_port
    [ "$kind" = galera ] || continue
    free_port && node_group_port[n]=$free_port
    free_port && node_ist_port[n]=$free_port
    free_port && node_sst_port[n]=$free_port
  done
}

# A machine's name and its address in the network of cluster_net.sh; the name is this checkout's own.
net_tag=kova-$(cksum <<<"$servers" | cut -d' ' -f1)
net_space() { echo "$net_tag-$1$2"; }
net_address() { [ "$1" = galera ] && echo "10.77.0.1$2" || echo 10.77.0.21; }

server_facts() {
  local hosts= pids= n
  for n in $nodes; do
    hosts+=${hosts:+,}${node_address[$n]}:${node_port[$n]}
    pids+=${pids:+ }$(node_pid "$n" || true)
  done
  local file="$server_files/$name.env"
  (umask 077; cat >"$file") <<END
KOVA_SERVER_KIND=$([ "$kind" = galera ] && echo MariaDB || echo PostgreSQL)
KOVA_SERVER_NAME=$name
KOVA_SERVER_HOSTS=$hosts
KOVA_SERVER_OWNER=kova_owner
KOVA_SERVER_OWNER_PASSWORD=$owner_password
KOVA_SERVER_DESK=kova_desk
KOVA_SERVER_DESK_PASSWORD=$desk_password
KOVA_SERVER_ADMIN=kova_admin
KOVA_SERVER_ADMIN_PASSWORD=$admin_password
KOVA_SERVER_CA=$servers/tls/ca.pem
KOVA_SERVER_OTHER_CA=$servers/tls/other-ca.pem
KOVA_SERVER_FOLDER=$folder
KOVA_SERVER_PIDS="$pids"
END
}

# server_start NAME [fresh]: quiet when well. Ends one of this name that an earlier run left behind, and takes up its records
# unless it is to be fresh.
server_start() {
  local n first best=-1 fresh=${2:-}
  if server_missing "$(server_kind "$1")" >&2; then return 1; fi
  server_load "$1"
  server_stop "$1"
  [ -z "$fresh" ] || rm -rf "$folder"
  server_template "$kind" || return 1
  mkdir -p "$folder"
  [ -e "$folder/passwords" ] || cp -p "$servers/template-$kind/passwords" "$folder/"
  source "$folder/passwords"
  server_addresses
  declare -p node_address node_port node_group_port node_ist_port node_sst_port node_space 2>/dev/null |
    sed 's/^declare -a/declare -ga/' >"$folder/nodes"
  for n in $nodes; do
    node_lay_out "$n"
  done
  if [ "$kind" = postgres ]; then
    node_launch 1
    node_wait 1 || return 1
  else
    # The node that knows most begins the cluster; the others join it.
    galera_recover $nodes
    for n in $nodes; do
      galera_position "$n"
      [ "$position" -le "$best" ] || { best=$position first=$n; }
    done
    sed -i 's/^safe_to_bootstrap:.*/safe_to_bootstrap: 1/' "$folder/node$first/data/grastate.dat"
    node_rejoin "$first" --wsrep-new-cluster
    node_wait "$first" || return 1
    for n in $nodes; do
      [ "$n" = "$first" ] || node_rejoin "$n"
    done
    for n in $nodes; do
      # On a busy machine a node now and then gives up in the middle of joining; then it is started once more.
      if ! node_comes "$n" $((server_patience / 2)); then
        node_signal "$n" KILL
        wait_until 10 node_gone "$n"
        galera_recover "$n"
        node_rejoin "$n"
        node_wait "$n" || return 1
      fi
    done
  fi
  server_facts
}

# node_signal N SIGNAL; a PostgreSQL server stands still only with its children.
node_signal() {
  local pid children=
  pid=$(node_pid "$1") || return 0
  case $2 in STOP | CONT) children=$(cat "/proc/$pid/task/$pid/children" 2>/dev/null) ;; esac
  kill "-$2" "$pid" $children 2>/dev/null || true
}

# server_stop NAME: within seconds; one that does not end when asked is ended.
server_stop() {
  local n signal
  server_load "$1"
  for signal in $([ "$kind" = postgres ] && echo INT QUIT KILL || echo TERM KILL); do
    for n in $nodes; do
      node_signal "$n" CONT
      node_signal "$n" "$signal"
    done
    for n in $nodes; do
      wait_until 10 node_gone "$n" || true
    done
  done
}

server_status() {
  local n pid state
  server_load "$1"
  [ -e "$folder/passwords" ] || { echo "$name: never started"; return 1; }
  source "$folder/passwords"
  for n in $nodes; do
    if ! pid=$(node_pid "$n"); then
      state="not running"
    elif ! node_ready "$n"; then
      state="process $pid, does not answer"
    else
      state="process $pid, answers"
      [ "$kind" = postgres ] || state+=", in a cluster of $(galera_state "$n" cluster_size)"
    fi
    echo "$name: node $n, ${node_address[$n]}:${node_port[$n]}: $state"
  done
}

# server_command NAME COMMAND [N]: what scripts/postgres.sh and scripts/galera.sh do.
server_command() {
  local command=${2:-} n=${3:-1}
  case $command in
    start) server_start "$1" "${3:-}" && server_status "$1" && echo "What a program needs to reach it: $server_files/$1.env" ;;
    installed) ! server_missing "$(server_kind "$1")" >&2 ;;
    stop) server_stop "$1" ;;
    status) server_status "$1" ;;
    kill | freeze | thaw | restart)
      server_load "$1"
      source "$folder/passwords" || return 1
      case $command in
        kill) node_signal "$n" KILL; wait_until 10 node_gone "$n" ;;
        # A frozen server's machine still takes connections; nobody answers.
        freeze) node_signal "$n" STOP ;;
        thaw) node_signal "$n" CONT ;;
        restart)
          node_signal "$n" CONT
          node_signal "$n" "$([ "$kind" = postgres ] && echo INT || echo TERM)"
          wait_until 15 node_gone "$n" || { node_signal "$n" KILL; wait_until 10 node_gone "$n"; }
          [ "$kind" = postgres ] || galera_recover "$n"
          node_rejoin "$n" && node_wait "$n" && server_facts
          ;;
      esac
      ;;
    *) say "start [fresh] | installed | stop | status | kill [N] | restart [N] | freeze [N] | thaw [N]"; return 2 ;;
  esac
}
