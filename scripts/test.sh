#!/usr/bin/env bash
# Installs what is missing, builds everything and runs the whole test suite.
# PRESET=asan runs it under AddressSanitizer and UndefinedBehaviorSanitizer;
# CI=true builds with warnings as errors.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
preset="${PRESET:-$([ "${CI:-}" = true ] && echo ci || echo default)}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
