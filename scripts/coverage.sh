#!/usr/bin/env bash
# Runs the tests and tells which share of the lines and functions of src/ they reach, file by file,
# and the functions that none of them reaches:
#
#   scripts/coverage.sh
#
# Needs gcovr.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find "$build" -name '*.gcda' -delete
# A test that fails under the load of counting still counts what it reached.
ctest --test-dir "$build" --output-on-failure || echo "-- some tests failed"
gcovr --root . --object-directory "$build" --filter src/ --gcov-ignore-parse-errors \
  --json "$build/coverage.json" --txt "$build/coverage.txt"
cat "$build/coverage.txt"
python3 - "$build/coverage.json" <<'PYTHON'
import json, sys
for file in json.load(open(sys.argv[1]))["files"]:
    lines = {line["line_number"]: line["count"] for line in file["lines"]}
    for function in file.get("functions", []):
        if function["execution_count"] == 0:
            print("never reached:", file["file"], function["lineno"], function["name"])
PYTHON
