#!/usr/bin/env bash
# One scenario of tests/display/CMakeLists.txt: scenarios.sh NAME LISTENER DRAG_SOURCE [NO_ROOM].
# Starts its own X server and window manager, runs the listener, plays the user, and compares what
# the listener prints. Ends what it started and nothing else.
scenario=$1 listener=$2 drag_source=$3 no_room=${4:-}
. "$(dirname "$0")/screen.sh"

client_frame() {
    xwininfo -id "$window" | awk '/Absolute upper-left X/ {x = $4} /Absolute upper-left Y/ {y = $4}
        /Width:/ {w = $2} /Height:/ {h = $2} END {print x, y, w, h}'
}
frame_is() { [ "$(client_frame)" = "$1" ]; }
scale=1  # of the screen: its pixels a pixel of the program's
factor= fonts=  # what the user has set instead
scaled() { echo "$@" | awk -v s="$scale" '{ for (i = 1; i <= NF; i++) printf "%s%d", (i > 1 ? " " : ""), $i * s + 0.5 }'; }
expect_frame() { eventually frame_is "$1" || fail "client area $(client_frame), not $1"; }
pixel() { import -window root -crop "1x1+$1+$2" -depth 8 txt:- | grep -oE '#[0-9A-F]{6}'; }
pixel_is() { [ "$(pixel "$1" "$2")" = "$3" ]; }

start_listener() {
    "$listener" "$@" >"$log" 2>&1 &
    program=$!
    started+=("$program")
    eventually listener_shows || fail "no window"
    eventually find_window || fail "client area $(client_frame), not $(scaled 100 120 300 200)"
    expect ready
}
find_window() {
    for window in $(xdotool search --onlyvisible --pid "$program"); do
        ! frame_is "$(scaled 100 120 300 200)" || return 0
    done
    return 1
}
listener_shows() { window_shows "$program"; }

# A bystander to take the focus.
start_other() { start_source "$drag_source" "$@"; }

frame() { :; }  # the start has looked at it

picture() {
    eventually pixel_is 100 120 '#2060C0' || fail "left top pixel is $(pixel 100 120)"
    eventually pixel_is 399 319 '#2060C0' || fail "right bottom pixel is $(pixel 399 319)"
    # What was covered comes back.
    start_other
    xdotool windowmove "$other" 150 150
    eventually pixel_is 160 160 '#FF0000' || fail "the other window does not cover"
    mark
    xdotool windowmove "$other" 600 400
    eventually pixel_is 160 160 '#2060C0' || fail "uncovered pixel is $(pixel 160 160)"
    expect 'redrawn 299'
}

# The X server reads the window's pixels where they are: Qt's copy of them goes.
shared() {
    local maps=/proc/$program/maps
    eventually pixel_is 399 319 '#2060C0' || fail "right bottom pixel is $(pixel 399 319)"
    no_copy() { [ "$(grep rw-s "$maps" | grep -oc 'memfd:window pixels')" = "$(grep -c rw-s "$maps")" ]; }
    eventually grep -q 'memfd:window pixels' "$maps" || fail "the pixels are not shared"
    eventually no_copy || fail "not one copy: $(grep rw-s "$maps")"
    # Of each size.
    xdotool windowsize "$window" 350 260
    expect 'resized 349 259'
    eventually pixel_is 440 370 '#D8D8D8' || fail "what it grew by is $(pixel 440 370)"
    activate "$window"
    xdotool mousemove 150 170 click 1
    eventually pixel_is 399 319 '#2060C0' || fail "its picture is gone"
    # And after it was away.
    xdotool windowminimize "$window"
    expect 'minimized 1'
    xdotool windowactivate "$window"
    expect 'minimized 0'
    eventually pixel_is 399 319 '#2060C0' || fail "its picture does not come back"
    eventually no_copy || fail "not one copy: $(grep rw-s "$maps")"
}

# Who is clicked comes in front of other programs' windows.
front() {
    start_other
    xdotool windowmove "$other" 150 150
    eventually pixel_is 160 160 '#FF0000' || fail "the other window does not cover"
    xdotool mousemove 110 130 click 1
    expect 'press 10 10 1 1'
    eventually pixel_is 160 160 '#2060C0' || fail "it stays behind"
}

