#!/usr/bin/env bash
# Renders every tab of the window into docs/screenshots, as a shop PC shows
# it: under Xvfb at 1366x768 and 1024x768 (tab-N-1366.png, tab-N-1024.png).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev_screenshots >/dev/null
for size in 1366x768 1024x768; do
  Xvfb :99 -screen 0 "${size}x24" >/dev/null 2>&1 &
  xvfb=$!
  sleep 1
  DISPLAY=:99 QT_QPA_PLATFORM=xcb build/default/tools/kelmdrev_screenshots docs/screenshots "${size%x*}" || true
  kill "$xvfb"
  wait "$xvfb" 2>/dev/null || true
done
