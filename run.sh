#!/usr/bin/env bash
# Builds the engine when its sources have changed, then becomes the engine:
#   ./run.sh [inifile]
# Standard input and output are the engine's alone; the working directory stays the caller's.
set -u

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd) || exit 1
build=$root/build/pgo
log=$root/build/run.log

source "$root/scripts/packages.sh"
need_program g++ g++
need_program cmake cmake
need_program ninja ninja-build
install_missing || exit 1
# Without these, only compressed collections cannot be read.
if [ ! -x "$build/ombrin" ]; then
  need_compression
  install_missing || missing_packages=()
fi

mkdir -p "$root/build" || exit 1
[ -x "$build/ombrin" ] || echo "building ombrin, which takes two minutes" >&2
# Two that start at once must not build at once.
if ! (
  flock 9 2>/dev/null
  "$root/scripts/build-pgo.sh" </dev/null >"$log" 2>&1 || {
    cat "$log" >&2
    exit 1
  }
) 9>"$root/build/run.lock"; then
  echo "ombrin: the build failed" >&2
  exit 1
fi

exec "$build/ombrin" "$@"
