#!/usr/bin/env bash
# Makes endgame bitbases that the engine can use, the library and its tables, in a directory:
#
#   scripts/make-bitbases.sh DIR [3|4|5|MATERIAL ...] [--verify] [--threads N]
#
# All endings of up to three, four (unless it is said) or five men, or those named (such as KBNK or
# KRPKR) and what these rest on. Tables that are there already are kept, so that a run that was
# killed is taken up again. With --verify every position of the tables asked for is checked, too.
set -euo pipefail

if [ $# -eq 0 ] || [ "${1#-}" != "$1" ]; then
  sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
mkdir -p "$1"
directory=$(cd "$1" && pwd)
shift
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

source scripts/packages.sh
need_program g++ g++
need_program cmake cmake
need_program ninja ninja-build
install_missing
need_header zstd.h libzstd-dev
install_missing

build=build/release
if [ ! -f $build/build.ninja ]; then
  cmake --preset release -DOMBRIN_TESTS=OFF -DOMBRIN_BENCH=OFF >/dev/null
else
  cmake $build >/dev/null  # zstd may be new
fi
cmake --build $build --target egbbdll bitbase_generator

# Put in place as a whole: an engine may be using the file that was there.
cp $build/bitbases/egbbdll.dll "$directory/egbbdll.dll.part"
mv "$directory/egbbdll.dll.part" "$directory/egbbdll.dll"
$build/bitbases/ombrin-bitbases "$directory" "$@"
echo "egbb.dir=$directory"
