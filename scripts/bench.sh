#!/usr/bin/env bash
# Builds an optimised tree and runs every benchmark program of bench/.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build/release}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DVANTRY_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc)"
for b in "$build"/bench/bench_*; do
    [ -x "$b" ] || continue
    echo "== $(basename "$b")"
    "$b" "$@"
done
# Rows per second through the scoring command, one and two threads.
BUILD_DIR=$build scripts/bench_rows.sh
