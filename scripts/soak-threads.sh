#!/bin/sh
# Soaks the parallel search: many short searches with 2, 4 and 8 threads, stopped and pondered at
# random, under the thread sanitizer and as released.
#
#   scripts/soak-threads.sh [minutes, 10 by default]
set -eu
cd "$(dirname "$0")/.."
minutes=${1:-10}
for preset in tsan release; do
  cmake --preset "$preset" > /dev/null
  cmake --build --preset "$preset" --target thread_soak > /dev/null
  echo "== $preset, $minutes minutes"
  "build/$preset/tests/thread_soak" "$minutes"
done
