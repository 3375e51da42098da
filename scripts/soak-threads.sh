#!/usr/bin/env bash
# Soaks the parallel search: many short searches with 2, 4 and 8 threads, stopped and pondered at
# random, with the table and the number of threads changed in between; first under the thread
# sanitizer, which must stay silent, then as released, where a stop must be answered in time.
#
#   scripts/soak-threads.sh [minutes, 10 by default [milliseconds that a stop may take]]
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=${1:-10}
soak() {
  echo "== $1, $minutes minutes"
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1" --target thread_soak >/dev/null
  "build/$1/tests/thread_soak" "$minutes" "$2"
}

# Sanitized threads are slow, and eight of them share what processors there are.
soak tsan 60000
# 20 ms on a machine that does nothing else.
soak release "${2:-20}"
