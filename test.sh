#!/usr/bin/env bash
# Proves the whole tree: format, static checks, and every test in a plain build and under the
# sanitizers. Stops at the first stage that fails, with a status other than 0.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
exec </dev/null

source scripts/packages.sh
need_program g++ g++
need_program cmake cmake
need_program ninja ninja-build
need_program clang-format clang-format
need_program clang-tidy clang-tidy
need_program x86_64-w64-mingw32-g++-posix g++-mingw-w64-x86-64-posix
need_program i686-w64-mingw32-g++-posix g++-mingw-w64-i686-posix
install_missing
need_header gtest/gtest.h libgtest-dev
need_header benchmark/benchmark.h libbenchmark-dev
need_compression
install_missing

options=(-DOMBRIN_TESTS=ON)
if command -v ccache >/dev/null; then
  options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

stage() {
  printf '\n=== %s (%d s so far)\n' "$*" "$SECONDS"
}

# configure PRESET [cmake's options ...]
configure() {
  local preset=$1
  shift
  cmake --preset "$preset" "${options[@]}" "$@" >/dev/null
}

# compile PRESET [TARGET ...]: says something only when it fails.
compile() {
  local preset=$1 log=build/$1/compile.log
  shift
  cmake --build --preset "$preset" --parallel "$(nproc)" ${1:+--target "$@"} >"$log" 2>&1 || {
    grep -v '^\[' "$log"
    return 1
  }
}

# run_tests PRESET [ctest's options ...]
run_tests() {
  local preset=$1
  shift
  ctest --test-dir "build/$preset" --output-on-failure --parallel "$(nproc)" "$@"
}

stage "format"
scripts/format.sh --check

stage "static checks"
configure release -DOMBRIN_BENCH=ON
scripts/tidy.sh

stage "address and undefined behaviour sanitizers"
configure asan -DOMBRIN_BENCH=OFF
compile asan
run_tests asan

stage "thread sanitizer, for what runs more than one thread"
threaded='platform search protocol program'
configure tsan -DOMBRIN_BENCH=OFF
threaded_targets=()
for folder in $threaded; do
  if compgen -G "tests/$folder/*.cpp" >/dev/null; then threaded_targets+=("${folder}_test"); fi
done
compile tsan ombrin "${threaded_targets[@]}"
run_tests tsan --tests-regex "^(${threaded// /|})"

stage "release build"
compile release
run_tests release

# Wine for 32-bit programs is used where it is, but not installed: it needs a second architecture.
stage "Windows programs"
[ -n "$(find_wine windows64)" ] || missing_packages+=(wine64)
install_missing || true
for preset in windows64 windows32; do
  if [ -n "$(find_wine "$preset")" ]; then
    configure "$preset" -DOMBRIN_TESTS=OFF
    compile "$preset"
    scripts/test-windows.sh "$preset"
  else
    # Only to see that it compiles: the quickest way.
    configure "$preset" -DOMBRIN_TESTS=OFF -DCMAKE_CXX_FLAGS_RELEASE=-O0
    compile "$preset" ombrin
    echo "$preset: built, but not tested, because there is no Wine for it"
  fi
done
