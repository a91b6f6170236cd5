#!/usr/bin/env bash
# Installs the Debian 12 packages the build and the tests need, only those
# that are missing. Needs root or sudo.
set -euo pipefail

packages=(cmake make g++ pkg-config qt6-base-dev qt6-serialport-dev qt6-httpserver-dev qt6-websockets-dev qt6-translations-l10n libgl-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq "${missing[@]}" >/dev/null
