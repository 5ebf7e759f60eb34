#!/usr/bin/env bash
# Builds the layer-reader fuzzer with clang and libFuzzer (plus AddressSanitizer
# and UndefinedBehaviorSanitizer) in a build directory of its own, and runs it
# for the given number of seconds (default 30) on the seed corpus in fuzz/corpus.
# Exits non-zero when the fuzzer finds a crash, a leak or a timeout; the input
# that caused it is left in the build directory as crash-*, leak-* or timeout-*.
set -euo pipefail
seconds=${1:-30}
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_FUZZ_DIR:-$root/build-fuzz}
cxx=${FUZZ_CXX:-$(command -v clang++-14 || command -v clang++)}
flags="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1"

cmake -S "$root/fuzz" -B "$out" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build "$out" --target sax_reader_fuzzer -j "${JOBS:-$(nproc)}"

# New inputs go to a scratch corpus; the seeds in the repository stay as they are.
mkdir -p "$out/corpus"
"$out/sax_reader_fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
  -dict="$root/fuzz/sax.dict" -artifact_prefix="$out/" -print_final_stats=1 \
  "$out/corpus" "$root/fuzz/corpus"
