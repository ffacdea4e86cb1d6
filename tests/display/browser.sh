#!/usr/bin/env bash
# The example that browses files, on a real screen: browser.sh SCENARIO PROGRAM SOURCE, where files
# are dragged out of the last one. Starts its own X server and window manager, runs the program on
# a folder of its own, and plays its user. Ends what it started and nothing else.
scenario=$1 program=$2 source=$3
. "$(dirname "$0")/screen.sh"
place=$folder/place

# The entries are "aside" and "letter.txt", which a program of the test's opens.
start_program() {
    mkdir -p "$place/aside" "$folder/applications"
    echo 'a letter' >"$place/letter.txt"
    cat >"$folder/opener" <<END
#!/bin/sh
echo "\$1" >>"$folder/opened"
END
    chmod +x "$folder/opener"
    cat >"$folder/applications/opener.desktop" <<END
[Desktop Entry]
Type=Application
Name=Opener
Exec=$folder/opener %f
MimeType=text/plain;
END
    printf '[Default Applications]\ntext/plain=opener.desktop\n' >"$folder/mimeapps.list"
    XDG_DATA_HOME=$folder "$program" "$place" >"$log" 2>&1 &
    started+=($!)
    expect_title "$place"
    activate "$(xdotool search --onlyvisible --name "^$place\$" | head -n 1)"
}
has_title() { xdotool search --onlyvisible --name "^$1\$"; }
expect_title() { eventually has_title "$1" || fail "no window \"$1\""; }

# Rows from 0.
click_tree() { xdotool mousemove 100 $((78 + 18 * $1)) click 1; }
# A press elsewhere before, so that no more than two are one after the other.
open_entry() {
    xdotool mousemove 320 280 click 1 mousemove 320 $((77 + 15 * $1)) click --repeat 2 --delay 60 1
}
opens() {
    open_entry "$1"
    grep -qx "$place/$2" "$folder/opened"
}
expect_opened() { eventually opens "$@" || fail "$2 is not opened"; }

folders() {
    click_tree 1
    expect_title "$place/aside"
    click_tree 0
    expect_title "$place"
    open_entry 0
    expect_title "$place/aside"
}

opening() { expect_opened 1 letter.txt; }

# What comes, goes and is called otherwise meanwhile.
changes() {
    touch "$place/another.txt"
    expect_opened 1 another.txt
    rm "$place/another.txt"
    expect_opened 1 letter.txt
    mv "$place/letter.txt" "$place/note.txt"
    expect_opened 1 note.txt
}

is_copied() { cmp "$folder/dropped" "$place/aside/dropped"; }
drops() {
    click_tree 1
    expect_title "$place/aside"
    echo 'dropped' >"$folder/dropped"
    "$source" "$folder/dropped" >"$folder/source" 2>&1 &
    started+=($!)
    local window
    eventually has_title 'drag source' || fail "no second program"
    window=$(xdotool search --onlyvisible --name '^drag source$' | head -n 1)
    xdotool windowmove "$window" 880 120 windowraise "$window"
    eventually drags || fail "the file is not copied"
}
drags() {
    xdotool mousemove 930 170 mousedown 1 mousemove 900 180 mousemove 600 200 mousemove 400 210
    sleep 0.2
    xdotool mousemove 395 205
    sleep 0.2
    xdotool mouseup 1
    is_copied
}

start_server
start_program
"$scenario"
