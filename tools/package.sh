#!/usr/bin/env bash
# Builds the Debian package into build/package/package/ and checks it; prints its path.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-dependencies.sh build package >&2

eval "$(dpkg-buildflags --export=sh)"
cmake --preset package >&2
cmake --build build/package >&2
rm -rf build/package/package
cpack --config build/package/CPackConfig.cmake >&2

package=$(echo build/package/package/glyma_*.deb)
lintian --fail-on error,warning "$package" >&2
desktop-file-validate packaging/net.quillaby.Glyma.desktop
appstreamcli validate --no-net build/package/packaging/net.quillaby.Glyma.metainfo.xml >&2
problems=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z packaging/glyma.1 2>&1 >/dev/null)
[ -z "$problems" ] || { echo "$problems" >&2; exit 1; }
echo "$package"
