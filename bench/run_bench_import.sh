#!/usr/bin/env bash
# Runs the CSV import benchmark and its Python csv.reader baseline over the same file, side by side.
#   bench/run_bench_import.sh [rows]      (default 100000; a file of four times the rows is made too)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${VTR_BUILD_DIR:-$here/../build}
rows=${1:-100000}
work=$(mktemp -d /tmp/bench_import.XXXXXX)
trap 'rm -rf "$work"' EXIT
file=$work/import.csv
winfile="Z:${file//\//\\}"
run() { xvfb-run -a "$here/../scripts/wine-run.sh" "$build/bin/bench_import.exe" "$@"; }
run --make "$winfile" "$rows"
run --make "$winfile.4x" "$((rows * 4))"
py=$(python3 "$here/bench_import_baseline.py" "$file")
echo "Python csv.reader: $py MB/s"
run --run "$winfile" "$py"