# Two clicks that a person made slowly are two, though the program sees both at once.
slow_program() {
    activate "$window"
    xdotool mousemove 150 170 click 2
    expect 'press 50 50 4 1'
    mark
    kill -STOP "$program"
    xdotool click 1
    sleep 0.8
    xdotool click 1
    kill -CONT "$program"
    both() { [ "$(tail -n "+$((mark + 1))" "$log" | grep -c '^press')" = 2 ]; }
    eventually both || fail "not two presses"
    expect_not 'press 50 50 1 2'
}

# A screen of smaller pixels: the program's numbers are its own, and its picture fills the window.
scaled_screen() {
    local right bottom
    right=$(($(scaled 400) - 1)) bottom=$(($(scaled 320) - 1))
    eventually pixel_is "$(scaled 100)" "$(scaled 120)" '#2060C0' || fail "no picture at its left top"
    eventually pixel_is "$right" "$bottom" '#2060C0' || fail "right bottom is $(pixel "$right" "$bottom")"
    xdotool mousemove "$(scaled 150)" "$(scaled 170)" click 1
    expect 'press 50 50 1 1'
    xdotool mousemove "$right" "$bottom" click 1
    expect 'press 299 199 1 1'
    xdotool windowmove "$window" "$(scaled 20)" "$(scaled 40)"
    expect 'moved 20 40'
    expect_frame "$(scaled 20 40 300 200)"
    xdotool windowsize "$window" "$(scaled 320)" "$(scaled 220)"
    expect 'resized 319 219'
    right=$(($(scaled 340) - 1)) bottom=$(($(scaled 260) - 1))
    eventually pixel_is "$right" "$bottom" '#D8D8D8' || fail "what it grew by is $(pixel "$right" "$bottom")"
    eventually pixel_is "$(scaled 20)" "$(scaled 40)" '#2060C0' || fail "its picture is gone"
}
scaled_twice() { scaled_screen; }
scaled_between() { scaled_screen; }
scaled_by_font() { scaled_screen; }
scaled_by_large_font() { scaled_screen; }
# What is no scale is 1, and the largest is 4.
bad_font() { scaled_screen; }
bad_scale() { scaled_screen; }
negative_scale() { scaled_screen; }
no_scale() { scaled_screen; }
huge_scale() { scaled_screen; }

# Two screens beside each other, the second one of twice the pixels: a window has its size, and what
# it shows is sharp, on both.
add_screens() {
    xrandr --setmonitor left 1000/250x768/200+0+0 screen >"$folder/screens" &&
        xrandr --setmonitor right 1000/250x768/200+1000+0 none >>"$folder/screens" ||
        fail "no second screen: $(cat "$folder/screens")"
    unset QT_SCALE_FACTOR
    export QT_SCREEN_SCALE_FACTORS='1;2'
}
two_screens() {
    activate "$window"
    xdotool windowmove "$window" 1200 100
    eventually frame_is '1200 100 600 400' || fail "on the finer screen it is $(client_frame)"
    expect 'moved 1100 50'
    eventually pixel_is 1200 100 '#2060C0' && eventually pixel_is 1799 499 '#2060C0' ||
        fail "its picture does not fill it"
    xdotool mousemove 1799 499 click 1
    expect 'press 299 199 1 1'
    xdotool windowmove "$window" 300 100
    eventually frame_is '300 100 300 200' || fail "back on the coarser screen it is $(client_frame)"
    eventually pixel_is 599 299 '#2060C0' || fail "its picture does not fill it"
    xdotool mousemove 599 299 click 1
    expect 'press 299 199 1 1'
    expect_not 'resized.*'
}

# The program brings it back itself, before or after it is moved.
lies_on_what_is_left() {
    frame_is '300 100 300 200' && return
    xdotool windowmove "$window" 300 100
    return 1
}

# The screen that the window is on goes: it is still there, as large as before, on what is left.
unplugged() {
    xdotool windowmove "$window" 1200 100
    eventually frame_is '1200 100 600 400' || fail "on the finer screen it is $(client_frame)"
    xrandr --delmonitor right
    eventually lies_on_what_is_left || fail "on the screen that is left it is $(client_frame)"
    eventually pixel_is 300 100 '#2060C0' && eventually pixel_is 599 299 '#2060C0' ||
        fail "its picture does not fill it"
    xdotool mousemove 350 160 click 1
    expect 'press 50 60 1 1'
    xdotool mousemove 599 299 click 1
    expect 'press 299 199 1 1'
}

few_colors() {
    eventually pixel_is 100 120 '#2061C5' || fail "left top pixel is $(pixel 100 120)"
    eventually pixel_is 399 319 '#2061C5' || fail "right bottom pixel is $(pixel 399 319)"
}

