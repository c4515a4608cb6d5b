#!/usr/bin/env bash
# Plays scenarios in a real window, with real pages: play_in_a_window.sh TOOL EXAMPLES
# Run it with run_with_display.sh. ORBINEL_PICTURES names a directory in which the screenshot is kept.
set -euo pipefail

tool=$1
examples=$2
scratch=$(mktemp -d)
"$tool" backend --port 0 --templates "$examples/templates" >"$scratch/backend.log" 2>&1 &
backend=$!
finish() {
    kill "$backend" 2>/dev/null || true
    wait "$backend" || true
    rm -rf "$scratch"
}
trap finish EXIT

fail() {
    echo "$1" >&2
    tail -n 40 "$scratch/trace" >&2
    exit 1
}

for _ in {1..200}; do
    endpoint=$(grep -o -m 1 'http://127.0.0.1:[0-9]*' "$scratch/backend.log" || true)
    [[ -z $endpoint ]] || break
    sleep 0.05
done

status=0
play() {
    status=0
    "$tool" play --ui gtk --endpoint "$endpoint" "$1" >"$scratch/trace" || status=$?
}

play "$examples/in-app.json"
((status == 0)) || fail "examples/in-app.json ended with $status"

picture=${ORBINEL_PICTURES:-$scratch}/in-app-gtk.png
cat >"$scratch/scenario.json" <<END
{"name": "a look at a message", "preset": {"defaults": {"ORBINEL_ID": "known", "gdprConsent": true}},
 "steps": [
  {"call": "initWithLaunchOptions:partnerName:appGroup:customEndpoint:",
   "args": [null, "inapp", "group.acme.shop", "\${endpoint}"]},
  {"notify": "UIApplicationDidBecomeActiveNotification"}, {"settle": 5},
  {"call": "tagEvent:", "args": ["discount_seen"], "then": [{"call": "build", "args": []}]},
  {"template": {"finish": true}},
  {"wait_for": {"in": "view", "where": {"/view": "shown"}}},
  {"page": "document.title"},
  {"page": "new Promise(resolve => setTimeout(() => resolve({'cards': [1, null]}), 20)) // in a while"},
  {"screenshot": "$picture"},
  {"template": {"message": {"none": "of the library's"}}},
  {"template": {"navigate": "https://shop.example/mugs", "link": true}},
  {"template": {"tap": "close"}},
  {"wait_for": {"in": "view", "where": {"/view": "removed"}}},
  {"expect": {"in": "page", "where": {"/page": "Breakfast for two"}, "count": 1}},
  {"expect": {"in": "page", "where": {"/page/cards/0": 1}, "count": 1}}]}
END
play "$scratch/scenario.json"
((status == 0)) || fail "the look at a message ended with $status"
colours=$(identify -format '%k' "$picture")
((colours > 50)) || fail "the picture has $colours colours only"

play - <<<'{"name": "nothing to press", "steps": [{"template": {"tap": "close"}}]}' 2>"$scratch/says"
((status == 3)) || fail "a missing button ended with $status"

play - <<<'{"name": "no such clock", "clock": {"start": 1}, "steps": []}' 2>"$scratch/says"
((status == 2)) && grep -q 'the clock cannot be virtual with --ui gtk' "$scratch/says" || fail "a clock ended with $status"

DISPLAY= play - <<<'{"name": "no display", "steps": []}' 2>"$scratch/says"
((status == 2)) && grep -q -- '--ui gtk needs a display' "$scratch/says" || fail "no display ended with $status"
