#!/bin/bash
# Installs what is missing, builds the Windows programs and lays out a sample practice under out/practice. With a display it
# opens the example host, the reception, on it. Without one it plays a day on a virtual display: opens the visit flow board,
# moves patients through it, and leaves pictures, the mails that were sent and an account of what was written under out/.
# No mail leaves the machine: each becomes a file in out/outbox.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/setup.sh
[ -e build/windows/bin/reception.exe ] || echo "Building the library and its programs (some minutes the first time)"
KOVA_TARGETS="reception play_day day sample_practice kovacall empty_database mail_templates companions address_list patient_map" scripts/build.sh windows

run() { scripts/wine_run.sh "build/windows/bin/$1.exe" "${@:2}"; }
today=$(date +%Y%m%d)
rm -rf out/practice out/outbox out/receipts out/board-*.png
mkdir -p out
echo "Laying out the sample practice"
run sample_practice out/practice --seed 1 --today "$today" >out/practice.log
cat out/practice.log
# The windows get Japanese fonts from the locale; wine_run.sh takes another one for programs without windows.
export KOVA_WINE_LOCALE=ja_JP.UTF-8
export KOVA_OUTBOX="Z:${PWD//\//\\}\\out\\outbox"

# Stands in for the payment terminal: charges nobody, and says after some seconds that it was paid.
start_bridge() {
  KOVA_CASHLESS="Z:${PWD//\//\\}\\out\\practice\\Cashless" run Option/CashlessBridge /WORK:2000 &
}

if [ -n "${DISPLAY:-}" ]; then
  echo "Opening the reception (F2: the board, F3: patient query, F4: payment); mails go to out/outbox"
  export KOVA_WINE_PATIENCE=0  # as long as it takes
  start_bridge
  source scripts/wine_env.sh
  trap wine_stop EXIT
  run reception --app out/practice/app.ini
  exit
fi

echo "No display: playing a day on a virtual one"
export KOVA_PICTURES="Z:${PWD//\//\\}\\out"
source scripts/wine_env.sh
wine_start
display_start
trap 'wine_stop; display_stop' EXIT
start_bridge
run play_day --app out/practice/app.ini >out/day.txt
scripts/window_pictures.sh out
echo
cat out/day.txt
echo
mails=(out/outbox/*.eml)
[ -e "${mails[0]}" ] || mails=()
echo "${#mails[@]} mails in out/outbox, pictures of the board and the payment in out/board-*.png"
if [ ${#mails[@]} -gt 0 ]; then
  echo "The first mail, ${mails[0]}:"
  echo
  run day --show-mail "${mails[0]}"
  echo
fi
# The day ends with receipts: the library hands them over, the form printer makes pages of them.
run day --app out/practice/app.ini --receipts out/receipts/handover >out/receipts.txt
cp out/receipts/handover/*.tmp out/receipts/
run Option/FormPrinter out/receipts/handover out/receipts >/dev/null
rmdir out/receipts/handover
scripts/page_pictures.sh out/receipts || true
cat out/receipts.txt
receipts=(out/receipts/receipt-*.png)
echo
echo "Receipts and appointment slips, as print data (.tmp), pages (.html) and pictures (.png): out/receipts"
echo "The first receipt: ${receipts[0]}"
echo
cat <<END
The practice is in out/practice: its settings (GLOBALSETTING.ini, code page 932), its mail templates and its records
(kova.db, for any SQLite tool). To look further:
  scripts/wine_run.sh build/windows/bin/kovacall.exe list
  scripts/wine_run.sh build/windows/bin/kovacall.exe --app out/practice/app.ini board $today
END
