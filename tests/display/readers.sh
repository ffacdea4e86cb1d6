#!/usr/bin/env bash
# A screen reader and a program: readers.sh SCENARIO PROGRAM READER. Starts its own screen, window
# manager, session bus and accessibility bus, and ends them.
scenario=$1 program=$2 reader=$3
. "$(dirname "$0")/screen.sh"
unset QT_LINUX_ACCESSIBILITY_ALWAYS_ON NO_AT_BRIDGE AT_SPI_BUS_ADDRESS

start_session_bus() {
    export HOME=$folder XDG_DATA_HOME=$folder XDG_CACHE_HOME=$folder GSETTINGS_BACKEND=memory
    dbus-daemon --session --nofork --nopidfile --print-address >"$folder/bus" 2>"$folder/bus.log" &
    started+=($!)
    eventually test -s "$folder/bus" || fail "no session bus: $(cat "$folder/bus.log")"
    DBUS_SESSION_BUS_ADDRESS=$(head -n 1 "$folder/bus")
    export DBUS_SESSION_BUS_ADDRESS
}

# With a reader, as all programs are told, or with 0 none. The bus's starter ends what it has started itself.
start_readers() {
    local launcher
    for launcher in /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher; do
        [ -x "$launcher" ] && break
    done
    "$launcher" --launch-immediately --a11y="${1:-1}" >"$folder/launcher" 2>&1 &
    started+=($!)
    eventually readers_have_a_bus || fail "no accessibility bus: $(cat "$folder/launcher")"
}
# A call before would have the bus start another one, without a reader.
readers_have_a_bus() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.NameHasOwner org.a11y.Bus | grep -q true &&
        gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
            --method org.a11y.Bus.GetAddress
}

start_program() {
    mkfifo "$folder/input"
    "$program" <"$folder/input" >"$log" 2>&1 &
    pid=$!
    started+=("$pid")
    exec 7>"$folder/input"
    expect ready
}
tell() { echo "$1" >&7; expect "done $1"; }
alive() { kill -0 "$pid" 2>/dev/null || fail "the program has died"; }

ask() { "$reader" "$@" 2>"$folder/reader" || fail "reader $*: $(cat "$folder/reader")"; }
# answers PATTERN of NAME ...: what the reader is told comes to be so.
says() { "$reader" "${@:2}" 2>"$folder/reader" | grep -qE -- "^$1$"; }
answers() { eventually says "$@" || fail "not \"$1\" but \"$("$reader" "${@:2}" 2>&1)\""; }

start_watch() {
    "$reader" watch >"$folder/events" 2>&1 &
    started+=($!)
    eventually grep -q watching "$folder/events" || fail "no watch: $(cat "$folder/events")"
}
happened() { grep -qE -- "^$1$" "$folder/events"; }
happens() { eventually happened "$1" || fail "no event \"$1\" in: $(tail -n 40 "$folder/events")"; }

# Roles, names, states and values; and what things are in.
names() {
    answers 'push button\|Press me\|enabled,focusable,showing,visible\|\|What it does\|.*' \
        of 'Press me' description actions
    answers 'push button\|Off\|showing,visible\|' of Off
    answers 'check box\|Loud\|enabled,focusable,showing,visible\|\|toggle,setfocus' of Loud actions
    answers 'slider\|Volume\|.*\|0\|0\.\.100/1\|increase,decrease,setfocus' of Volume range actions
    answers 'scroll bar\|\|.*\|10\|10\.\.60/1' of 'range:10..60/1' range
    answers 'progress bar\|.*read-only\|0\|0\.\.100/0' of 'role:progress bar' range
    answers 'label\|Plain ±\|.*' of 'Plain ±'  # from a text in Latin-1
    answers 'combo box\|\|.*' of 'role:combo box'
    answers 'menu item\|Green\|enabled,focusable,selectable\|\|combo box:' of Green parent
    answers 'panel\|Radios\|.*\|3' of Radios rows
    answers 'list\|Fruit\|.*\|1000' of Fruit rows
    answers 'list item\|Row 3\|.*showing.*\|list:Fruit' of 'Row 3' parent
    answers 'tree item\|Top\|enabled,expandable,expanded,.*\|' of Top
    answers 'tree item\|Below\|.*\|level 2' of Below description
    answers 'page tab\|First\|.*selectable,selected.*\|page tab list:' of First parent
    answers 'menu item\|File\|.*\|menu bar:' of File parent
    answers 'menu item\|Save\|\|' of Save
    answers 'frame\|Told\|.*' of Told
    answers 'push button\|Press me\|.*\|frame:Told\|.*' of 'Press me' parent frame
    # The window's content begins at 100.
    answers '.*\|120,[0-9]* 81x25' of 'Press me' frame
}

