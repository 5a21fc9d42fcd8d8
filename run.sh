#!/usr/bin/env bash
# Installs what is missing, builds, and starts Glyma. Without a display it shows what Glyma does on a virtual one:
# types into a real editor, prints the text that resulted and saves a picture.
set -euo pipefail
cd "$(dirname "$0")"

if [ -n "${DISPLAY:-}" ]; then
    tools/install-dependencies.sh build run
else
    tools/install-dependencies.sh build run demo
fi

cmake --preset release -DGLYMA_TESTS=OFF -DGLYMA_BENCH=OFF -B build/run >build-run.log 2>&1 ||
    { cat build-run.log >&2; exit 1; }
rm -f build-run.log
cmake --build build/run

if [ -n "${DISPLAY:-}" ]; then
    exec build/run/bin/glyma "$@"
fi
GLYMA_BINARY=build/run/bin/glyma /usr/bin/python3 tools/demo.py
