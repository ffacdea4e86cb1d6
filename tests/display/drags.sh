#!/usr/bin/env bash
# Drags between programs on a real screen: drags.sh SCENARIO PROGRAM OTHER_PROGRAM. Starts its own X
# server and window manager, runs both, plays the user, and compares what they print. Ends what it
# started and nothing else.
scenario=$1 program=$2 other_program=$3
. "$(dirname "$0")/screen.sh"

other_said() { grep -qxE -- "$1" "$folder/other"; }
expect_other() { eventually other_said "$1" || fail "no line \"$1\" of: $(cat "$folder/other")"; }
pixel() { import -window root -crop "1x1+$1+$2" -depth 8 txt:- | grep -oE '#[0-9A-F]{6}'; }
pixel_is() { [ "$(pixel "$1" "$2")" = "$3" ]; }
# Some of the pixels from a place on, two by two, are of a colour, and some are of another.
mixes() {
    import -window root -crop "2x2+$1+$2" -depth 8 txt:- >"$folder/pixels"
    grep -q "$3" "$folder/pixels" && grep -q "$4" "$folder/pixels"
}

start_program() {
    "$program" "$folder/a file" >"$log" 2>&1 &
    started+=($!)
    eventually pixel_is 110 130 '#2060C0' || fail "no window"
    expect ready
}
start_other() {
    "$other_program" "$@" >"$folder/other" 2>&1 &
    started+=($!)
    eventually pixel_is 650 170 '#FF0000' || fail "no second program"
}
# Presses at the place, and moves to others.
drag() {
    xdotool mousemove "$1" "$2" mousedown 1
    shift 2
    while [ $# -gt 0 ]; do
        sleep 0.05
        xdotool mousemove "$1" "$2"
        shift 2
    done
}
# Out of the program, to the other one.
drag_out() {
    drag "$1" 200 "$(($1 + 20))" 200
    expect drag
    drag_on 450 200 640 160 650 170
    expect_other held
    xdotool mouseup 1
}
drag_on() {
    while [ $# -gt 0 ]; do
        xdotool mousemove "$1" "$2"
        shift 2
    done
}

text() {
    drag_out 110
    expect_other 'got text dragged ä'
}
file() {
    drag_out 210
    expect_other 'got file a file'
}
picture() {
    drag_out 310
    expect_other 'got picture 4 x 2'
}

# Half of the dots where nothing blends.
shows() {
    drag 110 200 450 500
    expect drag
    eventually mixes 440 490 '#FF0000' '#000000' || fail "not in sight: $(cat "$folder/pixels")"
    xdotool mousemove 800 500
    eventually mixes 790 490 '#FF0000' '#000000' || fail "it does not follow"
    eventually pixel_is 450 500 '#000000' || fail "it is left behind"
    xdotool mouseup 1
    gone() { ! mixes 790 490 '#FF0000' '#000000'; }
    eventually gone || fail "it stays after the drop"
    expect_not 'dropped .*'
}

escape() {
    drag 110 200 120 200
    expect drag
    drag_on 450 200 640 160 650 170
    expect_other held
    xdotool key Escape
    expect_other left
    gone() { pixel_is 650 170 '#FF0000' && pixel_is 651 170 '#FF0000'; }
    eventually gone || fail "the picture stays"
    xdotool mouseup 1
    ! other_said 'got .*' || fail "dropped all the same"
    expect_not 'dropped .*'
}

# Who does not want it gets nothing; the next drag is one as any other.
refused() {
    drag_out 110
    expect_other left
    ! other_said 'got .*' || fail "dropped all the same"
}

# Over a window of ours that another program's covers, and then over the part that is free.
cover() {
    drag 110 200 120 200
    xdotool windowraise "$wid"
    eventually pixel_is 300 280 '#FF0000' || fail "it does not cover"
}
covered() {
    wid=$(xdotool search --onlyvisible --name 'drag source' | tail -n 1)
    xdotool windowmove "$wid" 250 200
    cover
    expect drag
    drag_on 290 270 300 280
    expect_other held
    xdotool mouseup 1
    expect_other 'got text dragged ä'
    expect_not 'dropped .*'
    cover
    drag_on 300 280 150 300
    xdotool mouseup 1
    expect 'dropped text dragged ä'
    expect 'dropped at 150 300'
}

# Into the program.
drag_in() {
    drag 650 170 640 170 500 200 300 200 250 200
    sleep "${1:-0.3}"
    xdotool mouseup 1
}
# The other program drops where it was last answered, so that a slow one is given more time.
text_in() {
    local rest
    for rest in 0.3 1 4; do
        mark
        drag_in "$rest"
        expect 'dropped text fallen ü'
        expect 'dropped at .*'
        said 'dropped at 250 200' && return
    done
    fail "not dropped at 250 200"
}
picture_in() {
    drag_in
    expect 'dropped image/png'
}
file_in() {
    drag_in
    expect 'dropped file a file'
}

# Two programs of our kind: the whole message goes over, but for addresses.
message() {
    started_other_at_right
    drag 110 200 120 200
    expect drag
    drag_on 550 200 640 200 650 200
    sleep 0.3
    xdotool mouseup 1
    expect_other 'dropped text dragged ä'
    expect_other 'dropped buttons'
    expect_other 'dropped at 650 200'
    ! other_said 'dropped here' || fail "an address went over"
}
started_other_at_right() {
    "$program" right >"$folder/other" 2>&1 &
    started+=($!)
    eventually pixel_is 610 130 '#2060C0' || fail "no second program"
}

start_server
touch "$folder/a file"
start_program
case $scenario in
text_in) start_other --text ;;
picture_in) start_other --picture ;;
file_in) start_other "$folder/a file" ;;
refused) start_other --refuse ;;
message) ;;
*) start_other ;;
esac
"$scenario"
