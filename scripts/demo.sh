#!/usr/bin/env bash
# Builds an optimised tree and scores the sample model of examples/ with the shipped plug-ins.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build/release}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DVANTRY_BUILD_TESTS=OFF -DVANTRY_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target vantry-score >/dev/null
echo "== examples/iris_regression.pmml on examples/iris.csv (first rows)"
"$build/tools/vantry-score" examples/iris_regression.pmml examples/iris.csv | head -n 8
