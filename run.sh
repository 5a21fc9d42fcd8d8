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

# A folder that ./test.sh has configured keeps its tests.
[ -f build/release/build.ninja ] || cmake --preset program --log-level=WARNING >/dev/null
cmake --build build/release --target glyma

if [ -n "${DISPLAY:-}" ]; then
    exec build/release/bin/glyma "$@"
fi
/usr/bin/python3 tools/demo.py
