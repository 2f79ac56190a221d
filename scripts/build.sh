#!/bin/bash
# build.sh PRESET...: configures and builds; says one line a preset, and everything when it fails. KOVA_TARGETS limits what is
# built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
for preset in "$@"; do
  mkdir -p "build/$preset"
  log="build/$preset/build.log"
  started=$SECONDS
  if [ ! -e "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/build.ninja" ]; then
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; echo "configuring $preset failed" >&2; exit 1; }
  fi
  cmake --build --preset "$preset" ${KOVA_TARGETS:+--target $KOVA_TARGETS} >"$log" 2>&1 || { grep -v '^\[' "$log" >&2; echo "building $preset failed" >&2; exit 1; }
  echo "built $preset ($((SECONDS - started)) s)"
done
[ -e build/native/compile_commands.json ] && ln -sf build/native/compile_commands.json compile_commands.json
true
