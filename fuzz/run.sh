#!/bin/bash
# run.sh TARGET SECONDS: builds the fuzz target TARGET (fuzz/TARGET_fuzz.cpp) with clang and runs it that long.
# What it finds is left in build/fuzz/TARGET/; add a finding that was mended to fuzz/corpus/TARGET/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ $# -ne 2 ] || [ ! -e "fuzz/$1_fuzz.cpp" ]; then
  echo "usage: fuzz/run.sh TARGET SECONDS; targets: $(cd fuzz && ls ./*_fuzz.cpp | sed 's/^..//; s/_fuzz.cpp//' | tr '\n' ' ')" >&2
  exit 2
fi
command -v clang++ >/dev/null || { echo "clang++ is missing: apt-get install clang" >&2; exit 1; }
target=$1
folder=build/fuzz/$target
mkdir -p "$folder/found"
# The rooms that a target includes from, without tests and without the other system's folders. clang knows no execution
# character set but UTF-8, so nothing that a target checks may depend on a Japanese literal.
sources=()
for room in $(sed -n "s/^kova_fuzz($target \(.*\))/\1/p" fuzz/CMakeLists.txt); do
  case $room in
    kova_os) sources+=(platform/os/profile_*.cpp platform/text932/cp932.cpp) ;;
    kova_recordstore) sources+=(platform/recordstore/record_text.cpp platform/recordstore/schema.cpp platform/text932/cp932.cpp) ;;
    kova_mail)
      sources+=(src/mail/{archive_text,template_store,template_tree,placeholders}.cpp src/foundation/number_text.cpp
        platform/text932/cp932.cpp) ;;
    kova_cashless)
      sources+=(src/cashless/{exchange,terminal_payment,exchange_files,payment_names,result_codes,payment_journal,journal_line}.cpp
        src/foundation/number_text.cpp platform/text932/cp932.cpp) ;;
    kova_printing) sources+=(src/printing/print_data{,_reader}.cpp platform/text932/cp932.cpp) ;;
    kova_postal)
      sources+=(src/postal/*.cpp src/foundation/{kana,text_tools,number_text,string_table}.cpp platform/text932/cp932.cpp) ;;
    kova_*) sources+=($(find "platform/${room#kova_}" "src/${room#kova_}" -maxdepth 1 -name '*.cpp' 2>/dev/null)) ;;
  esac
done
mapfile -t sources < <(printf '%s\n' "${sources[@]}" | grep -v '_test.cpp$' | sort -u)
clang++ -std=c++20 -O1 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all -I. -Isrc \
  "fuzz/${target}_fuzz.cpp" "${sources[@]}" platform/os/files.cpp platform/os/paths.cpp -o "$folder/fuzz"
"$folder/fuzz" -max_total_time="$2" -max_len=4096 -timeout=10 -artifact_prefix="$folder/" "$folder/found" "fuzz/corpus/$target"
