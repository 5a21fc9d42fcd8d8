#!/usr/bin/env bash
# Builds the benchmarks and prints one line a figure: "ratio NAME VALUE LIMIT ok|FAIL" or "sanity NAME VALUE LIMIT ok|FAIL".
# Exits with 1 when a line says FAIL.
set -euo pipefail
cd "$(dirname "$0")"
tools/install-dependencies.sh build run demo bench test
cmake --preset bench >/dev/null
cmake --build build/release >&2

bin=build/release/bin
output=$(mktemp)
trap 'rm -f "$output"' EXIT
{
    "$bin/bench_search"
    /usr/bin/python3 bench/search/fzf_ratio.py "$bin/glyma"
    "$bin/bench_import"
    "$bin/bench_window" "$bin/glyma"
} | tee "$output"
! grep -q ' FAIL$' "$output"
