#!/usr/bin/env bash
# Builds the library, plug-ins, tools and tests with AddressSanitizer and UndefinedBehaviorSanitizer,
# then runs every test through ctest. Exits non-zero on any failure.
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
