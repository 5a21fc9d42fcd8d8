#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: unit and scenario tests (plain, under AddressSanitizer and
# UndefinedBehaviorSanitizer, under ThreadSanitizer), the Debian package, and real applications on virtual displays.
#
#   ./test.sh [--quick]     --quick leaves out the sanitizers, the package and the long runs with real applications
set -euo pipefail
cd "$(dirname "$0")"

quick=${1:-}
jobs=$(nproc)
step() { printf '\n== %s (after %d s)\n' "$*" "$SECONDS"; }

step "packages"
tools/install-dependencies.sh build run demo test

step "formatting"
git ls-files 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp' 'tools/*.h' 'tools/*.cpp' |
    xargs clang-format --dry-run -Werror

step "build"
cmake --preset release >/dev/null
cmake --build build/release

if [ "$quick" = --quick ]; then
    step "unit and scenario tests"
    ctest --preset release -j "$jobs" -LE long
    exit 0
fi

step "headers that compile alone"
cmake --build build/release --target all_verify_interface_header_sets

for sanitizer in asan-ubsan tsan; do
    step "unit and scenario tests, $sanitizer"
    cmake --preset "$sanitizer" >/dev/null
    cmake --build "build/$sanitizer"
    ctest --preset "$sanitizer" -j "$jobs"
done

step "the Debian package, checked by lintian and its like"
tools/package.sh

step "all tests, real applications included"
# An application and its display take two cores. A test that fails is run once more, and says so in the log: on a busy
# machine an application may answer later than a test allows.
ctest --preset release -j "$(((jobs + 1) / 2))" --repeat until-pass:2
