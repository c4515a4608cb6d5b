#!/usr/bin/env bash
# A shared library shows what its public headers mark, all of it and nothing else: exported_names.sh LIBRARY HEADERS CORE
# CORE: the public headers of liborbinel, whose types of exceptions stand in whatever throws them.
set -euo pipefail
library=$1 headers=$2 core=$3

# Each marked class and function, such as "orbinel::platform::Delegate"; functions of C have no namespace.
marked_names() {
    find "$1" -name '*.h*' -exec awk '
        FNR == 1 { depth = 0 }
        /^namespace / { depth++; inside[depth] = inside[depth - 1] $2 "::" }
        /^} *\/\/ namespace/ { depth-- }
        /ORBINEL_API/ && !/#/ {
            isFunction = !/(class|struct) ORBINEL_API/
            sub(/.*ORBINEL_API +/, "")
            if (isFunction) { sub(/\(.*/, ""); sub(/.*[ *&]/, "") } else { sub(/[ :{].*/, "") }
            print inside[depth] $0
        }' {} + | sort -u
}

# What the library defines, without parameters: "orbinel::platform::Delegate::perform".
exported_names() {
    nm -DC --defined-only "$library" |
        sed -E -e 's/^[0-9a-f]* . //' -e 's/^(vtable|VTT|typeinfo|typeinfo name) for //' \
            -e 's/^(non-)?virtual thunk to //' -e 's/\(.*//' -e 's/\[abi:.*//' | sort -u
}

# A name stands for all that is inside it.
awk '
    FILENAME == ARGV[1] { marked[$0] = 0; next }
    FILENAME == ARGV[2] { if (!($0 in marked)) marked[$0] = 1; next }
    {
        name = $0
        while (!(name in marked) && sub(/::[^:]*$/, "", name)) {}
        if (name in marked) marked[name] = 1
        else { print "exported, but in no public header: " $0; wrong = 1 }
    }
    END {
        for (name in marked) if (!marked[name]) { print "in a public header, but not exported: " name; wrong = 1 }
        exit wrong
    }' <(marked_names "$headers") <(marked_names "$core") <(exported_names)
