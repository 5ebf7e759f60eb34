#!/usr/bin/env bash
# Builds the fuzzers with clang and libFuzzer (plus AddressSanitizer and
# UndefinedBehaviorSanitizer, float-cast-overflow included) in a build
# directory of its own, and runs them for the given number of seconds in all
# (default 30): a third for the boolean engine on the seeds in
# fuzz/corpus_boolean, a sixth each for the layer reader (fuzz/corpus), scan
# conversion with hatching (fuzz/corpus_scan_hatch), the coverage convertor
# (fuzz/corpus_coverage) and MHatcher (fuzz/corpus_mhatcher).
# Exits non-zero when a fuzzer finds a crash, a leak or a timeout; the input
# that caused it is left in the build directory as <target>-crash-* and so on
# (crash-* for the layer reader, boolean-crash-* for the boolean engine).
set -euo pipefail
seconds=${1:-30}
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_FUZZ_DIR:-$root/build-fuzz}
cxx=${FUZZ_CXX:-$(command -v clang++-14 || command -v clang++)}
sanitizers="address,undefined,float-cast-overflow"
flags="-fsanitize=fuzzer-no-link,$sanitizers -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1"
sixth=$((seconds / 6 > 0 ? seconds / 6 : 1))
boolean_seconds=$((seconds - 4 * sixth > 0 ? seconds - 4 * sixth : 1))
grid_targets="scan_hatch_fuzzer coverage_fuzzer mhatcher_fuzzer"

cmake -S "$root/fuzz" -B "$out" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=$sanitizers" >/dev/null
# shellcheck disable=SC2086
cmake --build "$out" --target sax_reader_fuzzer boolean_engine_fuzzer $grid_targets -j "${JOBS:-$(nproc)}"

# New inputs go to scratch corpora; the seeds in the repository stay as they are.
# Every fuzzer runs even when one before it fails; the status reports any failure.
common=(-timeout=10 -rss_limit_mb=2048 -print_final_stats=1)
status=0
mkdir -p "$out/corpus" "$out/corpus_boolean"
"$out/sax_reader_fuzzer" -max_total_time="$sixth" "${common[@]}" -max_len=65536 -dict="$root/fuzz/sax.dict" \
  -artifact_prefix="$out/" "$out/corpus" "$root/fuzz/corpus" || status=$?
"$out/boolean_engine_fuzzer" -max_total_time="$boolean_seconds" "${common[@]}" -max_len=100 -len_control=0 \
  -artifact_prefix="$out/boolean-" "$out/corpus_boolean" "$root/fuzz/corpus_boolean" || status=$?
for target in $grid_targets; do
  name=${target%_fuzzer}
  mkdir -p "$out/corpus_$name"
  "$out/$target" -max_total_time="$sixth" "${common[@]}" -max_len=200 -len_control=0 \
    -artifact_prefix="$out/$name-" "$out/corpus_$name" "$root/fuzz/corpus_$name" || status=$?
done
exit "$status"
