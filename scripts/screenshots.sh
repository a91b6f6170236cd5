#!/usr/bin/env bash
# Renders every tab of the window, off screen, into docs/screenshots.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kelmdrev_screenshots >/dev/null
QT_QPA_PLATFORM=offscreen build/default/tools/kelmdrev_screenshots docs/screenshots
