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

# At most KOVA_WINE_PATIENCE seconds; 0 for any time.
wine_command=(timeout "${KOVA_WINE_PATIENCE:-600}" env LC_ALL="$wine_locale" "$wine_bin")
wine() { "${wine_command[@]}" "$@"; }

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

# Ends the server with everything in it. Wine's desktop keeps the display and the scale that it began with.
wine_restart() {
  wine_stop
  "$wine_server" -w
  wine_start
}

wine_setting() { wine reg add "$1" /v "$2" /t "$3" /d "$4" /f >/dev/null 2>&1 </dev/null; }

# A virtual display for windows: DISPLAY names it. Wine draws the frames itself, as no window manager is there.
display_start() {
  local number="$WINEPREFIX/display" waited=0
  mkdir -p "$WINEPREFIX"
  rm -f "$number"
  Xvfb -displayfd 3 -screen 0 2560x1600x24 -nolisten tcp 3>"$number" >/dev/null 2>&1 </dev/null &
  display_pid=$!
  until [ -s "$number" ]; do
    [ $((waited += 1)) -le 100 ] && kill -0 "$display_pid" 2>/dev/null || { echo "Xvfb does not start" >&2; return 1; }
    sleep 0.1
  done
  export DISPLAY=":$(cat "$number")"
  wine_restart
  if [ ! -e "$WINEPREFIX/.windows" ]; then
    wine_setting 'HKCU\Software\Wine\X11 Driver' Managed REG_SZ N
    wine_setting 'HKCU\Control Panel\Desktop' FontSmoothing REG_SZ 2
    wine_setting 'HKCU\Control Panel\Desktop' FontSmoothingType REG_DWORD 2
    touch "$WINEPREFIX/.windows"
  fi
}

display_stop() { [ -z "${display_pid:-}" ] || kill "$display_pid" 2>/dev/null || true; }

# display_scale DPI: the screen scale that programs started from now on see; 96 is 100 %.
display_scale() {
  wine_restart
  wine_setting 'HKCU\Control Panel\Desktop' LogPixels REG_DWORD "$1"
}
