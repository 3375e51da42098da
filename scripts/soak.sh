#!/usr/bin/env bash
# Plays many fast games of ombrin against itself over both protocols, with and without pondering,
# with one thread and two, with and without a reserve on the clock, and last beside two busy
# processes:
#
#   scripts/soak.sh [games, 1000 by default]
#
# The referee names every illegal move, loss on time, stall and crash, and watches memory. Exit
# status 1 when there was any.
set -euo pipefail
cd "$(dirname "$0")/.."

games=${1:-1000}
cmake --preset release >/dev/null
cmake --build --preset release --target ombrin referee >/dev/null
work=$(mktemp -d)
busy=()
finish() {
  [ "${#busy[@]}" -eq 0 ] || kill "${busy[@]}"
  rm -rf "$work"
}
trap finish EXIT
# Copies, so that building meanwhile disturbs no game.
cp build/release/ombrin build/release/tests/referee "$work"
cd "$work"
printf 'uci.timegap=0\nwinboard.timegap=0\n' >no-reserve.ini

failed=0
# share of all games in hundredths, then the referee's options
play() {
  local count=$((games * $1 / 100))
  shift
  [ "$count" -gt 0 ] || return 0
  echo "== $count games: $*"
  ./referee --engine "$work/ombrin" --games "$count" --seed "$games" "$@" >log || failed=1
  sed -n '/^engine:/,$p' log
  # Whole games of which something must be looked at.
  grep -E 'flag|illegal|stall|crash|memory grew' log | grep -E 'plies|grew' || true
}

play 30 --protocol uci --move-time 10
play 10 --protocol uci --move-time 10 --games-per-process 1000
play 10 --protocol uci --move-time 10 --threads 2
play 10 --protocol uci --move-time 20 --ponder
play 2 --protocol uci --move-time 100 --ponder --threads 2
play 15 --protocol xboard --base 1000
play 5 --protocol xboard --base 1000 --ponder --threads 2
play 5 --protocol uci --base 1000 --increment 10
play 3 --protocol uci --base 1000 --increment 10 --ponder --threads 2 --ini no-reserve.ini
play 3 --protocol uci --base 1000 --increment 10 --ini no-reserve.ini
play 4 --protocol xboard --base 2000 --ini no-reserve.ini

for _ in 1 2; do
  (while :; do :; done) &
  busy+=($!)
done
echo "-- beside two busy processes"
play 2 --protocol mixed --move-time 20 --threads 2
play 1 --protocol uci --base 1000 --increment 10 --ponder
exit "$failed"
