#!/usr/bin/env bash
# Set-up, build, and the whole test suite under Wine with one Xvfb display; ends with CTest's summary.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export VTR_BUILD_DIR=${VTR_BUILD_DIR:-$root/build}
bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh"
# Host-side reference data (independent engines the Wine tests compare against).
if [ -x "$root/scripts/make-reference-data.sh" ]; then
  bash "$root/scripts/make-reference-data.sh" "$VTR_BUILD_DIR/reference"
fi
cd "$VTR_BUILD_DIR"
# Create the Wine prefix once, outside the timed tests.
"$root/scripts/wine-run.sh" cmd /c exit 0 >/dev/null 2>&1 || true
# A wineserver left from that start has its desktop without a display, and every window the tests
# create would then fail; wait until it has gone so that the tests' wineserver starts under Xvfb.
"$root/scripts/wine-run.sh" --wait-idle
rm -rf test-results; mkdir -p test-results
status=0
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --output-on-failure -j"$(nproc)" "$@" || status=$?
# CTest counts one test per program; the programs' own counts say how many cases ran.
python3 "$root/scripts/count-results.py" test-results || status=1
exit $status
