#!/usr/bin/env bash
# Entry fields and an editor on a real screen: texts.sh SCENARIO PROGRAM. Starts its own X server
# and window manager, runs the program, types, clicks and cuts, and compares what the program
# prints. Ends what it started and nothing else.
scenario=$1 program=$2
. "$(dirname "$0")/screen.sh"

start_program() {
    "$program" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    activate_ready "$pid"
}
click_editor() { click_at 150 240; }
click_field() { click_at 270 135; }
# Another program's word for what is selected or was copied.
clip_is() { [ "$(timeout 20 xclip -o -selection "$1" 2>/dev/null)" = "$2" ]; }

# On a screen of twice the pixels letters are as sharp as those allow. Enlarged ones would come in
# squares of four.
sharp() {
    eventually broken_squares || fail "it is an enlarged picture: $squares pixels are of its own"
}
squares=none
broken_squares() {
    import -window root -crop 500x160+220+260 +repage -depth 8 "$folder/picture.png"
    squares=$(convert "$folder/picture.png" \( +clone -sample 50% -sample 200% \) -metric AE \
        -compare -format '%[distortion]' info:)
    [ "$(printf '%.0f' "$squares")" -gt 200 ]
}

field() {
    xdotool type 'Hello 1.'
    expect 'input Hello 1\.'
    xdotool key BackSpace
    expect 'input Hello 1'
    xdotool key Return
    expect 'enter Hello 1'
    expect_not 'changed .*'
}

# What is typed is told, and stars are shown.
password() {
    xdotool key Tab
    xdotool type 'pass'
    expect 'input \*\*\*\*'
    xdotool key Return
    expect 'enter pass'
    click_field
    xdotool type 'x'
    expect 'input x'
}

tabs() {
    xdotool key Tab
    xdotool type 'p'
    expect 'input \*'
    xdotool key shift+Tab
    xdotool type 'f'
    expect 'input f'
}

editor() {
    click_editor
    xdotool type 'one two'
    expect 'changed 7 one two'
    xdotool key Return
    xdotool type 'three'
    expect 'changed 13 one two\|three'
    xdotool key ctrl+BackSpace
    expect 'changed 8 one two\|'
    xdotool key ctrl+z
    expect 'changed 13 one two\|three'
}

# A double click takes a word; the next key takes its place. On a machine that has much to do the
# second press may come too late.
type_over_word() {
    xdotool key ctrl+a
    xdotool type 'one two'
    expect 'changed 7 one two'
    mark
    xdotool mousemove 122 208 click --repeat 2 --delay 10 1
    rest
    xdotool type 'x'
    expect 'changed .*'
}
select_all_of_line() {
    xdotool mousemove 111 208 mousedown 1 mousemove 180 209 mousemove 300 210 mouseup 1
    rest
}
pointer() {
    click_editor
    try_until type_over_word said 'changed 5 x two' || fail "no word is replaced"
    mark
    click_editor
    select_all_of_line
    xdotool type 'y'
    expect 'changed 1 y'
}

paste_keys() { xdotool key ctrl+v; }  # in vain while another program is too slow to answer
clipboard() {
    printf 'from another' | timeout 60 xclip -i -selection clipboard
    click_editor
    try_until paste_keys said 'changed 12 from another' || fail "nothing is pasted"
    xdotool key ctrl+a ctrl+c
    eventually clip_is clipboard 'from another' || fail "no copy"
    xdotool key ctrl+x
    expect 'changed 0 '
    click_field
    xdotool key ctrl+v
    expect 'input from another'
    xdotool type '!'
    expect 'input from another!'
}

# Selecting is enough for other programs, and theirs for the middle button.
primary() {
    click_editor
    xdotool type 'one two'
    expect 'changed 7 one two'
    select_all_of_line
    eventually clip_is primary 'one two' || fail "no selection"
    printf 'other ' | timeout 60 xclip -i -selection primary
    xdotool mousemove 111 208 click 2
    expect 'changed 13 other one two'
}

# Accents that wait for their letter, by the keyboard and by the Compose key.
accents() {
    # The click first: the window manager may drop one while it learns the keymap.
    click_editor
    xdotool type 'x'
    expect 'changed 1 x'
    xdotool key BackSpace
    expect 'changed 0 '
    setxkbmap -display "$DISPLAY" -layout us -variant intl -option compose:ralt || fail "no keymap"
    xdotool key dead_acute e
    expect 'changed 2 é'
    xdotool key Multi_key quotedbl a
    expect 'changed 4 éä'
    xdotool key BackSpace
    expect 'changed 2 é'
    xdotool key dead_circumflex space
    expect 'changed 3 é\^'
}

# What is selected is dragged to another program, which is a second one of the same.
drag_out() {
    local first=$window first_log=$log
    click_editor
    xdotool type 'one two'
    expect 'changed 7 one two'
    log=$folder/second
    start_program
    xdotool windowmove "$window" 600 300
    eventually moved_to 600 300 || fail "not moved"
    activate "$first"
    try_until drag_all said 'changed 7 one two' || fail "nothing is dropped"
    # And inside of the first it is over.
    log=$first_log
    mark
    click_at 300 215
    xdotool type '!'
    expect 'changed 8 one two!'
}
drag_all() {
    xdotool key ctrl+a
    drag 120 208 130 212 150 230 350 300 420 340 500 380 640 400 650 410 655 412
    let_go "$1"
}
moved_to() {
    local X Y
    eval "$(xdotool getwindowgeometry --shell "$window")"
    [ "$X" -ge "$1" ] && [ "$Y" -ge "$2" ]
}

[ "$scenario" != sharp ] || export QT_SCALE_FACTOR=2
start_server
start_program
"$scenario"
