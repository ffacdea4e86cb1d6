#!/usr/bin/env bash
# Lists and tabs on a real screen: lists.sh SCENARIO PROGRAM OTHER_PROGRAM. Starts its own X server
# and window manager, runs the program, plays the user, and compares what the program prints. Ends
# what it started and nothing else.
scenario=$1 program=$2 other_program=$3
. "$(dirname "$0")/screen.sh"

start_program() {
    "$program" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    eventually window_shows "$pid" || fail "no window"
    expect ready
    window=$(xdotool search --onlyvisible --pid "$pid" | head -n 1)
    activate "$window"
}
# click_row ROW [KEY]: in the list, whose rows are 16 to 19 pixels high; ROW is 0, 2 or 4.
click_row() {
    local y=$((120 + 20 + $1 * 35 / 2))
    [ -z "${2:-}" ] || xdotool keydown "$2"
    xdotool mousemove 200 "$y" click 1
    [ -z "${2:-}" ] || xdotool keyup "$2"
}

modifiers() {
    click_row 2
    expect 'first 2 rows 2'
    click_row 4 shift
    expect 'first 2 rows 2 3 4'
    click_row 0 ctrl
    expect 'first 0 rows 0 2 3 4'
    mark
    click_row 2
    expect 'first 2 rows 2'
}

double_click() {
    xdotool mousemove 200 140 click --repeat 2 --delay 50 1
    expect 'first 0 rows 0'
    expect 'double 0'
}

keys() {
    click_row 0
    expect 'first 0 rows 0'
    xdotool key Down
    expect 'first 1 rows 1'
    expect 'key 31 0'
    xdotool key shift+Down
    expect 'first 1 rows 1 2'
    xdotool key End
    expect 'first 29 rows 29'
    xdotool key Home
    expect 'first 0 rows 0'
}

wheel() {
    xdotool mousemove 200 140 click --repeat 5 --delay 30 5
    xdotool mousemove 201 141 click 1
    expect 'first [1-9][0-9]* rows [1-9][0-9]*'
    mark
    xdotool mousemove 200 140 click --repeat 9 --delay 30 4
    xdotool mousemove 240 142 click 1
    expect 'first 0 rows 0'
}

outline() {
    xdotool mousemove 360 140 click 1
    expect 'outline 0 of 3'
    mark
    xdotool key Return key Return
    expect 'outline 1 of 3'
    mark
    xdotool mousemove 304 140 click 1  # the latch
    expect 'outline 0 of 3'
    mark
    xdotool mousemove 360 158 click 1
    expect 'outline 1 of 2'
}

tabs() {
    xdotool mousemove 280 282 click 1
    expect 'tab 1'
    xdotool mousemove 380 282 click 1
    expect 'tab 2'
    mark
    xdotool mousemove 180 282 click 1
    expect 'tab 0'
}

drop() {
    touch "$folder/one file"
    "$other_program" "$folder/one file" >"$folder/other" 2>&1 &
    started+=($!)
    eventually xdotool search --onlyvisible --name "drag source" || fail "no second program"
    xdotool mousemove 650 170 mousedown 1
    for x in 640 600 500 400 300 220 210; do
        xdotool mousemove "$x" 180
        sleep 0.1
    done
    sleep 0.3
    xdotool mouseup 1
    expect "dropped $folder/one file"
}

start_server
start_program
"$scenario"