# What could not be shown for want of memory is shown when there is some, though nothing else
# happens.
no_room() {
    ! pixel_is 110 130 '#2061C5' || fail "it is shown without memory"
    touch "$NO_ROOM_UNTIL"
    eventually pixel_is 110 130 '#2061C5' || fail "pixel is $(pixel 110 130)"
    eventually pixel_is 399 319 '#2061C5' || fail "right bottom pixel is $(pixel 399 319)"
}

click_thrice() {
    mark
    sleep 0.6  # no part of the clicks before
    xdotool click 1 click 1 click 1
}
clicked_thrice() { said 'press 50 50 1 1' && said 'press 50 50 1 2' && said 'press 50 50 1 3'; }
clicks() {
    xdotool mousemove 150 170
    expect 'pointer 50 50'
    try_until click_thrice clicked_thrice || fail "not three clicks in a row"
    mark
    sleep 0.6
    xdotool click 1
    expect 'press 50 50 1 1'
    xdotool click 3
    expect 'press 50 50 2 1'
    xdotool click 2
    expect 'press 50 50 4 1'
    mark
    xdotool mousemove 100 120 click 1
    expect 'press 0 0 1 1'
    xdotool mousemove 399 319 click 1
    expect 'press 299 199 1 1'
    # Not in the window, not in its handler.
    mark
    xdotool mousemove 700 600 click 1
    xdotool mousemove 150 170
    expect 'pointer 50 50'
    expect_not 'press.*'
}

keys() {
    activate "$window"
    xdotool key a F1 F12 Left Right Up Down BackSpace Return Escape Tab space
    expect 'key 97 0'
    expect 'key 202 0'
    expect 'key 213 0'
    expect 'key 28 0'
    expect 'key 29 0'
    expect 'key 30 0'
    expect 'key 31 0'
    expect 'key 8 0'
    expect 'key 10 0'
    expect 'key 27 0'
    expect 'key 32 0'
}

# Holds a modifier until the key has been heard: handlers ask what is held at that moment.
press_with() {
    xdotool keydown "$1" key "$2"
    expect "$3"
    xdotool keyup "$1"
}

modifiers() {
    activate "$window"
    press_with shift b 'key 66 1'
    press_with ctrl g 'key 7 4'
    press_with shift F2 'key 203 1'
    mark
    xdotool key b
    expect 'key 98 0'
}

move_and_resize() {
    xdotool windowmove "$window" 200 240
    expect 'moved 200 240'
    expect_frame "200 240 300 200"
    xdotool windowsize "$window" 350 260
    expect 'resized 349 259'
    expect_frame "200 240 350 260"
    mark
    # By its title, with the mouse.
    xdotool mousemove 300 230 mousedown 1
    for step in 10 20 30 40; do
        sleep 0.1
        xdotool mousemove $((300 + step)) $((230 + step))
    done
    xdotool mouseup 1
    expect 'moved 240 280'
    expect_frame "240 280 350 260"
    xdotool mousemove 270 300 click 1
    expect 'press 30 20 1 1'
}

minimize() {
    xdotool windowminimize "$window"
    expect 'minimized 1'
    xdotool windowactivate "$window"
    expect 'minimized 0'
    expect_frame "100 120 300 200"
}

# By a double click on the title; back the same way.
click_title_twice() { xdotool click --repeat 2 --delay 50 1; }
zoom() {
    xdotool mousemove 250 110
    try_until click_title_twice said zoomed || fail "not zoomed"
    expect 'moved 0 [0-9]+'
    expect 'resized 1[0-9]{3} [0-9]+'
    sleep 0.6
    mark
    xdotool mousemove 500 10
    try_until click_title_twice said zoomed || fail "not zoomed back"
    expect_frame "100 120 300 200"
    mark
    xdotool mousemove 150 170 click 1
    expect 'press 50 50 1 1'
    expect_not zoomed
}

workspaces() {
    xdotool set_desktop_for_window "$window" 2
    expect 'workspaces ffffffff 4'
    xdotool set_desktop_for_window "$window" 0
    expect 'workspaces 4 1'
}

# The button comes up when its window is gone. The next press is one all the same.
self_closing() {
    xdotool mousemove 550 170 mousedown 1
    expect 'closes itself 50 50 1 1'
    only_one() { [ "$(xdotool search --onlyvisible --pid "$program" | wc -l)" = 1 ]; }
    eventually only_one || fail "the second window is still there"
    mark
    xdotool mouseup 1 mousemove 150 170 click 1
    expect 'press 50 50 1 1'
}

