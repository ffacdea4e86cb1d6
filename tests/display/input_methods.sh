#!/usr/bin/env bash
# An input method on a real screen: input_methods.sh SCENARIO COMPOSER TEXTS PYTHON. Starts its own X
# server, window manager, message bus and ibus with a small engine, and types. Skipped where ibus or
# its language binding is not installed. Ends what it started and nothing else.
scenario=$1 composer=$2 texts=$3 python=$4
. "$(dirname "$0")/screen.sh"
engine=$(dirname "$0")/input_engine.py

start_input_method() {
    local socket=$folder/bus
    dbus-daemon --session --nofork --nopidfile --address="unix:path=$socket" >"$folder/dbus" 2>&1 &
    started+=($!)
    eventually test -S "$socket" || fail "no message bus: $(cat "$folder/dbus")"
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$socket HOME=$folder XDG_CACHE_HOME=$folder
    ibus-daemon --panel=disable --emoji-extension=disable --config=disable >"$folder/ibus-log" 2>&1 &
    started+=($!)
    eventually ibus address || fail "no ibus: $(cat "$folder/ibus-log")"
    eventually address_is_known || fail "ibus has no address: $(ibus address; cat "$folder/ibus-log")"
    "$python" -B "$engine" >"$folder/engine" 2>&1 &
    started+=($!)
    eventually engine_said ready || fail "no engine: $(cat "$folder/engine")"
}
address_is_known() { ibus address | grep -q '^unix:'; }
engine_said() { grep -qxE "$1" "$folder/engine"; }

start_program() {
    QT_IM_MODULE=ibus "$1" >"$log" 2>"$folder/errors" &
    pid=$!
    started+=("$pid")
    activate_ready "$pid"
}
# The window may have the keys before the input method knows of it.
type_first() {
    eventually engine_said focus || fail "the input method does not know the program"
    xdotool key "$1"
}

# Platform's opcodes: started 0, stopped 1, changed 2, asked for the place 3.
messages() {
    start_program "$composer"
    type_first n
    expect 'opcode 0'
    expect 'opcode 2 "n" selection 1-1 clause 0-1'
    expect 'opcode 3'
    xdotool key i h a o
    expect 'opcode 2 "nihao" selection 5-5 clause 0-5'
    expect_not 'key .*'
    xdotool key space
    expect 'opcode 2 "你好" confirmed selection .*'
    expect 'opcode 1'
    mark
    xdotool key h i Return
    expect 'opcode 2 "" selection .*'
    expect 'opcode 1'
    expect 'key h'
    expect 'key i'
    mark
    xdotool key a b Escape
    expect 'opcode 2 "ab" selection 2-2 clause 0-2'
    expect 'opcode 2 "" selection .*'
    expect 'opcode 1'
    xdotool key Return
    expect 'key .*'
}

# The list of words belongs to where the text is on the screen.
caret() {
    start_program "$composer"
    type_first n
    eventually engine_said 'caret 140 180 1 14' || fail "the caret: $(cat "$folder/engine")"
}

stopped_by_program() {
    start_program "$composer"
    type_first n
    expect 'opcode 2 "n" selection 1-1 clause 0-1'
    mark
    xdotool mousemove 200 200 click 1
    expect 'stops it'
    eventually engine_said reset || fail "the input method goes on"
    xdotool key a
    expect 'opcode 2 "a" selection 1-1 clause 0-1'
}

# The editor's handler hears of keys once the click has brought it the focus.
hears_keys() {
    xdotool key Left
    said 'key 28 .*'
}
click_editor() {
    mark
    xdotool mousemove 150 240 click 1
    eventually hears_keys || fail "the editor has no focus"
}

# Inline and underlined in an editor.
editor() {
    start_program "$texts"
    click_editor
    type_first n
    xdotool key i h a o
    eventually underlined || fail "no line below the text"
    xdotool key space
    expect 'changed 6 你好'
    mark
    gone() { ! underlined; }
    eventually gone || fail "the line stays"
    xdotool key a b Escape  # cancelled: nothing was changed
    xdotool key ctrl+a ctrl+x
    expect 'changed 0 '
    expect_not 'changed 8 .*'
}

# What is typed into a hidden text is no input method's business, and the next text's is again.
types_hidden() {
    xdotool key n
    said 'input [*]+'
}
click_hidden() {
    mark
    xdotool mousemove 300 174 click 1
    eventually types_hidden || fail "nothing is typed into the hidden text"
}
hidden() {
    start_program "$texts"
    click_hidden
    click_editor
    xdotool key n i h a o space
    expect 'changed 6 你好'
    click_hidden
}
# A row of one colour other than the ground's, as wide as the text.
underlined() {
    import -window root -crop 24x18+112+204 -depth 8 txt:- | awk -F'[,: #]+' '
        NR > 1 && $6 != "FFFFFF" { row[$2 " " $6]++ }
        END { for (each in row) if (row[each] >= 22) found = 1; exit !found }'
}

"$python" -B "$engine" check || exit 77
command -v ibus-daemon >/dev/null || exit 77
start_server
start_input_method
"$scenario"
