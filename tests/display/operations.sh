#!/usr/bin/env bash
# One scenario of CMakeLists.txt: operations.sh NAME PROGRAM. A program of ours is told what to do
# with its windows, and the window manager's and the X server's own tools say what came of it.
scenario=$1 program_path=$2
. "$(dirname "$0")/screen.sh"

start_program() {
    start_told "$program_path"
    eventually both_show || fail "not both windows"
    first=$(named 'first window') second=$(named 'second window')
}
named() { xdotool search --all --onlyvisible --pid "$program" --name "$1" | tail -n 1; }
both_show() { [ -n "$(named 'first window')" ] && [ -n "$(named 'second window')" ]; }
# Asks again, of what the program may not have heard yet.
asked() {
    tell "${@:1:$#-1}"
    sleep 0.05
    said "${*: -1}"
}
ask_until() { eventually asked "$@" || fail "no answer \"${*: -1}\""; }

property() { xprop -id "$1" "$2" | sed 's/^[^=:]*[=:] *//'; }
property_is() { [ "$(property "$1" "$2")" = "$3" ]; }
expect_property() { eventually property_is "$@" || fail "$2 is $(property "$1" "$2"), not $3"; }
has() { xprop -id "$1" "$2" | grep -q -- "$3"; }
expect_has() { eventually has "$@" || fail "no $3 in $(xprop -id "$1" "$2")"; }
lacks() { ! has "$@"; }
expect_lacks() { eventually lacks "$@" || fail "$3 in $(xprop -id "$1" "$2")"; }

frame() {
    xwininfo -id "$1" | awk '/Absolute upper-left X/ {x = $4} /Absolute upper-left Y/ {y = $4}
        /Width:/ {w = $2} /Height:/ {h = $2} END {print x, y, w, h}'
}
frame_is() { [ "$(frame "$1")" = "$2" ]; }
expect_frame() { eventually frame_is "$@" || fail "frame $(frame "$1"), not $2"; }
state() { xwininfo -id "$1" | awk '/Map State/ {print $3}'; }
state_is() { [ "$(state "$1")" = "$2" ]; }
active() { [ "$(xdotool getactivewindow)" = "$1" ]; }

# Functions and decorations of Motif's hints, as numbers.
motif() { xprop -id "$1" 32x _MOTIF_WM_HINTS | sed 's/.*= //' | cut -d, -f2,3 | tr -d ' '; }
motif_is() { [ "$(motif "$1")" = "$2" ]; }
expect_motif() { eventually motif_is "$@" || fail "hints $(motif "$1"), not $2"; }

titles() {
    expect_property "$first" _NET_WM_NAME '"first window"'
    tell title 1 Grüße
    expect_property "$first" _NET_WM_NAME '"Grüße"'
    tell title 1 $'Fl\xfc\xdfe'  # Latin-1, as all that is no UTF-8
    expect_property "$first" _NET_WM_NAME '"Flüße"'
    tell title 1
    expect_property "$first" _NET_WM_NAME ''
}

# Functions 0x2 resize, 0x4 move, 0x8 minimise, 0x10 maximise, 0x20 close; decorations 0x2 border,
# 0x4 handle, 0x8 title, 0x10 menu, 0x20 and 0x40 buttons.
looks() {
    expect_motif "$first" 0x3e,0x7e
    expect_has "$first" _NET_WM_WINDOW_TYPE NORMAL
    tell look 1 1
    expect_motif "$first" 0x3e,0x2
    tell look 1 2
    expect_motif "$first" 0x3e,0x2
    tell look 1 3
    expect_motif "$first" 0x3e,0x7e
    expect_has "$first" _NET_WM_WINDOW_TYPE UTILITY
    tell look 1 4
    expect_motif "$first" 0x3e,0x0
    expect_property "$first" _NET_FRAME_EXTENTS '0, 0, 0, 0'
    tell look 1 5
    expect_motif "$first" 0x3e,0x7e
    expect_has "$first" _NET_WM_WINDOW_TYPE NORMAL
    for none in 6 -1 99; do tell look 1 "$none"; done
    ask_until place 1 'at 100 120, 299 by 199'
    expect_frame "$first" '100 120 300 200'
}

press_close() { xdotool key alt+F4; }
features() {
    tell resizable 1 0
    expect_motif "$first" 0x2c,0x3a
    expect_has "$first" WM_NORMAL_HINTS 'minimum size: 300 by 200'
    expect_has "$first" WM_NORMAL_HINTS 'maximum size: 300 by 200'
    expect_lacks "$first" _NET_WM_ALLOWED_ACTIONS RESIZE
    tell resizable 1 1
    tell movable 1 0
    expect_motif "$first" 0x3a,0x7e
    expect_lacks "$first" _NET_WM_ALLOWED_ACTIONS MOVE
    tell movable 1 1
    tell closable 1 0
    expect_motif "$first" 0x1e,0x7e
    activate "$first"
    mark
    xdotool key alt+F4 key a
    expect 'key 97 0'
    expect_not 'close requested'
    tell closable 1 1
    try_until press_close said 'close requested' || fail "nobody asks it to close"
    tell zoomable 1 0
    expect_motif "$first" 0x2e,0x3e
    tell zoomable 1 1
    tell minimizable 1 0
    expect_motif "$first" 0x36,0x5e
    tell minimizable 1 1
    expect_motif "$first" 0x3e,0x7e
    # Not by the user, yet by the program.
    tell movable 1 0
    expect_motif "$first" 0x3a,0x7e
    tell move 1 150 180
    expect_frame "$first" '150 180 300 200'
}

