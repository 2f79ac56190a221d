#!/bin/bash
# Installs what is missing, builds the Windows programs, lays out a sample practice under out/practice, takes today's
# first ten fees to sales there and sends those patients the mail that they have come. Prints the sales as the database
# then holds them, and the first mail. No mail leaves the machine: each becomes a file in out/outbox.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
[ -e build/windows/bin/day.exe ] || echo "Building the library and its programs (some minutes the first time)"
KOVA_TARGETS="day sample_practice kovacall empty_database mail_templates companions" scripts/build.sh windows

run() { scripts/wine_run.sh "build/windows/bin/$1.exe" "${@:2}"; }
today=$(date +%Y%m%d)
rm -rf out/practice out/outbox
mkdir -p out
echo "Laying out the sample practice"
run sample_practice out/practice --seed 1 --today "$today" >out/practice.log
echo "Today's first ten visited reservations with a fee, as sales ($(cat out/practice.log)):"
echo
export KOVA_OUTBOX="Z:${PWD//\//\\}\\out\\outbox"
run day --app out/practice/app.ini --date "$today" --count 10 >out/day.txt
cat out/day.txt
echo
mails=(out/outbox/*.eml)
[ -e "${mails[0]}" ] || mails=()
echo "${#mails[@]} mails in out/outbox"
if [ ${#mails[@]} -gt 0 ]; then
  echo "The first, ${mails[0]}:"
  echo
  run day --show-mail "${mails[0]}"
  echo
fi
cat <<END
"*" marks the reduced rate. The table is in out/day.txt, the practice in out/practice: its settings
(GLOBALSETTING.ini, code page 932), its mail templates and its records (kova.db, for any SQLite tool). Any mail
program opens the mails. To look further:
  scripts/wine_run.sh build/windows/bin/kovacall.exe list
  scripts/wine_run.sh build/windows/bin/kovacall.exe --app out/practice/app.ini dump sale --key 2 --from $today
END
