#!/usr/bin/env bash
# Tests the inspector page: inspector_test.sh ORBINEL BUILD_FOLDER TEST…. Exit status 77: it cannot run here.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tool=$1 folder=$2
shift 2

skip() {
    echo "skipped: $1"
    exit 77
}

for program in node npm chromium; do
    command -v "$program" >/dev/null || skip "$program is not installed (packages/inspector)"
done
mkdir -p "$folder"
if ! cmp -s "$here/package-lock.json" "$folder/installed-lock.json"; then
    cp "$here/package.json" "$here/package-lock.json" "$folder/"
    (cd "$folder" && timeout 60 npm ci --ignore-scripts --no-audit --no-fund --silent) || skip "npm cannot install what drives the browser"
    cp "$here/package-lock.json" "$folder/installed-lock.json"
fi
cp "$here"/*.mjs "$folder/"
rm -rf "$folder/page"
cp -r "$here/../../../apps/orbinel/backend/inspector" "$folder/page"
cd "$folder"
ORBINEL=$tool EXAMPLES=$here/../../../examples exec node --test --test-reporter=tap "$@"
