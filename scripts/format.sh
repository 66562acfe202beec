#!/usr/bin/env bash
# Formats every C++ source of the tree in place; with --check, only reports files that are not formatted.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files --cached --others --exclude-standard -- \
    'vantry/*' 'tests/*' 'plugins/*' 'tools/*' 'bench/*' 'examples/*' | grep -E '\.(h|hpp|cpp|cc)$' || true)
[ ${#files[@]} -eq 0 ] && exit 0
if [ "${1:-}" = "--check" ]; then
    clang-format --dry-run --Werror "${files[@]}"
else
    clang-format -i "${files[@]}"
fi
