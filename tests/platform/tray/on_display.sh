#!/bin/sh
# Runs a command on a virtual display of its own: on_display.sh COMMAND [ARGUMENT...]
set -eu

for tool in Xvfb trayer xdotool; do
    command -v "$tool" >/dev/null || { echo "on_display.sh: $tool is not installed" >&2; exit 1; }
done

folder=$(mktemp -d)
server=
trap 'kill $server 2>/dev/null || true; wait; rm -rf "$folder"' EXIT

Xvfb -displayfd 3 -screen 0 800x600x24 -nolisten tcp 3>"$folder/display" 2>/dev/null &
server=$!
tries=0
until [ -s "$folder/display" ]; do
    tries=$((tries + 1))
    [ "$tries" -le 100 ] || { echo "on_display.sh: no display after 10 s" >&2; exit 1; }
    sleep 0.1
done
DISPLAY=:$(cat "$folder/display")
QT_QPA_PLATFORM=xcb
XDG_RUNTIME_DIR=$folder
export DISPLAY QT_QPA_PLATFORM XDG_RUNTIME_DIR
chmod 700 "$folder"

"$@"
