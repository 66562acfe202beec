#!/usr/bin/env bash
# Builds the library, plug-ins, tools and tests with AddressSanitizer and UndefinedBehaviorSanitizer,
# then runs every test through ctest; then builds the library, the shipped plug-ins and the thread
# tests alone with ThreadSanitizer and runs those. Exits non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

echo "== format check"
scripts/format.sh --check

build=${BUILD_DIR:-build/asan}
jobs=${JOBS:-$(nproc)}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DVANTRY_SANITIZE=ON -DVANTRY_WERROR=ON >/dev/null
cmake --build "$build" -j "$jobs"
ctest --test-dir "$build" --output-on-failure -j "$jobs" "$@"

echo "== thread tests under ThreadSanitizer"
tsan=${TSAN_BUILD_DIR:-build/tsan}
cmake -S . -B "$tsan" -DCMAKE_BUILD_TYPE=Debug -DVANTRY_TSAN=ON -DVANTRY_WERROR=ON -DVANTRY_BUILD_BENCH=OFF >/dev/null
cmake --build "$tsan" -j "$jobs" --target test_threads
ctest --test-dir "$tsan" --output-on-failure -j "$jobs" -L threads
