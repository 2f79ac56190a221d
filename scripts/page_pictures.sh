#!/bin/bash
# page_pictures.sh FOLDER: turns every page FOLDER/*.html into a picture of the same name (.png) with a headless
# browser, and says of each page whether a text in it is cut. Exit code 1 when one is, or a picture could not be made.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
folder=$1
browser=$(command -v chromium || command -v chromium-browser || true)
if [ -z "$browser" ]; then
  echo "No pictures of the pages in $folder: chromium is not installed" >&2
  exit 1
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Looks for texts that their box cuts, and says how tall the page is.
cat >"$work/look.js" <<'JS'
<script>
const cut = [...document.querySelectorAll("body, body *")].filter(e => {
  const box = e.getBoundingClientRect(), page = document.body.getBoundingClientRect();
  return e.scrollWidth > e.clientWidth + 1 && e.clientWidth > 0 || box.right > page.right + 1;
});
document.title = "LOOKED cut=" + cut.length + " height=" + Math.ceil(document.documentElement.scrollHeight) + " " +
  cut.map(e => e.textContent.trim().slice(0, 30)).join("|");
</script>
JS
look() { timeout 60 "$browser" --headless --no-sandbox --disable-gpu --user-data-dir="$work/profile" \
  --hide-scrollbars "$@" 2>"$work/log"; }
failed=0
for page in "$folder"/*.html; do
  [ -e "$page" ] || continue
  cat "$page" "$work/look.js" >"$work/page.html"
  said=$(look --window-size=760,1000 --dump-dom "file://$work/page.html" | grep -o 'LOOKED cut=[^<]*' | head -1)
  if [[ $said != "LOOKED cut=0 "* ]]; then
    echo "$page: a text is cut: ${said:-the browser said nothing}"
    failed=1
  fi
  height=$(sed -n 's/.* height=\([0-9]*\).*/\1/p' <<<"$said")
  look --window-size=640,"${height:-1000}" --force-device-scale-factor=2 \
    --screenshot="$PWD/${page%.html}.png" "file://$(realpath "$page")" >/dev/null
  [ -s "${page%.html}.png" ] || { echo "$page: no picture"; tail -3 "$work/log"; failed=1; }
done
exit "$failed"
