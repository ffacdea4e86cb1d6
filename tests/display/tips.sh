#!/usr/bin/env bash
# Tool tips on a real screen: tips.sh SCENARIO PROGRAM. Starts its own X server and window manager,
# runs the program and plays the user. Ends what it started and nothing else.
scenario=$1 program=$2
. "$(dirname "$0")/screen.sh"

pixel() { import -window root -crop "1x1+$1+$2" -depth 8 txt:- | grep -oE '#[0-9A-F]{6}'; }
pixel_is() { [ "$(pixel "$1" "$2")" = "$3" ]; }
pixel_is_not() { ! pixel_is "$@"; }
yellow='#FFCB00'

# The window's left top corner, and on which screen.
start_program() {
    "$program" "$1" "$2" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    expect ready
    eventually pixel_is $(($1 + 5)) $(($2 + 5)) '#D8D8D8' || fail "no window"
    activate_ready "$pid"
}

# shows_at X Y POINTER_X POINTER_Y: a tip is seen for three seconds after a move, which may be less
# than a machine takes to look. Then the pointer moves again.
shows_at() {
    local turn look
    for turn in $(seq 8); do
        xdotool mousemove $(($3 + turn % 2)) "$4"
        for look in $(seq 12); do
            ! pixel_is "$1" "$2" "$yellow" || return 0
            sleep 0.25
        done
    done
    fail "no tip: $(pixel "$1" "$2")"
}
is_gone_from() { eventually pixel_is_not "$1" "$2" "$yellow" || fail "the tip stays"; }

# Below the pointer; it takes neither the focus nor the click.
shows() {
    start_program 100 120
    shows_at 142 171 140 150
    [ "$(xdotool getactivewindow)" = "$window" ] || fail "it has taken the focus"
    xdotool click 1
    expect pressed
    is_gone_from 142 171
    shows_at 142 171 140 150
    xdotool mousemove 139 150
    is_gone_from 142 171
}

# Whole, in the corner of the screen.
corner() {
    start_program 960 660
    shows_at 1021 709 1000 690
}

start_server
"$scenario"
