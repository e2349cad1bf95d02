#!/usr/bin/env bash
# Takes new texts of the program over into languages/*.ts, where they wait for their translation, and
# throws away those that are gone. lupdate keeps what is translated.
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=$(command -v /usr/lib/qt5/bin/lupdate || command -v lupdate)
"$lupdate" -locations none -no-obsolete src -ts languages/wavelark_de.ts
"$lupdate" -locations none -no-obsolete -pluralonly src -ts languages/wavelark_en.ts
grep -n 'type="unfinished"' languages/wavelark_*.ts || echo "every text is translated"
