#!/usr/bin/env bash
# One clipboard scenario of CMakeLists.txt: clipboard.sh NAME USER OWNER ASKERS. Our programs, told
# what to do through a pipe, and others share the clipboard of an X server of the test's own.
scenario=$1 user=$2 owner=$3 askers=$4
. "$(dirname "$0")/screen.sh"

# start_user NAME: a program of ours, whose commands go to NAME's pipe. The first one writes the log
# that `expect` looks at.
start_user() {
    mkfifo "$folder/$1"
    "$user" <"$folder/$1" >"$folder/$1.log" 2>&1 &
    eval "$1_pid=$!"
    started+=($!)
    exec {pipe}>"$folder/$1"
    eval "$1_pipe=$pipe"
    log=$folder/$1.log
    expect ready
}
# tell NAME COMMAND...: and what it answers goes to the log that is looked at from here on.
tell() {
    local name=$1 to
    shift
    eval "to=\$${name}_pipe"
    log=$folder/$name.log
    mark
    echo "$*" >&"$to"
}
# ask NAME COMMAND... ANSWER: asks again where a program was too slow for the time that ours waits.
ask() {
    local turn
    for turn in 1 2 3 4 5 6 7 8; do
        tell "${@:1:$#-1}"
        eventually answered || break
        ! said "${*: -1}" || return 0
    done
    fail "no answer \"${*: -1}\""
}
answered() { tail -n "+$((mark + 1))" "$log" | grep -qvx changed; }

# start_owner MANNER: returns when it has the selection.
start_owner() {
    : >"$folder/owner"  # now, not when the owner starts
    "$owner" "$1" >"$folder/owner" 2>&1 &
    owner_pid=$!
    started+=($!)
    eventually grep -q owns "$folder/owner" || fail "no owner"
}
# copy TEXT...: another program puts it on the clipboard.
copy() {
    xclip -quiet -selection clipboard -i "$1" 2>"$folder/xclip" &
    copier=$!
    started+=($!)
    eventually is_file_pasted "$1" || fail "the other program has no clipboard"
}
paste_text() { timeout 60 xclip -selection clipboard -o -t "${1:-UTF8_STRING}"; }
is_pasted() { [ "$(paste_text "$2")" = "$1" ]; }
pastes() { eventually is_pasted "$@" || fail "$2 gives $(paste_text "$2"), not $1"; }
# pastes_file FILE [TYPE]: byte for byte.
is_file_pasted() { cmp "$1" <(paste_text "${2:-UTF8_STRING}"); }
pastes_file() { eventually is_file_pasted "$@" || fail "the other program sees something else"; }

other_programs() {
    start_user one
    ask one get 'text -'
    ask one is-empty 'is-empty 0'
    ask one set grüße 'set 1'
    pastes grüße UTF8_STRING
    pastes grüße 'text/plain;charset=utf-8'
    pastes "$(printf 'gr\374\337e')" STRING
    offers() { paste_text TARGETS | grep -qx "$1"; }
    eventually offers TIMESTAMP || fail "no time stamp"
    # The other way round, and what was cleared stays so until then.
    ask one clear 'clear 1'
    ask one get 'text -'
    printf 'höher' >"$folder/text"
    copy "$folder/text"
    ask one get 'text höher'
    ask one is-empty 'is-empty 1'
    ask one clear 'clear 1'
    ask one get 'text -'
    ask one set 'ours again' 'set 1'
    pastes 'ours again' UTF8_STRING
    # Bytes that are no UTF-8 count as Latin-1 elsewhere; zeros pass.
    printf 'caf\351\0\342\202\254' >"$folder/bytes"
    ask one put-text "$folder/bytes" 'put 1'
    printf 'caf\303\251\0\342\202\254' >"$folder/as-utf8"
    pastes_file "$folder/as-utf8"
    ask one take-text "$folder/back" 'took text/plain 8'
    cmp "$folder/bytes" "$folder/back" || fail "changed on the way back"
    ask one put-image "$folder/bytes" 'put 1'
    pastes_file "$folder/bytes" image/png
    ! paste_text UTF8_STRING || fail "a text is still there"
}

own_programs() {
    start_user one
    start_user two
    ask one put-message 'put 1'
    ask one take-message 'message 42 inside from here'
    ask two take-message 'message 42 inside from afar'
    ask two get 'text -'
    printf '\377\0\351' >"$folder/bytes"
    ask one put-text "$folder/bytes" 'put 1'
    ask two take-text "$folder/back" 'took text/plain 3'
    cmp "$folder/bytes" "$folder/back" || fail "changed on the way"
    ask two set 'from two' 'set 1'
    ask one get 'text from two'
    # A program that ends takes its content along.
    tell two quit
    gone() { ! kill -0 "$two_pid"; }
    eventually gone || fail "it does not end"
    wait "$two_pid" || fail "it ends with $?"
    ask one get 'text -'
}

