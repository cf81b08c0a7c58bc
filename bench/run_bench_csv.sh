#!/usr/bin/env bash
# Runs the CSV export benchmark and the same cells through Python's csv.writer side by side.
# Usage: bench/run_bench_csv.sh   (after scripts/build.sh --target bench_csv)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=${VTR_BUILD_DIR:-$root/build}/bin
cd "$bin"
out=$(xvfb-run -a "$root/scripts/wine-run.sh" bench_csv.exe bench_csv_cells.txt 2>/dev/null | tr -d '\r')
echo "$out"
py=$(python3 "$root/bench/bench_csv_python.py" "$bin/bench_csv_cells.txt" "$bin")
echo "$py"
ours=$(echo "$out" | sed -n 's/^ExportCSV 100k[^:]*: \([0-9.]*\) MB\/s.*/\1/p')
oursw=$(echo "$out" | sed -n 's/^ExportCSVW 100k[^:]*: \([0-9.]*\) MB\/s.*/\1/p')
floor=$(echo "$out" | sed -n 's/^Export floor[^:]*: \([0-9.]*\) MB\/s.*/\1/p')
floorw=$(echo "$out" | sed -n 's/^ExportW floor[^:]*: \([0-9.]*\) MB\/s.*/\1/p')
base=$(echo "$py" | sed -n 's/^cp1252: \([0-9.]*\) MB\/s.*/\1/p')
basew=$(echo "$py" | sed -n 's/^utf16: \([0-9.]*\) MB\/s.*/\1/p')
if [ -z "$ours" ] || [ -z "$base" ] || [ -z "$oursw" ] || [ -z "$basew" ]; then
  echo "error: a figure is missing" >&2
  exit 1
fi
awk -v a="$ours" -v b="$base" 'BEGIN { printf "ExportCSV: %.1f MB/s (ratio %.2f vs python csv.writer)\n", a, a / b }'
awk -v a="$oursw" -v b="$basew" 'BEGIN { printf "ExportCSVW: %.1f MB/s (ratio %.2f vs python csv.writer)\n", a, a / b }'
if [ -n "$floor" ]; then
  awk -v a="$floor" -v b="$base" 'BEGIN { printf "Export floor (rows read back, bytes written, no cell formatted): %.1f MB/s (ratio %.2f vs python csv.writer)\n", a, a / b }'
fi
if [ -n "$floorw" ]; then
  awk -v a="$floorw" -v b="$basew" 'BEGIN { printf "ExportW floor (rows read back, bytes written, no cell formatted): %.1f MB/s (ratio %.2f vs python csv.writer)\n", a, a / b }'
fi
