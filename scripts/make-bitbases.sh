#!/usr/bin/env bash
# Makes endgame bitbases that the engine can use, the library and its tables, in a directory:
#
#   scripts/make-bitbases.sh DIR [MATERIAL ...]
#
# Without a material, the tables of all endings of three and four men; else of those named (such as
# KBNK or KRPKR) and of what these rest on. Tables that are there already are kept.
set -euo pipefail

if [ $# -eq 0 ] || [ "${1#-}" != "$1" ]; then
  sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
mkdir -p "$1"
directory=$(cd "$1" && pwd)
shift
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

build=build/release
if [ ! -f $build/build.ninja ]; then
  cmake --preset release -DOMBRIN_TESTS=OFF -DOMBRIN_BENCH=OFF >/dev/null
fi
cmake --build $build --target egbbdll bitbase_generator

# Put in place as a whole: an engine may be using the file that was there.
cp $build/bitbases/egbbdll.dll "$directory/egbbdll.dll.part"
mv "$directory/egbbdll.dll.part" "$directory/egbbdll.dll"
$build/bitbases/ombrin-bitbases "$directory" "$@"
echo "egbb.dir=$directory"
