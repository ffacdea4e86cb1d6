#!/usr/bin/env bash
# Menus on a real screen: menus.sh SCENARIO PROGRAM OTHER_PROGRAM. Starts its own X server and window
# manager, runs the program, plays the user, and compares what the program prints. Ends what it
# started and nothing else.
scenario=$1 program=$2 other_program=$3
. "$(dirname "$0")/screen.sh"

windows() { xdotool search --onlyvisible --pid "$pid" 2>/dev/null | wc -l; }
shows() { [ "$(windows)" -eq "$1" ]; }
# The window itself is one of them.
expect_menus() { eventually shows $(($1 + 1)) || fail "$(windows) windows, not $1 menus"; }

start_program() {
    "$program" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    eventually window_shows "$pid" || fail "no window"
    expect ready
    window=$(xdotool search --onlyvisible --pid "$pid" | head -n 1)
    activate "$window"
}
start_other() {
    "$other_program" >"$folder/other" 2>&1 &
    started+=($!)
    eventually xdotool search --onlyvisible --name "drag source" || fail "no second program"
    other=$(xdotool search --onlyvisible --name "drag source" | tail -n 1)
    xdotool windowmove "$other" 600 400
    activate "$window"
}
open_file() {
    xdotool mousemove 112 131 click 1
    expect_menus 1
}

click() {
    open_file
    xdotool mousemove 130 153 click 1
    expect 'choice 101'
    expect_menus 0
    expect_not 'press .*'
}

drag() {
    xdotool mousemove 112 131 mousedown 1
    expect_menus 1
    xdotool mousemove 130 153 mousemove 130 172 mouseup 1
    expect 'choice 102'
    expect_menus 0
}

submenu() {
    open_file
    xdotool mousemove 130 192
    expect_menus 2
    xdotool key Down key Return
    expect 'choice 103'
    expect_menus 0
}

# On another program's window, and on the desktop.
outside() {
    start_other
    for place in '650 450' '900 50'; do
        open_file
        xdotool mousemove $place click 1
        expect_menus 0
    done
    expect_not 'choice .*'
    activate "$window"
    open_file
    xdotool mousemove 130 153 click 1
    expect 'choice 101'
}

focus() {
    start_other
    open_file
    xdotool windowactivate "$other"
    expect_menus 0
    expect_not 'choice .*'
}

keys() {
    xdotool key F10
    expect_menus 1
    xdotool key Right key Down key Return
    expect 'choice 202'
    expect_menus 0
    xdotool key alt+Escape
    mark
    xdotool key ctrl+o
    expect 'choice 101'
    mark
    xdotool key alt+o
    expect 'choice 101'
    xdotool key ctrl+g
    expect 'key 7 .*'
    expect_not 'key 15 .*'
}

pop_up() {
    xdotool mousemove 250 250 click 3
    expect_menus 1
    xdotool mousemove 275 258 click 1
    expect 'choice 301'
    expect_menus 0
    xdotool mousemove 250 250 click 3
    expect_menus 1
    xdotool key Escape
    expect_menus 0
    xdotool click 1
    expect 'press 150 .*'
}

start_server
start_program
"$scenario"
