#!/usr/bin/env bash
# Runs clang-tidy on the files below src/, or on those named. Needs a configured build/release.
# A file that passed is not looked at again until it, a header of ours that it reads, or the list
# of checks has changed.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

export passed=build/tidy
mkdir -p "$passed"
common=$(clang-tidy --version | cat - .clang-tidy | sha256sum)
export common

check() {
  local file=$1 ours key
  ours=$(g++ -std=c++20 -Isrc -MM "$file" | tr -d '\\' | sed 's/^[^:]*://')
  key=$({ echo "$common" && cat $ours; } | sha256sum | cut -d ' ' -f 1)
  [ -e "$passed/$key" ] && return 0
  # What it says on standard error is only how many warnings it kept to itself.
  clang-tidy --quiet -p build/release "$file" 2>/dev/null || {
    echo "$file: clang-tidy found something" >&2
    return 1
  }
  touch "$passed/$key"
}
export -f check

if [ $# -eq 0 ]; then
  mapfile -t files <<<"$(find src -name '*.cpp' ! -name '*_windows.cpp' | sort)"
  set -- "${files[@]}"
fi
printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" bash -c 'set -eu; check "$1"' check
echo "$# files pass"
