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
click_tree() { click_at 100 $((78 + 18 * $1)); }
# A press elsewhere before, so that no more than two are one after the other.
open_entry() {
    click_at 320 280
    xdotool mousemove 320 $((101 + 15 * $1)) click --repeat 2 --delay 60 1
    rest
}
# A second is given to the program that opens it, lest clicks pile up.
opens() {
    local tries
    open_entry "$1"
    for tries in $(seq 20); do
        ! grep -qx "$place/$2" "$folder/opened" || return 0
        sleep 0.05
    done
    return 1
}
expect_opened() { eventually opens "$@" || fail "$2 is not opened"; }

shows_folder() {
    click_tree "$1"
    has_title "$2"
}
expect_folder() { eventually shows_folder "$@" || fail "row $1 is not $2"; }

folders() {
    mkdir "$place/zoo"
    expect_folder 2 "$place/zoo"
    click_tree 1
    expect_title "$place/aside"
    click_tree 0
    expect_title "$place"
    open_first() { open_entry 0; }
    try_until open_first has_title "$place/aside" || fail "the folder is not opened"
    # Its row in the tree is chosen as well: the arrow goes on from there.
    click_at 100 400
    xdotool key Down
    expect_title "$place/zoo"
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

# Folders that come and go are in the tree as well, and what is open there stays so.
tree() {
    mkdir "$place/aside/second" "$place/zoo"
    expect_folder 2 "$place/zoo"
    # Its latch may come later than the row below.
    click_latch() { click_at 73 96; }
    try_until click_latch shows_folder 2 "$place/aside/second" || fail "the latch opens nothing"
    mkdir "$place/aside/first" "$place/middle"
    expect_folder 2 "$place/aside/first"
    expect_folder 4 "$place/middle"
    rmdir "$place/aside/first" "$place/middle"
    expect_folder 2 "$place/aside/second"
    expect_folder 3 "$place/zoo"
}

# By the heads of the columns; a second click turns the order round.
sorting() {
    echo 'a text that is longer than the letter' >"$place/zebra.txt"
    expect_opened 2 zebra.txt
    click_at 648 79 # size
    expect_opened 1 letter.txt
    rm "$folder/opened"
    click_at 648 79
    expect_opened 1 zebra.txt
    expect_opened 2 letter.txt
    rm "$folder/opened"
    click_at 360 79 # name
    expect_opened 1 letter.txt
}

# The list stays where it is scrolled to when something changes.
opened_row() { tail -n 1 "$folder/opened" | sed 's/.*row \([0-9]*\).txt$/\1/'; }
opens_far_row() {
    open_entry 3
    [ "$(opened_row)" -gt 105 ]
}
opens_row() {
    open_entry 3
    [ "$(opened_row)" = "$1" ]
}
scrolling() {
    local number
    for number in $(seq 101 180); do
        cp "$place/letter.txt" "$place/row $number.txt"
    done
    expect_opened 3 'row 102.txt'
    xdotool mousemove 320 200 click --repeat 10 5
    eventually opens_far_row || fail "the wheel does not scroll the list"
    number=$(opened_row)
    rm "$place/row $number.txt"
    eventually opens_row $((number + 1)) || fail "row $(opened_row) is where $number was"
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
