#!/usr/bin/env bash
# Runs every fuzz target (or those named) for some seconds each:
#
#   scripts/fuzz.sh [seconds [target ...]]
#
# What a target finds is left in build/fuzz/found/<target>; once it is mended, keep the input in
# fuzz/corpus/<target>.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/*_fuzz.cpp; do
    targets+=("$(basename "$source" _fuzz.cpp)")
  done
fi

cmake --preset fuzz >/dev/null
for target in "${targets[@]}"; do
  cmake --build --preset fuzz --target "${target}_fuzz" >/dev/null
done

# Every session makes an engine: freed ones are soon used again, since fresh pages cost more than all else.
export ASAN_OPTIONS=quarantine_size_mb=8${ASAN_OPTIONS:+:$ASAN_OPTIONS}
failed=0
for target in "${targets[@]}"; do
  grown=build/fuzz/corpus/$target
  found=build/fuzz/found/$target
  mkdir -p "$grown" "$found"
  log=build/fuzz/$target.log
  # Sessions complain on standard error, and redirect it.
  quiet=0
  case $target in uci | winboard | console) quiet=2 ;; esac
  if "build/fuzz/fuzz/${target}_fuzz" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
    -artifact_prefix="$PWD/$found/" -print_final_stats=1 -close_fd_mask=$quiet \
    "$grown" "fuzz/corpus/$target" 2>"$log"; then
    printf '%-12s %s executions\n' "$target" \
      "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  else
    printf '%-12s FAILED, see %s\n' "$target" "$log"
    failed=1
  fi
done
exit $failed
