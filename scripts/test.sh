#!/usr/bin/env bash
# The whole test suite: a warnings-as-errors build with ctest, the same under
# AddressSanitizer + UndefinedBehaviorSanitizer (float-cast-overflow included)
# with leak checking, a consumer project built against the installed package
# (static, then shared, whose exported symbols are checked), and a short run of
# every fuzzer. Exits non-zero on the first failure.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_TEST_DIR:-$root/build-test}
jobs=${JOBS:-$(nproc)}
source "$root/scripts/require_packages.sh"
require_packages cmake g++ libgtest-dev libgmock-dev libexpat1-dev pkg-config parallel

step() { printf '\n== %s\n' "$*"; }

step "release build with warnings as errors"
cmake -S "$root" -B "$out/release" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELVOR2D_BUILD_TESTS=ON \
  -DKELVOR2D_BUILD_EXAMPLES=ON -DCMAKE_INSTALL_PREFIX="$out/install"
cmake --build "$out/release" -j "$jobs"
(cd "$out/release" && ctest --output-on-failure -j "$jobs" --timeout 300)

step "sanitizer build (address, undefined, leaks)"
san="-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer"
cmake -S "$root" -B "$out/sanitize" -DCMAKE_BUILD_TYPE=Debug -DKELVOR2D_BUILD_TESTS=ON \
  -DKELVOR2D_BUILD_EXAMPLES=ON -DCMAKE_CXX_FLAGS="$san -O1" -DCMAKE_EXE_LINKER_FLAGS="$san"
cmake --build "$out/sanitize" -j "$jobs"
(cd "$out/sanitize" && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --output-on-failure -j "$jobs" --timeout 600)

step "consumer project against the installed package"
cmake --install "$out/release" >/dev/null
cmake -S "$root/tests/consumer" -B "$out/consumer" -DCMAKE_PREFIX_PATH="$out/install"
cmake --build "$out/consumer" -j "$jobs"
"$out/consumer/kelvor2d-consumer"

step "consumer project against an installed shared build"
cmake -S "$root" -B "$out/shared" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_SHARED_LIBS=ON \
  -DKELVOR2D_BUILD_TESTS=OFF -DKELVOR2D_BUILD_EXAMPLES=OFF -DCMAKE_INSTALL_PREFIX="$out/install-shared"
cmake --build "$out/shared" -j "$jobs"
"$root/scripts/check_exports.sh" "$out/shared"
cmake --install "$out/shared" >/dev/null
cmake -S "$root/tests/consumer" -B "$out/consumer-shared" -DCMAKE_PREFIX_PATH="$out/install-shared"
cmake --build "$out/consumer-shared" -j "$jobs"
ldd "$out/consumer-shared/kelvor2d-consumer" | grep 'libkelvor2d\.so' >/dev/null  # not -q: an early exit would fail the pipe
"$out/consumer-shared/kelvor2d-consumer"

if [ -x "$root/scripts/fuzz.sh" ]; then
  step "short fuzzing run"
  "$root/scripts/fuzz.sh" 30
fi
step "all passed"