# What a user can do with a hand: the handlers are called as for one.
actions() {
    answers 'push button.*' of 'Press me'
    ask do 'Press me' press
    expect pressed
    ask do Loud toggle
    expect 'checked 1'
    answers 'check box\|Loud\|checked,.*' of Loud
    ask set Volume 30
    expect 'slid 30'
    answers 'slider\|Volume\|.*\|30' of Volume
    ask do Volume increase
    expect 'slid 31'
    ask do Blue press
    expect 'option 2'
    ask do 'Row 7' press
    expect 'chosen 7'
    answers 'list item\|Row 7\|.*selected.*' of 'Row 7'
    ask do Second press
    answers 'page tab\|Second\|.*selected.*' of Second
    ask do Open press
    expect 'menu 11'
    ask do There press
    expect there
    ask do 'role:radio button' toggle
    expect 'radio 0'
    # Nothing of what cannot be used.
    "$reader" do Off press 2>/dev/null && fail "a disabled button can be pressed"
    ask set Volume 1000
    expect 'slid 100'
}

texts() {
    answers 'text\|Name\|editable.*\|one two caret [0-9]*' of Name text
    ask select Name 4 7
    answers '.*\|one two caret 7 selected 4\.\.7' of Name text
    ask caret Name 3
    answers '.*\|one two caret 3' of Name text
    ask do Name focus
    answers 'text\|Name\|.*focused.*' of Name
    ask insert Name 3 ,
    answers '.*\|one, two caret 4' of Name text
    expect 'typed .*'
    ask delete Name 0 4
    answers '.*\| two caret 0' of Name text
    answers 'text\|Letter\|editable,.*multi-line.*' of Letter
    letter_is 'Dear é/reader caret'
    ask insert Letter 6 '!'
    expect edited
    letter_is 'Dear é!/reader caret 7'
    # A number's field takes what its filter takes.
    ask insert Number 0 1a2
    answers '.*\|12 caret 2' of Number text
}

letter_is() { eventually letter_begins "$1" || fail "$("$reader" of Letter text)"; }
letter_begins() { "$reader" of Letter text | tr '\n' '/' | grep -qF "|$1"; }

# Nobody is told what it is, nor what is typed.
password() {
    answers 'password text\|Key\|editable.*\|•••••• caret .*' of Key text
    start_watch
    until happened 'Object:TextChanged:insert.*Key'; do
        ask insert Key 0 z
        "$reader" of Key text | grep -q z && fail "the reader reads what is typed"
        [ "$(grep -c Key "$folder/events")" -lt 15 ] || break
    done
    happens 'Object:TextChanged:insert.*•.*\|Key'
    grep -E 'secret|<.z' "$folder/events" && fail "an event tells the password"
    return 0
}

# What changes by itself is told.
events() {
    start_watch
    answers 'slider\|Volume.*' of Volume
    try_until change_value happened 'Object:PropertyChange:accessible-value\|.*\|Volume' ||
        fail "no event of a value in: $(cat "$folder/events")"
    tell label
    happens 'Object:PropertyChange:accessible-name\|.*\|Louder'
    tell type
    happens 'Object:TextChanged:insert\|.*typed.*\|Name'
    ask select Name 1 3
    happens 'Object:TextSelectionChanged:.*\|Name'
    happens 'Object:TextCaretMoved:.*\|Name'
    ask do Louder toggle
    happens 'Object:StateChanged:checked\|1,.*\|Louder'
    ask do 'Row 2' press
    happens 'Object:StateChanged:selected\|1,.*\|Row 2'
    activate_told
    ask do Louder focus
    happens '(Object:StateChanged:focused\|1|Focus:Focus:).*\|Louder'
    tell kill
    happens 'Object:ChildrenChanged:remove.*'
}
told_shows() {
    window=$(xdotool search --onlyvisible --name '^Told$' | head -n 1)
    [ -n "$window" ]
}
activate_told() {
    eventually told_shows || fail "no window \"Told\""
    activate "$window"
}
# The bus hears of a listener by and by.
change_value() { tell value; }

