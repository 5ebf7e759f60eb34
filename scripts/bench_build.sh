#!/usr/bin/env bash
# Times kelvor2d-build on the sample build (1,000 layers, default recipe) at 1
# and 2 jobs, with wall and CPU time and peak memory, then runs the step
# benchmark (read, recipe, write). Release build in build-bench/ (as bench.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_BENCH_BUILD:-$root/build-bench}
work=${KELVOR2D_BENCH_WORK:-$(mktemp -d)}
source "$root/scripts/require_packages.sh"
require_packages cmake g++ libexpat1-dev libbenchmark-dev libpng-dev time
cmake -S "$root" -B "$out" -DCMAKE_BUILD_TYPE=Release -DKELVOR2D_BUILD_TESTS=OFF -DKELVOR2D_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$out" -j "$(nproc)" --target kelvor2d-build build_bench
program="$out/apps/kelvor2d-build/kelvor2d-build"
"$program" --quiet --sample "$work/build.cli"
for jobs in 1 2; do
  echo "== $jobs job(s)"
  /usr/bin/time -f "wall %e s, CPU %U s user + %S s system, peak memory of the largest process %M KiB" \
    "$program" "$work/build.cli" -o "$work/hatched-$jobs.cli" --jobs "$jobs" 2>&1 | grep -v '^kelvor2d-build:'
done
cmp "$work/hatched-1.cli" "$work/hatched-2.cli" && echo "1 and 2 jobs: byte-identical"
"$out/bench/build/build_bench" "$@"
