#!/bin/bash
# Holds the names that the Windows DLLs export against tests/exports.txt: hosts are linked against them, so a name that
# goes or comes is said aloud. `check_exports.sh --print` prints the list to check in. And `kovacall list` must name every
# operation of the two exported classes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

exports() {
  local dll
  for dll in KovaComDlg KovaDBCall; do
    x86_64-w64-mingw32-objdump -p "build/windows/bin/$dll.dll" |
      awk '/Ordinal\/Name Pointer/ { names = 1; next } /^$/ { names = 0 } names { print $NF }' |
      c++filt | sed "s/^/$dll.dll: /"
  done | LC_ALL=C sort -u
}

if [ "${1:-}" = --print ]; then
  exports
  exit
fi
if ! difference=$(diff tests/exports.txt <(exports)); then
  echo "the DLLs export other names than tests/exports.txt lists (< listed, > exported):"
  echo "$difference"
  echo "when that is meant: scripts/check_exports.sh --print >tests/exports.txt"
  exit 1
fi
listed=$(build/native/bin/kovacall list)
status=0
for operation in $(sed -nE 's/^KovaComDlg.dll: CKova(SubTools|ComDlg)::([A-Za-z0-9_]+)\(.*/\2/p' tests/exports.txt | sort -u); do
  if ! grep -qw "$operation" <<<"$listed"; then
    echo "kovacall list does not name $operation"
    status=1
  fi
done
exit $status
