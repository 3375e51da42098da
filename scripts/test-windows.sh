#!/usr/bin/env bash
# Tests the programs of build/windows64 or build/windows32 under Wine, against those of build/release,
# which has the tests. Needs no display.
#
#   scripts/test-windows.sh windows64|windows32 [Wine's program for it [its wineserver]]
#
# Numbers must be the same on every system: nodes, moves, positions, the bytes of bitbases.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
source scripts/packages.sh

preset=${1:?the preset to test}
wine=${2:-$(find_wine "$preset" || true)}
wineserver=${3:-$(find_wineserver || true)}
: "${wine:?is not there for this preset}" "${wineserver:?is not there}"
native=$PWD/build/release
windows=$PWD/build/$preset
tests=$native/tests

work=$(mktemp -d)
export WINEPREFIX=$PWD/build/wine/$preset WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
unset DISPLAY
mkdir -p "$WINEPREFIX"
trap '"$wineserver" -k >/dev/null 2>&1 || true; rm -rf "$work"' EXIT
# A run that was killed leaves its services behind, and they do not start twice.
"$wineserver" -k >/dev/null 2>&1 && "$wineserver" -w
# Before any test: Wine's own services keep the pipes open of whoever starts them.
"$wineserver" -p >/dev/null 2>&1
"$wine" wineboot --init >/dev/null 2>&1

for name in ombrin ombrin_signature bitbases/ombrin-bitbases; do
  script=$work/$(basename "$name")
  printf '#!/bin/sh\nexec "%s" "%s.exe" "$@"\n' "$wine" "$windows/$name" >"$script"
  chmod +x "$script"
done

# same WHAT: compares what the native and the Windows program have left in native.txt and windows.txt.
same() {
  diff "$work/native.txt" "$work/windows.txt" || {
    echo "$preset: $1 differ" >&2
    exit 1
  }
  echo "$preset: the same $1"
}

for system in native windows; do
  signature=$native/ombrin_signature
  [ "$system" = native ] || signature=$work/ombrin_signature
  "$signature" check >/dev/null
  "$signature" 7 1 verbose | sed -E 's/^ *[0-9]+ ms//; /^(time|speed)/d' | tr -d '\r' >"$work/$system.txt"
done
same "nodes, scores and moves of searches"

# There are bitbases where there is a library to compress them with.
has_bitbases=
[ ! -f "$windows/bitbases/egbbdll.dll" ] || has_bitbases=1
for system in native windows; do
  mkdir "$work/$system"
  cd "$work/$system"
  echo search.nthreads=1 >ombrin.ini
  [ -n "$has_bitbases" ] || continue
  generator=$native/bitbases/ombrin-bitbases
  library=$native/bitbases/egbbdll.dll
  if [ "$system" = windows ]; then
    generator=$work/ombrin-bitbases
    library=$windows/bitbases/egbbdll.dll
  fi
  "$generator" bitbases 3 >/dev/null
  sha256sum bitbases/*.wdl >"$work/$system.txt"
  cp "$library" bitbases
  echo egbb.dir=bitbases >>ombrin.ini
done
[ -z "$has_bitbases" ] || same "bitbases"

# What the console's "g" searches is over before it reads on.
cat >"$work/session" <<'EOF'
perft 5
fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1
perft 4
md 14
fen 8/8/8/4k3/8/4K3/4P3/8 w - - 0 1
g
fen 8/8/8/8/8/5k2/6pp/K7 w - - 0 1
g
fen 8/8/5k2/8/8/1N6/2K1P3/8 w - - 0 1
g
quit
EOF
for system in native windows; do
  program=$native/ombrin
  [ "$system" = native ] || program=$work/ombrin
  cd "$work/$system"
  "$program" <"$work/session" |
    sed -nE 's/^(% )*//; s/ +[0-9]+\.[0-9]{3} / /; /^(perft .=|egbb|EGBB|eval=| *\[)/p' >"$work/$system.txt"
done
[ -z "$has_bitbases" ] || grep -q '^egbb.3men=1' "$work/windows.txt"
same "perft counts${has_bitbases:+ and bitbase answers}"
cd "$work"
OMBRIN_TESTED_PROGRAM=$work/ombrin "$tests/program_test" --gtest_brief=1 --gtest_filter="-*EndRequest*"
for protocol in uci xboard; do
  "$tests/referee" --engine "$work/ombrin" --opponent "$native/ombrin" --games 2 --protocol "$protocol" \
    --base 4000 --increment 20 | tail -n 4
done
