# Sourced by the scripts beside it: an X server and a window manager of the test's own, and ways to
# wait for what a program says. Ends what it started and nothing else. The caller sets `scenario`.
set -u
folder=$(mktemp -d)
log=$folder/log
depth=24  # bits a pixel of the X server
extent=1024x768
started=()

finish() {
    local status=$? pid
    for pid in "${started[@]}"; do
        kill "$pid" 2>/dev/null
    done
    wait 2>/dev/null
    rm -rf "$folder"
    exit "$status"
}
trap finish EXIT

fail() {
    echo "$scenario: $*" >&2
    echo "--- the program said:" >&2
    cat "$log" >&2
    exit 1
}

# The window manager may have read a wish together with an answer, and looks at it with its next
# event only: a property of the root window is one.
server=
nudge() { [ -z "$server" ] || xprop -root -f _TEST_NUDGE 8s -set _TEST_NUDGE again; }

# Waits up to twenty seconds for a command to succeed: only a fault reaches that.
eventually() {
    local tries
    for tries in $(seq 400); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.05
        [ $((tries % 8)) -ne 0 ] || nudge >/dev/null 2>&1
    done
    return 1
}

# Waits until the program has printed a line, from the mark on.
mark=0
mark() { mark=$(wc -l <"$log"); }
said() { tail -n "+$((mark + 1))" "$log" | grep -qxE -- "$1"; }
expect() { eventually said "$1" || fail "no line \"$1\""; }
expect_not() { ! said "$1" || fail "a line \"$1\""; }

# start_server [MANAGER]: with openbox, unless another word is said.
start_server() {
    rm -f "$folder/display"
    Xvfb -displayfd 1 -screen 0 "${extent}x$depth" -nolisten tcp -noreset >"$folder/display" 2>"$folder/xvfb" &
    server_pid=$!
    started+=("$server_pid")
    eventually test -s "$folder/display" || fail "no X server: $(cat "$folder/xvfb")"
    server=:$(head -n 1 "$folder/display")
    DISPLAY=$server
    export DISPLAY XDG_CONFIG_HOME=$folder XDG_RUNTIME_DIR=$folder
    [ "${1:-openbox}" = openbox ] || return 0
    openbox >"$folder/openbox" 2>&1 &
    started+=($!)
    eventually xprop -root _NET_SUPPORTING_WM_CHECK || fail "no window manager"
    eventually sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
}

# True once a process has a window on the screen.
window_shows() { [ -n "$(xdotool search --onlyvisible --pid "$1")" ]; }

# The window manager may not know a new window yet.
become_active() {
    [ "$(xdotool getactivewindow)" = "$1" ] && return 0
    xdotool windowactivate "$1"
    return 1
}
activate() { eventually become_active "$1" || fail "the window does not become active"; }

# start_told PROGRAM...: one that is told what to do. Its errors go to a file of their own.
start_told() {
    mkfifo "$folder/calls"
    "$@" <"$folder/calls" >"$log" 2>"$folder/err" &
    program=$!
    started+=("$program")
    exec {calls}>"$folder/calls"
    expect ready
}
# tell CALL...: answers are looked for from here on. ask CALL... ANSWER
tell() {
    mark
    echo "$*" >&"$calls"
}
ask() {
    tell "${@:1:$#-1}"
    expect "${*: -1}"
}
