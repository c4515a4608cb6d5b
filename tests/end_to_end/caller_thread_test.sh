#!/usr/bin/env bash
# Fails where an operation of the library opens a file or a socket, or waits for a disk, on the thread that calls it.
# Arguments: the program that marks its operations, with its own arguments. Skipped (77) where nothing may be traced.
set -uo pipefail
trace=$(mktemp)
trap 'rm -f "$trace"' EXIT

if ! command -v strace > /dev/null || ! strace -o /dev/null true 2> /dev/null; then
    echo "Skipped: strace is missing, or tracing is not allowed."
    exit 77
fi
watched=%file,%network,write,read,pread64,pwrite64,fsync,fdatasync,ftruncate
if ! strace -f -qq -s 80 -e "trace=$watched" -e signal=none -o "$trace" "$@"; then
    echo "The program failed." >&2
    exit 1
fi

# A line begins with its thread. Between its marks, a thread may only wake another one: by the eight bytes of an event
# counter, or by one byte through a pair of sockets that has long been open.
found=$(awk '
    / write\(-1, "begin / { split($0, parts, "\""); inside[$1] = parts[2]; sub(/^begin /, "", inside[$1]); next }
    / write\(-1, "end"/   { delete inside[$1]; next }
    ($1 in inside) && !/resumed>/ &&
        !/ write\([0-9]+, "[^"]*", [18]\)? / && !/ sendto\([0-9]+, "\\1", 1, / { print inside[$1] ": " $0 }
' "$trace")
operations=$(grep -c 'write(-1, "begin' "$trace")
echo "$operations operations watched"

if ! grep -q '^a file that is opened: .*open' <<< "$found"; then
    echo "The tripwire itself does not work." >&2
    exit 1
fi
found=$(grep -v '^a file that is opened: ' <<< "$found")
if [ -n "$found" ]; then
    printf 'On the thread of the caller:\n%s\n' "$found" >&2
    exit 1
fi
