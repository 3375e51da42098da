#!/usr/bin/env bash
# Plays many fast games of ombrin against itself over both protocols, with and without pondering,
# with one thread and two, and stops at the first kind of game that shows a fault:
#
#   scripts/soak.sh [games]
#
# The referee names every illegal move, loss on time, stall and crash, and watches memory.
set -euo pipefail
cd "$(dirname "$0")/.."

games=${1:-1000}
cmake --preset release >/dev/null
cmake --build --preset release --target ombrin referee >/dev/null
referee=build/release/tests/referee
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
engine=$PWD/build/release/ombrin
referee=$PWD/$referee
cd "$work"

# share of all games in tenths, then the referee's options
play() {
  local count=$((games * $1 / 10))
  shift
  [ "$count" -gt 0 ] || return 0
  echo "== $count games: $*"
  "$referee" --engine "$engine" --games "$count" --seed "$games" "$@" | tail -n 12
}

play 2 --protocol uci --move-time 10
play 1 --protocol uci --move-time 10 --threads 2
play 1 --protocol uci --move-time 30 --ponder
play 1 --protocol uci --base 1000 --increment 10
play 1 --protocol uci --base 1000 --increment 10 --ponder --threads 2
play 2 --protocol xboard --base 1000
play 1 --protocol xboard --base 2000 --ponder
play 1 --protocol xboard --base 2000 --ponder --threads 2
