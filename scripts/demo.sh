#!/usr/bin/env bash
# Scores a sample model with a shipped plug-in.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build/release}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DVANTRY_BUILD_TESTS=OFF >/dev/null
if [ ! -f tools/CMakeLists.txt ]; then
    cmake --build "$build" -j "$(nproc)" --target vantrylib920r >/dev/null
    echo "demo: no model plug-in ships yet; the library is built in $build/lib"
    exit 0
fi
cmake --build "$build" -j "$(nproc)" >/dev/null
LD_LIBRARY_PATH="$build/lib" "$build/tools/vantry-score" examples/modeldll.txt examples/iris_tree.pmml examples/iris.csv
