#!/usr/bin/env bash
# Installs the Debian packages the build needs, and any further ones named as arguments (scripts/fuzz.sh
# asks for its compiler this way). Idempotent, and silent when nothing is missing.
set -euo pipefail

packages=(cmake g++ make libxerces-c-dev libicu-dev libgtest-dev libgmock-dev libbenchmark-dev clang-format "$@")
missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed"; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