large() {
    start_user one
    start_user two
    head -c 1000000 /dev/urandom | base64 -w 99 >"$folder/million"
    for times in 1 10; do
        for ((i = 0; i < times; i++)); do cat "$folder/million"; done >"$folder/large"
        ask one put-text "$folder/large" 'put 1'
        pastes_file "$folder/large"
        rm -f "$folder/back"
        ask two take-text "$folder/back" "took text/plain $(stat -c %s "$folder/large")"
        cmp "$folder/large" "$folder/back" || fail "our other program sees something else"
        copy "$folder/large"
        rm -f "$folder/back"
        ask two take-text "$folder/back" "took text/plain $(stat -c %s "$folder/large")"
        cmp "$folder/large" "$folder/back" || fail "not the other program's text"
    done
}

contention() {
    start_user one
    start_user two
    tell one contend a
    tell two contend b
    long_said() { said "$1" || { sleep 1 && said "$1"; }; }
    for log in "$folder/one.log" "$folder/two.log"; do
        eventually long_said 'contended, [0-9]+ bad' || fail "no end"
        expect 'contended, 0 bad'
    done
}

watching() {
    start_user one
    start_user two
    ask one watch 'watch 1'
    tell one get
    local from=$mark
    ask two set first 'set 1'
    log=$folder/one.log mark=$from
    expect changed
    tell one set own
    expect changed
    tell one get
    printf foreign >"$folder/text"
    copy "$folder/text"
    expect changed
    tell one get
    kill "$copier"
    expect changed
    ask one get 'text -'
}

# Each is empty within the time that a person waits, and does not keep us from writing.
bad_owners() {
    start_user one
    for manner in mute dies stalls; do
        start_owner "$manner"
        ask one get 'text -'
        kill "$owner_pid" 2>/dev/null
    done
    start_owner drips
    ask one get 'text -'
    kill "$owner_pid"
    start_owner mute
    ask one set 'after all' 'set 1'
    eventually grep -q lost "$folder/owner" || fail "the silent owner still has it"
    pastes 'after all' UTF8_STRING
    # One that is asked, and killed while we wait.
    start_owner mute
    tell one get
    kill "$owner_pid"
    expect 'text -'
}

# Asks NAME for the text of an owner that is given up in the end: on a busy machine later than
# anything else is waited for.
gives_up() {
    tell "$1" get
    eventually said 'text -' || eventually said 'text -' || expect 'text -'
}

# What would go on for minutes, and what would fill the memory, is given up.
endless_owners() {
    start_user one
    start_owner trickles
    gives_up one
    kill "$owner_pid"
    start_owner floods
    gives_up one
    kill "$owner_pid"
    ask one set 'after all' 'set 1'
    pastes 'after all' UTF8_STRING
}

# All of them are served from one copy.
many_askers() {
    start_user one
    head -c 20000000 /dev/zero | tr '\0' t >"$folder/large"
    ask one put-text "$folder/large" 'put 1'
    "$askers" >"$folder/askers" &
    started+=($!)
    eventually grep -q asked "$folder/askers" || fail "not all have an answer"
    memory=$(sed -n 's/^VmHWM:[^0-9]*\([0-9]*\) kB/\1/p' "/proc/$one_pid/status")
    [ "$memory" -lt 1000000 ] || fail "$memory KB"
}

old_owner() {
    start_user one
    start_owner old
    ask one get 'text été'
}

picture() {
    start_user one
    start_owner picture
    ask one get 'text -'
    ask one take-image "$folder/picture" 'took image/png 3'
    [ "$(cat "$folder/picture")" = PNG ] || fail "another picture"
}

# While one thread waits for a silent program, the window is served.
windows_go_on() {
    start_user one
    start_owner mute
    eventually window_shows "$one_pid" || fail "no window"
    tell one $'get\nget\nget\nget\nget\nget'
    xdotool mousemove 150 170 click 1
    expect 'press 50 50'
    all_told() { [ "$(grep -c '^text' "$log")" -eq 6 ]; }
    eventually all_told || fail "not all texts"
    [ "$(tail -n 1 "$log")" != 'press 50 50' ] || fail "the press came after the clipboard"
}

# Once more where the manager was too slow for a program that ends.
manager() {
    start_owner manager
    try_until end_with_content grep -qx 'saved to be kept' "$folder/owner" ||
        fail "it was not handed over"
}
end_with_content() {
    rm -f "$folder/one"
    start_user one
    ask one set 'to be kept' 'set 1'
    tell one quit
    wait "$one_pid" || fail "it ends with $?"
}

mute_manager() {
    start_owner mute-manager
    start_user one
    ask one set x 'set 1'
    tell one quit
    gone() { ! kill -0 "$one_pid"; }
    eventually gone || fail "it does not end"
}

# Where Qt shows windows without an X server, its clipboard is taken.
without_x() {
    export QT_QPA_PLATFORM=offscreen
    start_user one
    ask one watch 'watch 1'
    ask one set grüße 'set 1'
    expect changed
    ask one get 'text grüße'
    ask one put-message 'put 1'
    ask one take-message 'message 42 inside from here'
    printf 'caf\351\0x' >"$folder/bytes"
    ask one put-text "$folder/bytes" 'put 1'
    ask one take-text "$folder/back" 'took text/plain 6'
    cmp "$folder/bytes" "$folder/back" || fail "changed on the way"
    tell one quit
    wait "$one_pid" || fail "it ends with $?"
}

start_server
"$scenario"
