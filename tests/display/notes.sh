#!/usr/bin/env bash
# The example that edits texts, on a real screen: notes.sh SCENARIO PROGRAM. Starts its own X server
# and window manager, runs the program, types as its user does, and looks at the file. Ends what it
# started and nothing else.
scenario=$1 program=$2
. "$(dirname "$0")/screen.sh"
file=$folder/text

start_program() {
    printf 'one line\nanother line\n' >"$file"
    "$program" "$file" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    eventually has_title 'text - Notes' || fail "no window"
    window=$(xdotool search --onlyvisible --name '^text - Notes$' | head -n 1)
    activate "$window"
}
has_title() { xdotool search --onlyvisible --name "^$1\$"; }
expect_title() { eventually has_title "$1" || fail "no window \"$1\""; }
file_is() { [ "$(cat "$file")" = "$1" ]; }
expect_file() { eventually file_is "$1" || fail "the file is \"$(cat "$file")\""; }
ended() { ! kill -0 "$pid" 2>/dev/null || [ "$(ps -o stat= -p "$pid" | cut -c1)" = Z ]; }

save() {
    xdotool type 'Now '
    expect_title '\*text - Notes'
    xdotool key ctrl+s
    expect_title 'text - Notes'
    expect_file $'Now one line\nanother line'
    xdotool key ctrl+q
    eventually ended || fail "it does not end"
}

undo() {
    xdotool type 'x'
    expect_title '\*text - Notes'
    xdotool key ctrl+a Delete ctrl+z ctrl+s
    expect_title 'text - Notes'
    expect_file $'xone line\nanother line'
}

replace() {
    xdotool key ctrl+f
    expect_title Find
    activate "$(xdotool search --onlyvisible --name '^Find$' | head -n 1)"
    xdotool type 'LINE'
    xdotool key Tab
    xdotool type 'row'
    xdotool key Return
    activate "$window"
    # Each replaces what is found and finds the next, or nothing.
    eventually replaces_all || fail "the file is \"$(cat "$file")\""
}
replaces_all() {
    xdotool key ctrl+r ctrl+s
    file_is $'one row\nanother row'
}

# Its answers are buttons, of which Enter presses the first.
asks() {
    xdotool type 'Now '
    expect_title '\*text - Notes'
    xdotool key ctrl+q
    eventually has_question || fail "no question"
    ! ended || fail "it ended"
    eventually answers || fail "it does not end"
    expect_file $'Now one line\nanother line'
}
# The window below takes no keys meanwhile.
answers() {
    xdotool key Return
    ended
}
has_question() { [ "$(xdotool search --onlyvisible --pid "$pid" | wc -l)" -eq 2 ]; }

start_server
start_program
"$scenario"
