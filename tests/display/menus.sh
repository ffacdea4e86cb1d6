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

# start_program [X Y]: where its window opens.
start_program() {
    mkfifo "$folder/calls"
    "$program" "$@" <"$folder/calls" >"$log" 2>&1 &
    exec {calls}>"$folder/calls"
    pid=$!
    started+=("$pid")
    [ "$scenario" != at_once ] || return 0
    activate_ready "$pid"
}
start_other() {
    start_source "$other_program"
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

# So fast that the window has it all before the menu is on the screen, and while it goes again. No
# window manager holds the presses meanwhile.
at_once() {
    local all i way
    expect ready
    eventually shows 1 || fail "no window"
    window=$(xdotool search --onlyvisible --pid "$pid")
    xdotool windowfocus --sync "$window"
    for i in $(seq 8); do
        for way in "mousedown 1 mousemove 120 140 mousemove 130 153 mouseup 1" \
            "click 1 mousemove 130 153 click 1"; do
            mark
            xdotool mousemove 112 131 $way
            expect 'choice 101'
        done
        mark
        xdotool key --delay 0 F10 Right Down Return a b
        expect 'key 98 0'
        all=$(tail -n "+$((mark + 1))" "$log" | grep -vx menus | paste -sd,)
        [ "$all" = 'choice 202,key 97 0,key 98 0' ] || fail "it is $all"
    done
    expect_not 'press .*'
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

# Only Alt is the Command key then, and Ctrl makes control characters again.
command_key() {
    PLINTH_COMMAND_KEY=alt start_program
    xdotool key ctrl+o
    expect 'key 15 .*'
    expect_not 'choice .*'
    xdotool key alt+o
    expect 'choice 101'
}

ended() { ! kill -0 "$pid"; }
closing_item() {
    open_file
    xdotool mousemove 130 211 click 1
    expect 'choice 105'
    eventually ended || fail "the program goes on without a window"
}

closed_meanwhile() {
    open_file
    echo close >&"$calls"
    eventually ended || fail "the program goes on"
    expect_not 'choice .*'
}

freeing_item() {
    open_file
    xdotool mousemove 130 231 click 1
    expect 'choice 106'
    expect 'attached 0'
    expect_menus 0
    xdotool mousemove 112 131 click 1
    expect 'press 12 11 1 1'
}

# At the corner of the screen, and taller than it.
file_menu=none
menu() {
    xdotool search --onlyvisible --pid "$pid" | grep -vxe "$window" -e "$file_menu" | head -n 1
}
menu_frame() {
    xwininfo -id "$(menu)" | awk '/Absolute upper-left X/ {x = $4} /Absolute upper-left Y/ {y = $4}
        /Width:/ {w = $2} /Height:/ {h = $2} END {print x, y, x + w, y + h}'
}
within_screen() {
    local frame
    read -r -a frame <<<"$(menu_frame)"
    [ "${frame[0]}" -ge 0 ] && [ "${frame[1]}" -eq 0 ] && [ "${frame[2]}" -eq 1011 ] &&
        [ "${frame[3]}" -eq 768 ]
}
tall() {
    start_program 720 560
    xdotool mousemove 1010 750 click 3
    expect_menus 1
    eventually within_screen || fail "the menu is at $(menu_frame)"
    xdotool key End Return
    expect 'choice 100'
    expect_menus 0
    xdotool click 3
    expect_menus 1
    # Ten times three lines down; the items below the strip follow each other every 20 pixels or so.
    xdotool mousemove 1000 300
    for _ in 1 2 3 4 5 6 7 8 9 10; do xdotool click 5; done
    xdotool click 1
    expect 'choice [45][0-9]'
    expect_menus 0
}

# A title in the corner: its menu opens above it, and the submenu to the left of that.
edges() {
    start_program 950 690
    xdotool mousemove 962 701 click 1
    expect_menus 1
    eventually above || fail "the menu is at $(menu_frame)"
    read -r -a file_frame <<<"$(menu_frame)"
    file_menu=$(menu)
    xdotool key Down Down Down Right
    expect_menus 2
    eventually beside || fail "the submenu is at $(menu_frame), not beside ${file_frame[*]}"
    xdotool key Return
    expect 'choice 103'
    expect_menus 0
}
above() {
    local frame
    read -r -a frame <<<"$(menu_frame)"
    [ "${frame[1]}" -gt 500 ] && [ "${frame[3]}" -le 691 ] && [ "${frame[2]}" -le 1024 ]
}
beside() {
    local frame
    read -r -a frame <<<"$(menu_frame)"
    [ "${frame[0]}" -gt 800 ] && [ "${frame[2]}" -le $((file_frame[0] + 1)) ]
}

[ "$scenario" = at_once ] && start_server none || start_server
case $scenario in
    command_key | tall | edges) ;;
    *) start_program ;;
esac
"$scenario"
