#!/usr/bin/env bash
# Builds the benchmarks in Release and runs them all. The comparison libraries
# (Clipper 1, FreeType) are installed when run as root; a comparison whose
# library is absent is skipped with a message.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_BENCH_BUILD:-$root/build-bench}
source "$root/scripts/require_packages.sh"
require_packages cmake g++ libexpat1-dev libbenchmark-dev pkg-config
require_packages libpolyclipping-dev libfreetype-dev || echo "comparison libraries missing: comparisons will be skipped"
cmake -S "$root" -B "$out" -DCMAKE_BUILD_TYPE=Release -DKELVOR2D_BUILD_TESTS=OFF -DKELVOR2D_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$out" -j "$(nproc)"
for b in "$out"/bench/*/*_bench; do
  [ -x "$b" ] || continue
  echo "== $(basename "$b")"
  "$b" "$@"
done
