#!/usr/bin/env bash
# start_bench.sh PROGRAM: time from starting the program to its first visible window and to its main window, on a
# display of its own, medians of 5. The start-up itself contains a pause of 500 ms for the splash screen, which is
# taken off the second figure.
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$folder"' EXIT

Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset 3>"$folder/display" 2>/dev/null &
until grep -q . "$folder/display" 2>/dev/null; do sleep 0.05; done
export DISPLAY=:$(cat "$folder/display") HOME=$folder XDG_CONFIG_HOME=$folder/c XDG_DATA_HOME=$folder/d XDG_RUNTIME_DIR=$folder
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
# The server names its display a little before it takes programs in (and, were it to start anew after each of them as
# it does without -noreset, would refuse the next one).
until xdotool getdisplaygeometry >/dev/null 2>&1; do sleep 0.05; done
mkdir -p "$folder/c/kavro2000"
cp "$(dirname "$program")/defaultDB.mdb" "$folder/net.mdb"
touch "$folder/log.txt"
printf '[Startup]\nDatabase=%s\n[Options]\nLogFile=%s\n' "$folder/net.mdb" "$folder/log.txt" >"$folder/c/kavro2000/Kavro_2000.ini"

now() { echo $(($(date +%s%N) / 1000000)); }
visible() { xdotool search --onlyvisible "$@" >/dev/null 2>&1; }
wait_for() {
    until visible "$@"; do
        kill -0 $pid 2>/dev/null || { echo "the program has ended" >&2; exit 1; }
        sleep 0.005
    done
}

first=() main=()
for _ in 1 2 3 4 5; do
    begun=$(now)
    "$program" >/dev/null 2>&1 &
    pid=$!
    wait_for --pid $pid
    first+=($(($(now) - begun)))
    wait_for --name 'mdb - Kavro_2000'
    main+=($(($(now) - begun - 500)))
    kill -TERM $pid
    wait $pid
done

median() { printf '%s\n' "$@" | sort -n | sed -n 3p; }
missed=0
report() {
    local verdict=reached
    [ "$2" -le "$3" ] || { verdict=MISSED; missed=1; }
    printf '%-58s %9.1f ms  (aim <= %s)  %s\n' "$1" "$2" "$3" "$verdict"
}
report "start to the first visible window" "$(median "${first[@]}")" 500
report "start to the main window, less the pause of 500 ms" "$(median "${main[@]}")" 500
exit $missed
