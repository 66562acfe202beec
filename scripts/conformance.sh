#!/usr/bin/env bash
# Scores every conformance case of tests/conformance through the shipped plug-ins of an existing build and
# prints one line per case (rows, agreeing rows, worst relative difference of a number) and a total.
# The large case runs when VANTRY_CORPUS names the shared corpus. Exits non-zero when a case disagrees.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build}
if [ ! -x "$build/tests/conformance-report" ]; then
    echo "conformance: build the tests first (cmake --build $build --target conformance-report)" >&2
    exit 1
fi
# The library finds its plug-ins by its run path, except under AddressSanitizer, whose dlopen hides it;
# a sanitised build also reports the leaks the library keeps on purpose unless told which they are.
export LD_LIBRARY_PATH=$PWD/$build/lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$PWD/tests/lsan.supp:print_suppressions=0}
exec "$build/tests/conformance-report"
