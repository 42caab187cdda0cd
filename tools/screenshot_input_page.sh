#!/usr/bin/env bash
# Takes a picture of the window as it starts (the "Input Data" page) on a virtual display and
# writes it to build/input-page-start.png, or to the file given. (docs/input-page.png shows a
# filled page and is drawn by rainfold_screenshot.)
#     tools/screenshot_input_page.sh [PROGRAM] [OUTPUT.png]
# Needs xvfb-run, xwininfo (x11-utils) and import (imagemagick).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
program="${1:-$root/build/src/app/rainfold}"
output="${2:-$root/build/input-page-start.png}"

if [ -z "${RAINFOLD_ON_XVFB:-}" ]; then
    RAINFOLD_ON_XVFB=1 exec xvfb-run -a -s "-screen 0 1280x1024x24 -noreset" "$0" "$program" "$output"
fi

"$program" &
pid=$!
trap 'kill "$pid" 2>/dev/null || true' EXIT
for _ in $(seq 1 300); do
    if xwininfo -name "Potential Runoff Analysis" 2>/dev/null | grep -q IsViewable; then
        break
    fi
    sleep 0.05
done
sleep 1 # let the first paint finish
id="$(xwininfo -name "Potential Runoff Analysis" | awk '/Window id:/ {print $4}')"
mkdir -p "$(dirname "$output")"
import -window "$id" "$output"
echo "wrote $output"
