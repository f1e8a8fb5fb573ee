#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds on its corpus, without adding to it.
#
#   script/fuzz.sh [SECONDS]           looks for new inputs, other ones each time
#   script/fuzz.sh SECONDS SEED        tries the same inputs each time
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
seed=${2:-0}

cmake --preset fuzz --log-level=WARNING >/dev/null
cmake --build --preset fuzz --target fuzzers
for source in fuzz/*Fuzz.cpp; do
  name=$(basename "$source" .cpp)
  found=build/fuzz/found/$name
  if [ "$seed" != 0 ]; then
    # What earlier runs found would lead a repeatable one elsewhere.
    found=build/fuzz/repeatable/$name
    rm -rf "$found"
  fi
  mkdir -p "$found"
  # The first folder takes new inputs; the corpus itself stays as it is.
  if ! build/fuzz/bin/"$name" -max_total_time="$seconds" -seed="$seed" -artifact_prefix="$found/" \
    -rss_limit_mb=1024 -timeout=10 "$found" "fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1; then
    tail -n 30 "build/fuzz/$name.log"
    echo "$name failed: see build/fuzz/$name.log"
    exit 1
  fi
  echo "$name: $(grep -oE 'Done [0-9]+ runs' "build/fuzz/$name.log" | tail -n 1)"
done
