#!/usr/bin/env bash
# Windows on Wayland: wayland.sh SCENARIO OPERATIONS SHOWN_MENU. A compositor of the test's own shows
# them on a screen in memory; it has neither keyboard nor pointer.
scenario=$1 operations=$2 shown_menu=$3
. "$(dirname "$0")/screen.sh"

start_program() {
    start_told "$1"
    ! grep -q 'in memory' "$folder/err" || fail "it is not on the screen"
}
ended() { ! kill -0 "$program"; }

take_picture() {
    rm -f "$folder"/wayland-screenshot*
    (cd "$folder" && timeout 60 weston-screenshooter) && mv "$folder"/wayland-screenshot* "$folder/picture.png"
}
# Width, height and corner of what is blue: "400x300+70+253".
blue=none seen=none
shows_window() {
    take_picture || return 1
    blue=$(convert "$folder/picture.png" -fill black +opaque '#2060C0' -trim -format '%wx%h%O' info:)
    [[ $blue == 400x300+* ]]
}
# The colours at places of the window: X Y X Y ...
pixels() {
    local corner format=
    IFS=+ read -r -a corner <<<"$blue"
    while [ $# -gt 0 ]; do
        format+="%[hex:p{$((corner[1] + $1)),$((corner[2] + $2))}] "
        shift 2
    done
    convert "$folder/picture.png" -format "$format" info:
}

picture() {
    start_program "$shown_menu"
    eventually shows_window || fail "blue is $blue"
}

# It opens at its place in the window, wherever that is.
menu() {
    picture
    echo >&"$calls"
    expect shown
    eventually shows_menu || fail "in the menu, left of it and above it is $seen"
}
shows_menu() {
    shows_window && seen=$(pixels 22 52 18 52 22 48) &&
        [[ $seen == D8D8D8*' '2060C0*' '2060C0* ]]
}

# The compositor keeps places to itself: they are what the program says.
places() {
    start_program "$operations"
    ask place 1 'at 100 120, 299 by 199'
    ask move 1 200 240 'moved 200 240'
    ask size 1 149 99 'resized 149 99'
    ask place 1 'at 200 240, 149 by 99'
    expect_not 'moved 0 0'
}

icons() {
    start_program "$operations"
    ask iconify 1 1 'minimized 1'
    ask iconify 1 0 'minimized 0'
    ask place 1 'at 100 120, 299 by 199'
    [ "$(grep -c minimized "$log")" -eq 2 ] || fail "it says so more than once"
    ask wink 1 winked
    all_told() { [ "$(grep -c minimized "$log")" -ge 22 ]; }
    eventually all_told || fail "not each wish is told"
    ask place 1 'at 100 120, 299 by 199'
    [ "$(grep -c minimized "$log")" -eq 22 ] || fail "the answers to old wishes are told"
}

ending() {
    start_program "$operations"
    exec {calls}>&-
    eventually ended || fail "the process lives on"
    wait "$program" || fail "it ends with $?"
}

start_compositor
"$scenario"