# A gadget and a window that go while somebody holds them.
gone() {
    answers 'push button.*' of 'Press me'
    answers 'push button.*' of There
    mkfifo "$folder/first" "$folder/second"
    "$reader" hold 'Press me' <"$folder/first" >"$folder/held1" 2>&1 &
    started+=($!)
    exec 8>"$folder/first"
    "$reader" hold There <"$folder/second" >"$folder/held2" 2>&1 &
    started+=($!)
    exec 9>"$folder/second"
    eventually grep -q held "$folder/held1" || fail "not held"
    eventually grep -q held "$folder/held2" || fail "not held"
    tell kill
    tell close
    none_called 'Press me'
    none_called There
    echo again >&8
    echo again >&9
    eventually grep -qx 'is |||' "$folder/held1" || fail "$(cat "$folder/held1")"
    eventually grep -qx 'is |||' "$folder/held2" || fail "$(cat "$folder/held2")"
    alive
    answers 'slider\|Volume\|.*' of Volume
    echo end >&7
    has_ended() { ! kill -0 "$pid"; }
    eventually has_ended || fail "the program does not end"
}
is_missing() { ! "$reader" tree | grep -qF "|$1|"; }
none_called() { eventually is_missing "$1" || fail "\"$1\" is still there"; }

# Open menus have the keyboard, and give it back.
menus() {
    activate_told
    start_watch
    ask do Loud focus
    answers 'check box\|Loud\|.*focused.*' of Loud
    xdotool mousemove_relative 0 0 key F10
    eventually menu_is_told || fail "$("$reader" tree)"
    xdotool key Down
    xdotool key Escape
    xdotool key Escape
    eventually grep -qE '(focused\|1|Focus:Focus:).*\|Loud' "$folder/events" || fail "$(cat "$folder/events")"
}
# What is chosen in an open menu reaches whoever waits for the user there.
open_menu() {
    activate_told
    xdotool mousemove_relative 0 0 key F10
    answers 'menu item\|Open\|.*selectable,.*showing.*\|press,setfocus' of showing:Open actions
    ask do showing:Open press
    expect 'menu 11'
    eventually none_shows Open || fail "the menu is still open: $("$reader" tree)"
    xdotool key F10
    answers 'menu item\|Save\|.*showing.*\|' of showing:Save actions
    "$reader" do showing:Save press 2>/dev/null && fail "a disabled item can be pressed"
    ask do showing:Open press
    eventually none_shows Open || fail "the menu is still open: $("$reader" tree)"
    chosen_twice() { [ "$(grep -c 'menu 11' "$log")" = 2 ]; }
    eventually chosen_twice || fail "chosen $(grep -c 'menu 11' "$log") times"
}
none_shows() { ! "$reader" tree | grep -E "\|$1\|" | grep -q showing; }
menu_is_told() { "$reader" tree | grep -qE 'pop.?up menu\||menu\|'; }

# Windows that a Wayland compositor shows are told as well, but for their places, which it keeps.
wayland() {
    ! grep -q 'in memory' "$log" || fail "it is not on the screen"
    answers 'push button\|Press me\|enabled,focusable,showing,visible\|\|What it does\|.*' \
        of 'Press me' description actions
    answers 'menu item\|File\|.*\|menu bar:' of File parent
    answers 'frame\|Told\|.*' of Told
    answers 'frame\|Other\|.*' of Other
    ask do 'Press me' press
    expect pressed
    ask do There press
    expect there
    ask set Volume 30
    expect 'slid 30'
    ask do Loud toggle
    expect 'checked 1'
    answers 'check box\|Loud\|checked,.*' of Loud
    ask insert Name 3 ,
    answers '.*\|one, two caret 4' of Name text
    start_watch
    try_until change_value happened 'Object:PropertyChange:accessible-value\|.*\|Volume' ||
        fail "no event of a value in: $(cat "$folder/events")"
    tell kill
    happens 'Object:ChildrenChanged:remove.*'
    tell close
    none_called There
}

# One that comes when the program runs already is told all.
late() {
    answers 'push button\|Press me\|.*' of 'Press me'
    ask do 'Press me' press
    expect pressed
}

# One that is switched on when the bus and the program run, off, and on again.
switched() {
    for _ in 1 2; do
        switch IsEnabled true
        answers 'push button\|Press me\|.*' of 'Press me'
        [ "$("$reader" tree | grep -c '|Press me|')" = 1 ] || fail "told twice"
        ask do 'Press me' press
        expect pressed
        tell label
        answers 'check box\|Louder\|.*' of Louder
        switch ScreenReaderEnabled true
        switch IsEnabled false
        answers 'push button\|Press me\|.*' of 'Press me'
        switch ScreenReaderEnabled false
    done
}
switch() {
    gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
        --method org.freedesktop.DBus.Properties.Set org.a11y.Status "$1" "<$2>" >/dev/null ||
        fail "cannot switch $1 $2"
}

case $scenario in
    wayland) start_compositor ;;
    *) start_server ;;
esac
start_session_bus
case $scenario in
    late) ;;
    switched) start_readers 0 ;;
    *) start_readers ;;
esac
start_program
[ "$scenario" = wayland ] || eventually window_shows "$pid" || fail "no window"
[ "$scenario" != late ] || start_readers
"$scenario"
[ "$scenario" = gone ] || alive
