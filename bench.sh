#!/usr/bin/env bash
# Builds the benchmarks and runs them one after another, in under six minutes. Prints one line a figure,
# "ratio NAME VALUE LIMIT ok|FAIL" or "sanity NAME VALUE LIMIT ok|FAIL", between lines that say more; bench/README.md
# tells what is compared. Exits with 1 when a line says FAIL or a benchmark cannot be run.
set -euo pipefail
cd "$(dirname "$0")"
tools/install-dependencies.sh build run demo bench test >&2
cmake --preset bench >/dev/null
cmake --build build/release >&2

bin=$PWD/build/release/bin
output=$(mktemp)
trap 'rm -f "$output"' EXIT

status=0
measure() {
    "$@" | tee -a "$output" || status=1
}
measure "$bin/bench_search"
measure /usr/bin/python3 bench/search/fzf_ratio.py "$bin/bench_search_process" "$bin/glyma"
measure "$bin/bench_library"
measure "$bin/bench_import" "$bin/glyma"
measure "$bin/bench_poll"
measure "$bin/bench_window" "$bin/glyma"

if grep -q ' FAIL$' "$output"; then
    status=1
fi
exit $status
