#!/usr/bin/env bash
# Installs what is missing, builds, and runs every check.
set -euo pipefail
cd "$(dirname "$0")/.."
script/bootstrap.sh
cmake --preset dev >/dev/null
cmake --build --preset dev
ctest --preset dev -j "$(nproc)"
