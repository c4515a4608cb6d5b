#!/usr/bin/env bash
# Runs a command on a display of its own: run_with_display.sh COMMAND…
# ORBINEL_SCREEN names its size in points, such as 1280x1000.
# Exit 77 where that cannot be, which counts as skipped.
set -euo pipefail

for tool in Xvfb openbox xdotool import bwrap; do
    if ! command -v "$tool" >/dev/null; then
        echo "Skipped: $tool is missing (packages/window)." >&2
        exit 77
    fi
done

scratch=$(mktemp -d)
started=()
finish() {
    ((${#started[@]} == 0)) || kill "${started[@]}" 2>/dev/null || true
    wait
    rm -rf "$scratch" 2>/dev/null || true  # a web process may still be ending
}
trap finish EXIT

mkfifo "$scratch/display"
Xvfb -displayfd 3 -screen 0 "${ORBINEL_SCREEN:-1024x900}x24" -nolisten tcp 3<>"$scratch/display" >"$scratch/xvfb.log" 2>&1 &
started+=($!)
exec 4<>"$scratch/display"
if ! read -r -t 20 number <&4; then
    echo "Skipped: Xvfb does not start: $(tail -n 3 "$scratch/xvfb.log")" >&2
    exit 77
fi

# Nothing of the person's session: neither their bus nor their settings, and the same drawing everywhere.
export DISPLAY=":$number" GDK_BACKEND=x11 GSK_RENDERER=cairo GDK_DEBUG=gl-disable
export DBUS_SESSION_BUS_ADDRESS=disabled: GTK_A11Y=none GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1
export HOME="$scratch" XDG_DATA_HOME="$scratch/data" XDG_CACHE_HOME="$scratch/cache" XDG_CONFIG_HOME="$scratch/config"
export XDG_RUNTIME_DIR="$scratch/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"

openbox >"$scratch/openbox.log" 2>&1 &
started+=($!)
for _ in {1..100}; do
    xdotool get_num_desktops >/dev/null 2>&1 && break # a window manager has begun its work
    sleep 0.05
done
"$@"
