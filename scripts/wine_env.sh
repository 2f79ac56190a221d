# Sourced: Wine in a prefix of this project's own. `wine PROGRAM ...` runs a Windows program in it.
# The server is kept for 60 s between programs; wine_stop ends it.
kova_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX="${KOVA_WINEPREFIX:-$kova_root/build/wine}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="mscoree,mshtml="
# Wine takes the system's code page from here: ja_JP.UTF-8 gives 932, C.UTF-8 gives 1252.
export LOCPATH="$kova_root/build/locale"  # made by scripts/setup.sh
wine_locale="${KOVA_WINE_LOCALE:-ja_JP.UTF-8}"
wine_bin=/usr/lib/wine/wine64
wine_server=/usr/lib/wine/wineserver64
[ -x "$wine_server" ] || wine_server=/usr/lib/wine/wineserver

wine() { timeout 600 env LC_ALL="$wine_locale" "$wine_bin" "$@"; }

wine_start() {
  mkdir -p "$WINEPREFIX"
  if [ ! -e "$WINEPREFIX/.ready" ]; then
    echo "Making a Wine prefix (some 20 s)"
    DISPLAY= wine wineboot -i >"$WINEPREFIX/../wineboot.log" 2>&1 || { cat "$WINEPREFIX/../wineboot.log" >&2; return 1; }
    "$wine_server" -w
    touch "$WINEPREFIX/.ready"
  fi
  # It says no when a server is running already, which is as good.
  "$wine_server" -p60 </dev/null >/dev/null 2>&1 || true
}

wine_stop() { "$wine_server" -k 2>/dev/null || true; }
