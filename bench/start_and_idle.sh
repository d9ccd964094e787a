#!/bin/sh
# Under a virtual display: time from the start of the program to the painted splash, median of ten warm starts, beside
# the start of the same program that only prints its version; then processor and memory of the idle main window.
# Needs Xvfb, xdotool and imagemagick. Usage: bench/start_and_idle.sh [program folder]
set -eu
folder=$(cd "${1:-$(dirname "$0")/../build/release/kor}" && pwd)
work=$(mktemp -d)
cp -r "$folder"/. "$work"
printf 'COM=8\r\nLINGUA=1\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=-1\r\n' >"$work/Impost.stp"
display=:97
Xvfb $display -screen 0 1024x768x24 >/dev/null 2>&1 &
server=$!
"$work/kor-simulator" --link "$work/Porte/COM8" >/dev/null 2>&1 &
interface=$!
trap 'kill $interface $server 2>/dev/null; rm -rf "$work"' EXIT
export DISPLAY=$display LC_ALL=C XDG_RUNTIME_DIR="$work"
sleep 1

milliseconds() { date +%s%3N; }
# The splash is painted when its first corner pixel is no longer the empty screen's.
painted() {
    window=$(xdotool search --onlyvisible --name '^KOR$' 2>/dev/null | head -n 1)
    [ -n "$window" ] && [ "$(import -window "$window" -crop 1x1+5+5 txt:- 2>/dev/null | grep -c '#000000')" = 0 ]
}
starts=""
bare=""
for _ in 1 2 3 4 5 6 7 8 9 10 11; do
    before=$(milliseconds)
    "$work/kor-supervisor" --console --version >/dev/null
    bare="$bare $(($(milliseconds) - before))"
    before=$(milliseconds)
    "$work/kor-supervisor" &
    program=$!
    until painted; do :; done
    starts="$starts $(($(milliseconds) - before))"
    sleep 2
    kill $program
    wait $program || true
done
median() { printf '%s\n' "$@" | tail -n +2 | sort -n | sed -n 5p; }
# shellcheck disable=SC2086
echo "start to painted splash: $(median $starts) ms, against --version alone: $(median $bare) ms"

"$work/kor-supervisor" &
program=$!
sleep 5
ticks() { awk '{print $14 + $15}' "/proc/$program/stat"; }
before=$(ticks)
sleep 30
used=$(($(ticks) - before))
echo "idle main window: $used of 3000 ticks in 30 s, $(awk '/VmRSS/ {print $2}' "/proc/$program/status") KiB resident"
kill $program
wait $program || true
