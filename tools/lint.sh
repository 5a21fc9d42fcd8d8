#!/usr/bin/env bash
# Runs clang-tidy over the sources; any finding is an error.
#
#   tools/lint.sh [REVISION]     all of src/, or only the sources that differ from the revision
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-dependencies.sh build run test lint

if [ $# -gt 0 ]; then
    mapfile -t sources < <(git diff --name-only --diff-filter=d "$1" -- 'src/*.cpp')
else
    mapfile -t sources < <(git ls-files 'src/*.cpp')
fi
[ ${#sources[@]} -gt 0 ] || exit 0

# The generated sources must exist for clang to read the others.
cmake --preset release >/dev/null
cmake --build build/release --target glyma >/dev/null
printf '%s\0' "${sources[@]}" |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy-16 -p build/release --quiet 2> >(grep -v ' warnings\? generated\.$' >&2)
