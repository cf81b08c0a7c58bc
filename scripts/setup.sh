#!/usr/bin/env bash
# Installs what the build and the tests need on a Debian machine, as root. Quick when all is there.
set -euo pipefail
packages=(cmake make g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev wine64 xvfb xauth googletest
          python3 python3-dateutil clang-format)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq "${missing[@]}" >/dev/null
fi