# The window may have become active before its handlers were set, and then said nothing. Who takes
# the focus for less than half a second is not told of: each step is as slow as a hand.
is_inactive() { [ "$(grep activated "$log" | tail -n 1)" = deactivated ]; }
leave_and_come() {
    activate "$other"
    sleep 0.8
    activate "$window"
}
activation() {
    start_other
    xdotool windowmove "$other" 600 400
    try_until leave_and_come said activated || fail "the window says nothing of the focus"
    activate "$other"
    eventually is_inactive || fail "the window keeps the focus"
    mark
    activate "$window"
    expect activated
    mark
    activate "$other"
    expect deactivated
    mark
    xdotool mousemove 150 170 click 1
    expect activated
    expect 'press 50 50 1 1'
}

# The window manager drops a key now and then that comes while it moves the focus.
press_close() { xdotool key alt+F4; }
close() {
    activate "$window"
    try_until press_close said refused || fail "nobody asks the window to close"
    expect_frame "100 120 300 200"
    try_until press_close said closing || fail "nobody asks the window to close again"
    gone() { ! kill -0 "$program"; }
    eventually gone || fail "the process lives on"
    wait "$program"
    status=$?
    [ $status -eq 0 ] || fail "exit status $status"
}

drop() {
    touch "$folder/one file" "$folder/zwei"
    start_other "$folder/one file" "$folder/zwei"
    drop_until 250 200 "dropped $folder/one file"
    expect "dropped $folder/zwei"
}

# A message bus that takes connections and says nothing.
start_silent_bus() {
    python3 -c 'import socket, sys, time
bus = socket.socket(socket.AF_UNIX)
bus.bind(sys.argv[1])
bus.listen()
time.sleep(1000)' "$folder/silent" &
    started+=($!)
    eventually test -S "$folder/silent" || fail "no bus"
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$folder/silent
}

# It has its window all the same.
silent_bus() {
    xdotool mousemove 150 170 click 1
    expect 'press 50 50 1 1'
}

# A Wayland display that does not answer beside an X server that does.
x_beside_dead_wayland() {
    xdotool mousemove 150 170 click 1
    expect 'press 50 50 1 1'
}

# A display that does not answer: the program runs in memory, says so, and can be ended.
exit_without_display() {
    : >"$log"
    [ "$scenario" = exit_without_wayland ] || export DISPLAY=:54321
    "$listener" >"$log" 2>"$folder/err" &
    program=$!
    started+=("$program")
    expect ready
    grep -q 'windows stay in memory' "$folder/err" || fail "it does not say so"
    [ "$(grep -c 'in memory' "$folder/err")" -eq 1 ] || fail "it says so more than once"
}

# The same of a Wayland display alone.
exit_without_wayland() {
    unset DISPLAY
    export WAYLAND_DISPLAY=wayland-not-there
    exit_without_display
}

if [[ $scenario != exit_without_* ]]; then
    case $scenario in
    few_colors) depth=16 ;;
    no_room) depth=16 NO_ROOM_UNTIL=$folder/room && export NO_ROOM_UNTIL ;;
    scaled_twice) scale=2 ;;
    scaled_between) scale=1.5 ;;
    scaled_by_font) scale=1.5 fonts=144 ;;
    scaled_by_large_font) scale=2 fonts=192 ;;
    bad_font) fonts=many ;;
    bad_scale) factor=0 ;;
    negative_scale) factor=-2 ;;
    no_scale) factor=two ;;
    huge_scale) scale=4 factor=100 extent=2400x1800 ;;
    two_screens | unplugged) extent=2000x768 ;;
    silent_bus) start_silent_bus ;;
    x_beside_dead_wayland) export WAYLAND_DISPLAY=wayland-not-there XDG_SESSION_TYPE=wayland ;;
    esac
    [ -n "$fonts" ] || export QT_SCALE_FACTOR=${factor:-$scale}
    start_server
    [[ $scenario != two_screens && $scenario != unplugged ]] || add_screens
    [ -z "$fonts" ] || echo "Xft.dpi: $fonts" | xrdb -merge
    case $scenario in
    self_closing) start_listener with-a-second ;;
    no_room) LD_PRELOAD=$no_room start_listener ;;
    *) start_listener ;;
    esac
fi
"$scenario"
