#!/usr/bin/env bash
# Prints the line of the table whose bound is too tight for times: an event beside campaigns of other events, counted in
# instructions by callgrind. The argument is the program that tags the events.
set -euo pipefail
program=$1
goal=1.10

# instructions CAMPAIGNS: of one event.
instructions() {
    local total
    total=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null --collect-atstart=no \
        --toggle-collect='orbinel::bench::countedEvents*' "$program" "$1" 2>&1 |
        sed -n 's/^==[0-9]*== Collected : \([0-9]*\).*/\1/p')
    ((total > 0)) || { echo "callgrind has counted nothing in $program" >&2; return 1; }
    echo $((total / 1000))
}

beside_none=$(instructions 0)
beside_many=$(instructions 10000)
awk -v measured="$beside_many" -v floor="$beside_none" -v goal="$goal" 'BEGIN {
    ratio = measured / floor
    print "| what | measured | floor | ratio | goal | |\n|---|---|---|---|---|---|"
    printf "| instructions of an event beside 10,000 campaigns of other events / beside none | %d | %d | %.2f | ≤ %.2f | %s |\n",
        measured, floor, ratio, goal, ratio <= goal ? "met" : "missed"
}'
