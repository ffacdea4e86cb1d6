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
    activate_ready "$pid"
}
# click_row ROW SELECTED [KEY]: in the list, whose rows are 16 to 19 pixels high; ROW is 0, 2 or 4. The
# key is held until the click has its effect.
click_row() {
    local y=$((120 + 20 + $1 * 35 / 2))
    [ -z "${3:-}" ] || xdotool keydown "$3"
    xdotool mousemove 200 "$y" click 1
    expect "$2"
    [ -z "${3:-}" ] || xdotool keyup "$3"
}

modifiers() {
    click_row 2 'first 2 rows 2'
    click_row 4 'first 2 rows 2 3 4' shift
    click_row 0 'first 0 rows 0 2 3 4' ctrl
    mark
    click_row 2 'first 2 rows 2'
}

double_click() {
    click_twice() { xdotool mousemove 200 140 click --repeat 2 --delay 50 1; }
    try_until click_twice said 'double 0' || fail "no double click"
    expect 'first 0 rows 0'
}

keys() {
    click_row 0 'first 0 rows 0'
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
    start_source "$other_program" "$folder/one file"
    drop_until 210 180 "dropped $folder/one file"
}

start_server
start_program
"$scenario"
