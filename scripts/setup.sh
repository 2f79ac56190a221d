#!/bin/bash
# Installs what the build needs and is missing: Debian packages and the pinned third-party sources.
# Quiet when there is nothing to do. Sourced by test.sh and run.sh; can be run alone.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# package:a file that it brings, so that a repeated run asks nobody
needed=(
  g++:/usr/bin/g++ cmake:/usr/bin/cmake ninja-build:/usr/bin/ninja git:/usr/bin/git
  nodejs:/usr/bin/node npm:/usr/bin/npm ca-certificates:/usr/sbin/update-ca-certificates
  googletest:/usr/src/googletest/googletest/src/gtest-all.cc
  g++-mingw-w64-x86-64-posix:/usr/bin/x86_64-w64-mingw32-g++-posix
  wine64:/usr/lib/wine/wine64 xvfb:/usr/bin/Xvfb
  imagemagick:/usr/bin/convert chromium:/usr/bin/chromium
  unixodbc-dev:/usr/include/sql.h locales:/usr/share/i18n/locales/ja_JP
  unixodbc-dev:/usr/include/sql.h
  fonts-wine:/usr/share/wine/fonts/marlett.ttf fonts-vlgothic:/usr/share/fonts/truetype/vlgothic/VL-PGothic-Regular.ttf
)
# For the tests on database servers only: where they cannot be had, those tests are skipped.
odbc=/usr/lib/x86_64-linux-gnu/odbc
servers=(
  odbc-postgresql:$odbc/psqlodbcw.so odbc-mariadb:$odbc/libmaodbc.so postgresql:/usr/lib/postgresql
  mariadb-server:/usr/sbin/mariadbd galera-4:/usr/lib/galera/libgalera_smm.so mariadb-backup:/usr/bin/mariadb-backup
  socat:/usr/bin/socat iproute2:/usr/bin/ss openssl:/usr/bin/openssl
)

# install_packages PACKAGE:FILE...: those whose file is not there. Its last lines and false when it cannot.
install_packages() {
  local entry missing=() sudo=() log code=0 policy=/usr/sbin/policy-rc.d
  for entry in "$@"; do
    [ -e "${entry#*:}" ] || missing+=("${entry%%:*}")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing Debian packages: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Missing: ${missing[*]}. Install them, or run this as root." >&2; return 1; }
    sudo=(sudo)
  fi
  # Servers run from private folders; the system's own, which Debian would start, stay off.
  [ -e "$policy" ] && policy= || printf '#!/bin/sh\nexit 101\n' | "${sudo[@]}" install -m 755 /dev/stdin "$policy"
  log=$(mktemp)
  { "${sudo[@]}" apt-get update -qq &&
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 || code=1
  [ -z "$policy" ] || "${sudo[@]}" rm -f "$policy"
  if [ $code -ne 0 ]; then
    tail -n 20 "$log" >&2
    echo "Could not install: ${missing[*]}" >&2
  elif [ -d /run/systemd/system ] && [[ " ${missing[*]} " = *" postgresql "* || " ${missing[*]} " = *" mariadb-server "* ]]; then
    "${sudo[@]}" systemctl disable --quiet --now postgresql mariadb || true
  fi
  rm -f "$log"
  return $code
}

install_packages "${needed[@]}"
install_packages "${servers[@]}" || echo "Going on without the tests on database servers" >&2

if [ ! -e node_modules/.package-lock.json ] || [ package-lock.json -nt node_modules/.package-lock.json ]; then
  echo "Fetching the pinned third-party sources"
  npm ci --ignore-scripts --loglevel=error >/dev/null
  touch node_modules/.package-lock.json
fi

# Wine creates files with Japanese names only where the locale that it runs in really exists.
if [ ! -e build/locale/ja_JP.UTF-8 ]; then
  mkdir -p build/locale
  localedef -i ja_JP -f UTF-8 build/locale/ja_JP.UTF-8
fi
