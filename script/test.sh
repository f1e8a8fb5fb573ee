#!/usr/bin/env bash
# Installs what is missing, builds, and runs every check: formatting, clang-tidy, qmllint, all tests,
# a short fuzz run, and all tests again under the sanitizers.
#
#   script/test.sh          clang-tidy looks at changed files only
#   script/test.sh --all    clang-tidy looks at every file
set -euo pipefail
cd "$(dirname "$0")/.."

stage() { printf '\n== %s (%d s so far)\n' "$1" "$SECONDS"; }
jobs=$(nproc)

stage 'packages'
script/bootstrap.sh

stage 'formatting'
git ls-files '*.cpp' '*.h' | xargs clang-format-19 --dry-run --Werror

stage 'build'
cmake --preset dev --log-level=WARNING >/dev/null
cmake --build --preset dev

stage 'qmllint'
cmake --build --preset dev --target all_qmllint

stage 'clang-tidy'
script/tidy.sh "${1:-}"

stage 'tests'
ctest --preset dev --output-on-failure -j "$jobs" --quiet --output-log build/dev/ctest.log ||
  { tail -n 60 build/dev/ctest.log; exit 1; }
tail -n 4 build/dev/ctest.log

# Always the same inputs: a change is judged by what it does, not by luck. `script/fuzz.sh` searches.
stage 'fuzzing'
script/fuzz.sh 5 1

stage 'tests under the sanitizers'
cmake --preset asan --log-level=WARNING >/dev/null
cmake --build --preset asan
ctest --preset asan -j "$jobs"
