#!/usr/bin/env bash
# Configures and builds the DLLs, the demo, the tests and the benchmarks into build/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${VTR_BUILD_DIR:-$root/build}
if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$root" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64-x86_64.cmake" \
        -DCMAKE_BUILD_TYPE=${VTR_BUILD_TYPE:-RelWithDebInfo} >/dev/null
fi
cmake --build "$build" -j"$(nproc)" "$@"
