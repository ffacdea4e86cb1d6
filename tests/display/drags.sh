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
    start_source "$other_program" "$@"
    eventually pixel_is 650 170 '#FF0000' || fail "no second program"
}
# drag_out X LINE: out of the program, to the other one, until that has said the line.
drag_out() {
    local from=$1
    try_until drag_over other_said "$2" || fail "no line \"$2\" of: $(cat "$folder/other")"
}
drag_over() {
    mark
    drag "$from" 200 "$((from + 20))" 200
    expect drag
    drag_on 450 200 640 160 650 170
    expect_other held
    let_go "$1"
}
drag_on() {
    while [ $# -gt 0 ]; do
        xdotool mousemove "$1" "$2"
        shift 2
    done
}

text() {
    drag_out 110 'got text dragged ä'
}
file() {
    drag_out 210 'got file a file'
}
picture() {
    drag_out 310 'got picture 4 x 2'
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
    drag_out 110 left
    ! other_said 'got .*' || fail "dropped all the same"
}

# Over a window of ours that another program's covers, and then over the part that is free.
cover() {
    mark
    drag 110 200 120 200
    xdotool windowraise "$other"
    eventually pixel_is 300 280 '#FF0000' || fail "it does not cover"
    expect drag
}
drop_on_cover() {
    cover
    drag_on 290 270 300 280
    expect_other held
    let_go "$1"
}
drop_beside_cover() {
    cover
    drag_on 300 280 150 300
    let_go "$1"
}
covered() {
    xdotool windowmove "$other" 250 200
    try_until drop_on_cover other_said 'got text dragged ä' || fail "no text: $(cat "$folder/other")"
    expect_not 'dropped .*'
    try_until drop_beside_cover said 'dropped at 150 300' || fail "not dropped at 150 300"
    expect 'dropped text dragged ä'
}

# Into the program.
text_in() {
    drop_until 250 200 'dropped at 250 200'
    expect 'dropped text fallen ü'
}
picture_in() { drop_until 250 200 'dropped image/png'; }
file_in() { drop_until 250 200 'dropped file a file'; }

# Two programs of our kind: the whole message goes over, but for addresses.
drag_message() {
    mark
    drag 110 200 120 200
    expect drag
    drag_on 550 200 640 200 650 200
    let_go "$1"
}
message() {
    started_other_at_right
    try_until drag_message other_said 'dropped at 650 200' || fail "no drop: $(cat "$folder/other")"
    expect_other 'dropped text dragged ä'
    expect_other 'dropped buttons'
    ! other_said 'dropped here' || fail "an address went over"
}
# So fast that the button is up before the picture is on the screen; none may be lost.
flicks() {
    local i
    started_other_at_right
    for i in $(seq 12); do
        xdotool mousemove 110 200 mousedown 1 mousemove 120 200 mousemove 550 200 \
            mousemove 650 200 mouseup 1
        drops() { [ "$(grep -c 'dropped at' "$folder/other")" = "$i" ]; }
        eventually drops || fail "flick $i is lost: $(cat "$folder/other")"
    done
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
message | flicks) ;;
*) start_other ;;
esac
"$scenario"
