#!/usr/bin/env bash
# Writes reference data computed on the host by independent engines into the folder given as $1,
# for the Wine tests to compare against (they find it below $VTR_BUILD_DIR/reference).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
out=${1:?usage: make-reference-data.sh <output folder>}
mkdir -p "$out"
python3 "$here/make_schedule_reference.py" "$out/schedule_rrule.txt"
