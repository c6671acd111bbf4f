#!/usr/bin/env bash
# Brings translations/*.ts up to date with the texts in the code (new texts arrive
# unfinished, for a translator to fill in with Qt Linguist); the build compiles them.
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=/usr/lib/qt6/bin/lupdate
[ -x "$lupdate" ] || lupdate=lupdate
"$lupdate" -locations relative -no-obsolete src -ts translations/qdbgrid_de.ts
"$lupdate" -locations relative -no-obsolete apps -ts translations/explorer_de.ts
