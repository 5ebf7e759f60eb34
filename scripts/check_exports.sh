#!/usr/bin/env bash
# Fails when the shared kelvor2d library of a build exports a symbol of an
# internal namespace. Usage: check_exports.sh <build-dir>
set -euo pipefail
build=${1:?usage: check_exports.sh <build-dir>}
# Internal namespaces: kelvor2d_detail (where every internal helper lives once
# the names are unified), the older names it replaces, and anonymous ones.
internal='(kelvor2d_detail|hatch_internal|kelvor_boolean|kelvor_extraction)::|\(anonymous namespace\)'
lib=$(find "$build" -name 'libkelvor2d.so*' -type f | head -n 1)
if [ -z "$lib" ]; then
  echo "check_exports: no libkelvor2d.so below $build (configure with -DBUILD_SHARED_LIBS=ON)" >&2
  exit 2
fi
symbols=$(nm -DC --defined-only "$lib")
leaks=$(grep -E "$internal" <<<"$symbols" || true)
echo "check_exports: $lib exports $(wc -l <<<"$symbols") symbols"
if [ -n "$leaks" ]; then
  echo "check_exports: internal symbols exported:" >&2
  echo "$leaks" >&2
  exit 1
fi
echo "check_exports: no internal namespace exported"