limits() {
    tell least 1 120 80
    expect_has "$first" WM_NORMAL_HINTS 'minimum size: 121 by 81'
    tell most 1 400 300
    expect_has "$first" WM_NORMAL_HINTS 'maximum size: 401 by 301'
    xdotool windowsize "$first" 900 50
    expect 'resized 400 80'
    expect_frame "$first" '100 120 401 81'
    ask_until place 1 'at 100 120, 400 by 80'
    # A size, and then no other for the user: the limits are those of the new one.
    tell $'size 1 199 149\nresizable 1 0'
    expect_has "$first" WM_NORMAL_HINTS 'maximum size: 200 by 150'
    expect_frame "$first" '100 120 200 150'
}

# Where the program puts a window it is, whatever its frame adds, shown for the first time or again.
places() {
    expect_frame "$first" '100 120 300 200'
    for place in '200 240' '0 0' '30 600' '-50 60'; do
        tell move 1 "$place"
        expect_frame "$first" "$place 300 200"
        ask place 1 "at $place, 299 by 199"
    done
    tell flood 1 220 260
    expect 'moved 220 260'
    expect_frame "$first" '220 260 300 200'
    ask place 1 'at 220 260, 299 by 199'
    tell move 1 -50 60
    tell size 1 149 99
    expect_frame "$first" '-50 60 150 100'
    tell hide 1
    eventually state_is "$first" IsUnMapped || fail "still there"
    tell move 1 300 200
    tell show 1
    expect_frame "$first" '300 200 150 100'
    expect_not 'moved -?[0-9]+ (1[0-9][0-9]|2[1-9][0-9])'
    ask place 1 'at 300 200, 149 by 99'
    tell look 1 4
    expect_property "$first" _NET_FRAME_EXTENTS '0, 0, 0, 0'
    expect_frame "$first" '300 200 150 100'
    tell look 1 0
    expect_frame "$first" '300 200 150 100'
    ask place 1 'at 300 200, 149 by 99'
    tell center 1
    expect_frame "$first" '437 334 150 100'
}

# What the program says and what the window manager has, with nothing on its way between them.
settled() {
    xprop -id "$first" WM_STATE | grep -q Normal || return 1
    tell title 1 'behind it'
    expect_has "$first" _NET_WM_NAME 'behind it'
    xprop -id "$first" WM_STATE | grep -q Normal
}

states() {
    tell iconify 1 1
    expect 'minimized 1'
    expect_has "$first" WM_STATE Iconic
    tell iconify 1 0
    expect 'minimized 0'
    expect_has "$first" WM_STATE Normal
    tell wink 1
    expect winked
    eventually settled || fail "an icon, though it was restored last"
    tell hide 1
    eventually state_is "$first" IsUnMapped || fail "still there"
    expect_lacks "$first" WM_STATE Normal
    tell show 1
    eventually active "$first" || fail "shown, and not active"
    tell activate 2
    eventually active "$second" || fail "not active"
    expect_lacks "$first" _NET_WM_STATE BELOW
}

modal() {
    tell activate 1
    eventually active "$first" || fail "not active"
    tell block 2 1
    expect_has "$second" _NET_WM_STATE MODAL
    expect_has "$second" _NET_WM_WINDOW_TYPE DIALOG
    expect_has "$second" WM_TRANSIENT_FOR 'window id'
    expect 'second activated'
    eventually active "$second" || fail "the modal window is not the active one"
    mark
    click_at 150 170
    xdotool key a
    expect 'second key 97'
    click_at 600 200
    xdotool key b
    expect 'second key 98'
    expect_not 'press.*'
    expect_not 'key.*'
    tell block 2 0
    expect_lacks "$second" _NET_WM_STATE MODAL
    expect_lacks "$second" WM_TRANSIENT_FOR 'window id'
    mark
    xdotool mousemove 150 170 click 1
    expect 'press 50 50'
    eventually active "$first" || fail "not active after the click"
    xdotool key c
    expect 'key 99 0'
}

workspaces() {
    tell count 0 3
    eventually desktops 3 || fail "$(xdotool get_num_desktops) workspaces"
    ask_until where 1 'on ffffffff, 0 of 3'
    for none in 0 33 -1; do tell count 0 "$none"; done
    tell workspaces 1 2
    expect_property "$first" _NET_WM_DESKTOP 1
    tell workspace 0 1
    eventually desktop 1 || fail "on $(xdotool get_desktop)"
    ask_until where 1 'on 2, 1 of 3'
    for none in -1 3 33; do tell workspace 0 "$none"; done
    tell workspaces 1 -1
    expect_property "$first" _NET_WM_DESKTOP 4294967295
    tell workspaces 1 0
    expect_property "$first" _NET_WM_DESKTOP 1
    ask_until where 1 'on 2, 1 of 3'
}
desktops() { [ "$(xdotool get_num_desktops)" = "$1" ]; }
desktop() { [ "$(xdotool get_desktop)" = "$1" ]; }

start_server
start_program
"$scenario"
