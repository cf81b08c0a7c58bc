#!/usr/bin/env bash
# Runs one Windows program under Wine in the build tree's own prefix.
# The prefix is created once and reused; Mono and Gecko are never offered.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
: "${VTR_BUILD_DIR:=$here/../build}"
export WINEPREFIX=${WINEPREFIX:-$(cd "$VTR_BUILD_DIR" && pwd)/wineprefix}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree=;mshtml=}
export WINEARCH=win64
export LANG=${VTR_LANG:-en_US.UTF-8}
export TZ=${VTR_TZ:-Europe/Berlin}
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine)
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  # Serialise the first start: two tests racing to create one prefix corrupt it.
  ( flock 9; [ -f "$WINEPREFIX/system.reg" ] || "$wine" wineboot -i >/dev/null 2>&1 || true ) 9>"$WINEPREFIX.lock"
fi
if [ "${1:-}" = "--wait-idle" ]; then
  server=/usr/lib/wine/wineserver64
  [ -x "$server" ] || server=$(command -v wineserver)
  exec "$server" -w
fi
exec "$wine" "$@"
