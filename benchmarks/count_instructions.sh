#!/usr/bin/env bash
# Prints the lines of the table whose bounds are too tight for times, counted in instructions by callgrind. The argument is
# the program that does the work.
set -euo pipefail
program=$1

# instructions WORK CAMPAIGNS: of doing it once.
instructions() {
    local total
    total=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null --collect-atstart=no \
        --toggle-collect='*orbinel::bench::countedWork*' "$program" "$@" 2>&1 |
        sed -n 's/^==[0-9]*== Collected : \([0-9]*\).*/\1/p')
    ((total > 0)) || { echo "callgrind has counted nothing in $program" >&2; return 1; }
    echo $((total / 1000))
}

# line WHAT WORK MANY FEW GOAL
line() {
    local many few
    many=$(instructions "$2" "$3")
    few=$(instructions "$2" "$4")
    awk -v what="$1" -v measured="$many" -v floor="$few" -v goal="$5" 'BEGIN {
        ratio = measured / floor
        printf "| instructions of %s | %d | %d | %.2f | ≤ %.2f | %s |\n",
            what, measured, floor, ratio, goal, ratio <= goal ? "met" : "missed"
    }'
}

printf '| what | measured | floor | ratio | goal | |\n|---|---|---|---|---|---|\n'
line "an event beside 10,000 campaigns of other events / beside none" event 10000 0 1.10
line "choosing one of 10 due campaigns among 10,000 / among those 10" choice 10000 10 1.20
