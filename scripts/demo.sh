#!/usr/bin/env bash
# Builds the example program and runs it; arguments are passed on to it
# (try --help). Outputs go to ./demo-output unless --output says otherwise.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${KELVOR2D_DEMO_BUILD:-$root/build-demo}
source "$root/scripts/require_packages.sh"
require_packages cmake g++ libexpat1-dev libpng-dev pkg-config
cmake -S "$root" -B "$out" -DCMAKE_BUILD_TYPE=Release -DKELVOR2D_BUILD_TESTS=OFF -DKELVOR2D_BUILD_EXAMPLES=ON >/dev/null
cmake --build "$out" --target kelvor2d-demo -j "$(nproc)" >/dev/null
exec "$out/examples/kelvor2d-demo" "$@"
