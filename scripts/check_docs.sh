#!/bin/bash
# check_docs.sh [KOVACALL]: docs/tables.md must be what `kovacall tables` prints (of the native build, or of the
# program given), and every relative link in the documents must lead to a file. Quiet when all is well.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
kovacall=${1:-build/native/bin/kovacall}
bad=0

if [ ! -x "$kovacall" ]; then
  echo "$kovacall is missing: run scripts/build.sh native first"
  exit 1
fi
if ! difference=$("$kovacall" tables | diff docs/tables.md - 2>&1); then
  echo "docs/tables.md is not what the declarations say; renew it with: $kovacall tables >docs/tables.md"
  head -20 <<<"$difference"
  bad=1
fi

for document in README.md README.ja.md docs/*.md; do
  while read -r target; do
    [ -e "$(dirname "$document")/$target" ] || { echo "$document: there is no $target to link to"; bad=1; }
  done < <(grep -oE '\]\([^)#: ]+[)#]' "$document" | sed 's/^](//; s/[)#]$//')
done
exit "$bad"
