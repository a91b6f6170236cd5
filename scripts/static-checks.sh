#!/usr/bin/env bash
# Static checks run by CI: cppcheck with the checks that find real faults in
# this code (warnings: undefined behaviour, wrong arguments, leaks; and
# performance and portability), not style opinions. Any finding fails.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v cppcheck >/dev/null; then
  sudo=""; [ "$(id -u)" -eq 0 ] || sudo="sudo"
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq cppcheck >/dev/null \
    || { DEBIAN_FRONTEND=noninteractive $sudo apt-get update -qq && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq cppcheck >/dev/null; }
fi
cppcheck --std=c++20 --enable=warning,performance,portability --inline-suppr --error-exitcode=1 --quiet \
  -I src -I . --suppress=missingIncludeSystem --suppress=unknownMacro -j2 src sim tools bench
echo "cppcheck: clean"
