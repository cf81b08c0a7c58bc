#!/usr/bin/env bash
# Set-up, build, and the sample client module. With a display it opens for a user; without one it
# renders under Xvfb and writes build/demo.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export VTR_BUILD_DIR=${VTR_BUILD_DIR:-$root/build}
bash "$root/scripts/setup.sh"
bash "$root/scripts/build.sh" --target vantrel_demo
cd "$VTR_BUILD_DIR/bin"
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ] && [ "${1:-}" != "--screenshot" ]; then
  exec "$root/scripts/wine-run.sh" vantrel_demo.exe
fi
out=${2:-$VTR_BUILD_DIR/demo.png}
xvfb-run -a -s "-screen 0 1280x1024x24" "$root/scripts/wine-run.sh" vantrel_demo.exe --screenshot "$(basename "$out")"
# One picture per page: out.png, out-large.png, out-texts.png.
stem=$(basename "$out" .png)
for shot in "$stem".png "$stem"-*.png; do
  [ -f "$shot" ] || continue
  [ "$(dirname "$out")" = "$PWD" ] || mv -f "$shot" "$(dirname "$out")/$shot"
  echo "Screenshot: $(dirname "$out")/$shot"
done
