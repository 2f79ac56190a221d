#!/bin/bash
# Holds every #include of the project against scripts/include_rules.txt and names the rule that a slip breaks.
# Also: only win32/ folders, the MFC stand-in, hosts and tests know windows.h, and what ODBC's headers need of it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
git ls-files -co --exclude-standard '*.h' '*.cpp' | awk '
  function project(header) { return header ~ /\// && header !~ /^(gtest|sys|bits)\// || header ~ /^(sqlite3|afx[a-z]*|atltime)\.h$/ }
  BEGIN {
    while ((getline line < "scripts/include_rules.txt") > 0) {
      if (line ~ /^#/ || line !~ /:/) continue
      colon = index(line, ":")
      rules[substr(line, 1, colon - 1)] = substr(line, colon + 1)
    }
  }
  {
    file = $0; folder = file; rule = ""
    while (rule == "" && folder ~ /\//) { sub(/\/[^\/]*$/, "", folder); if (folder in rules) rule = folder; }
    if (rule == "") { print file ": no rule in scripts/include_rules.txt covers this folder"; bad = 1; next }
    n = 0
    while ((getline line < file) > 0) {
      ++n
      if (line !~ /^#include [<"]/) continue
      header = line; sub(/^#include [<"]/, "", header); sub(/[>"].*/, "", header)
      if (header == "windows.h" && file !~ /\/win32\/|^platform\/mfc\/|^hosts\/|^src\/window\/|\/odbc_api\.h$|_test\.cpp$|^tests\//) {
        print file ":" n ": windows.h is known to win32/ folders only"; bad = 1
      }
      if (!project(header)) continue
      if (header ~ /^afx|^atltime/) header = "platform/mfc/" header
      allowed = 0
      count = split(rules[rule], names, " ")
      for (i = 1; i <= count; ++i) if (header == names[i] || index(header, names[i] "/") == 1) allowed = 1
      if (!allowed) { print file ":" n ": includes " header ", but \"" rule "\" may know only:" rules[rule]; bad = 1 }
    }
    close(file)
  }
  END { exit bad }'
