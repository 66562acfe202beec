#!/usr/bin/env bash
# Rewrites vantry/Vantry.h so that it includes every header of the library.
set -euo pipefail
cd "$(dirname "$0")/.."
{
    echo '// Every public header of the library.'
    echo '#pragma once'
    echo
    echo '#include "vantry/Export.h"'
    git ls-files --cached --others --exclude-standard 'vantry/*/*.h' | sort | sed 's/.*/#include "&"/'
} >vantry/Vantry.h
