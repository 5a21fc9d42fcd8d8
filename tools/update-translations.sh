#!/usr/bin/env bash
# Takes the texts of the interface from the sources into resources/translations; what is new there then waits for its
# translation (Qt Linguist, or any editor). Texts that are gone from the sources go from the translations too.
#
#   tools/update-translations.sh [FOLDER]     FOLDER: of the translations to bring up to date
set -euo pipefail
cd "$(dirname "$0")/.."
folder=${1:-resources/translations}

# Line numbers would change with every edit of a source.
PATH=/usr/lib/qt6/bin:$PATH lupdate -silent -locations none -no-obsolete -no-ui-lines -source-language en \
    -I src src -ts "$folder"/glyma_*.ts
