#!/usr/bin/env bash
# Builds the layer-reader fuzzer and the boolean-engine fuzzer with clang and
# libFuzzer (plus AddressSanitizer and UndefinedBehaviorSanitizer) in a build
# directory of its own, and runs both for the given number of seconds in all
# (default 30): a third for the layer reader on the seeds in fuzz/corpus, the
# rest for the boolean engine on the seeds in fuzz/corpus_boolean.
# Exits non-zero when either fuzzer finds a crash, a leak or a timeout; the
# input that caused it is left in the build directory as crash-*, leak-* or
# timeout-* (boolean-crash-* and so on for the boolean engine).
set -euo pipefail
seconds=${1:-30}
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_FUZZ_DIR:-$root/build-fuzz}
cxx=${FUZZ_CXX:-$(command -v clang++-14 || command -v clang++)}
flags="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1"
reader_seconds=$((seconds / 3 > 0 ? seconds / 3 : 1))
boolean_seconds=$((seconds - reader_seconds > 0 ? seconds - reader_seconds : 1))

cmake -S "$root/fuzz" -B "$out" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build "$out" --target sax_reader_fuzzer boolean_engine_fuzzer -j "${JOBS:-$(nproc)}"

# New inputs go to scratch corpora; the seeds in the repository stay as they are.
# Both fuzzers run even when the first one fails; the status reports either failure.
mkdir -p "$out/corpus" "$out/corpus_boolean"
status=0
"$out/sax_reader_fuzzer" -max_total_time="$reader_seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
  -dict="$root/fuzz/sax.dict" -artifact_prefix="$out/" -print_final_stats=1 \
  "$out/corpus" "$root/fuzz/corpus" || status=$?
"$out/boolean_engine_fuzzer" -max_total_time="$boolean_seconds" -timeout=10 -rss_limit_mb=2048 -max_len=100 \
  -len_control=0 -artifact_prefix="$out/boolean-" -print_final_stats=1 \
  "$out/corpus_boolean" "$root/fuzz/corpus_boolean" || status=$?
exit "$status"
