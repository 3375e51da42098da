#!/usr/bin/env bash
# Formats every C++ file of the project in place; with --check only says which would change.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run -Werror)
for folder in src tests bench fuzz bitbases; do
  if [ -d "$folder" ]; then find "$folder" -name '*.h' -o -name '*.cpp'; fi
done | xargs clang-format --style=file "${mode[@]}"
