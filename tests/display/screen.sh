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
        # None but one that stands still: a tool that looks for leaks stops a program by signal, too.
        ! grep -q '^State:.T' "/proc/$pid/status" 2>/dev/null || kill -CONT "$pid"
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

# Looks are frequent, and to start a process for each wait costs more than they do.
exec {silence}<> <(:)
pause() { read -rt "$1" -u "$silence"; }

# Waits up to twenty seconds for a command to succeed: only a fault reaches that.
eventually() {
    local tries
    for ((tries = 1; tries <= 400; tries++)); do
        "$@" >/dev/null 2>&1 && return 0
        pause 0.05
        [ $((tries % 8)) -ne 0 ] || nudge >/dev/null 2>&1
    done
    return 1
}

# Waits until the program has printed a line, from the mark on.
mark=0
mark() { mark=$(wc -l <"$log"); }
said() {
    if [ "$mark" = 0 ]; then
        grep -qxE -- "$1" "$log"
    else
        tail -n "+$((mark + 1))" "$log" | grep -qxE -- "$1"
    fi
}
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

# A Wayland compositor instead, with a screen in memory and neither keyboard nor pointer.
start_compositor() {
    export XDG_RUNTIME_DIR=$folder WAYLAND_DISPLAY=plinth-test
    unset DISPLAY
    weston --backend=headless-backend.so --use-pixman --debug --no-config --idle-time=0 \
        --socket=plinth-test --width=1024 --height=768 >"$folder/weston" 2>&1 &
    started+=($!)
    eventually test -S "$folder/plinth-test" || fail "no compositor: $(cat "$folder/weston")"
}

# True once a process has a window on the screen that the window manager knows: `window`, the first.
window_shows() {
    for window in $(xdotool search --onlyvisible --pid "$1"); do
        ! xprop -id "$window" WM_STATE | grep -q Normal || return 0
    done
    return 1
}

# The window manager may not know a new window yet.
become_active() {
    [ "$(xdotool getactivewindow)" = "$1" ] && return 0
    xdotool windowactivate "$1"
    return 1
}
activate() { eventually become_active "$1" || fail "the window does not become active"; }
# activate_ready PID: a program that is ready and has a window, which becomes active, and is `window`.
activate_ready() {
    eventually window_shows "$1" || fail "no window"
    expect ready
    activate "$window"
}

# The window manager holds a press before the window gets it. Keys overtake it meanwhile, and the X
# server tells the release where the pointer has gone by then. What the manager is asked for behind
# the press it does behind it.
desktops=4
rest() {
    desktops=$((9 - desktops))
    xdotool set_num_desktops "$desktops"
    eventually desktops_are "$desktops" || fail "the window manager does not answer"
}
desktops_are() { [ "$(xdotool get_num_desktops)" = "$1" ]; }
# click_at X Y: keys and moves may follow.
click_at() {
    xdotool mousemove "$1" "$2" click 1
    rest
}

# try_until ACTION COMMAND...: acts until the command succeeds, which has five seconds each time: for
# what a hand may do in vain, as clicking twice too slowly, and does once more. The action gets the
# number of the try.
try_until() {
    local turn
    for turn in 1 2 3 4 5 6 7 8; do
        "$1" "$turn"
        soon "${@:2}" && return 0
    done
    return 1
}
soon() {
    local tries
    for ((tries = 1; tries <= 100; tries++)); do
        "$@" >/dev/null 2>&1 && return 0
        pause 0.05
    done
    return 1
}

# start_source PROGRAM...: another program's window, which is `other`: red, at (600, 120).
start_source() {
    "$@" >"$folder/other" 2>&1 &
    started+=($!)
    eventually source_shows || fail "no second program"
}
source_shows() {
    other=$(xdotool search --onlyvisible --name "drag source" | tail -n 1)
    [ -n "$other" ]
}
# drag X Y X Y ...: presses at the first place, and moves to the others.
drag() {
    xdotool mousemove "$1" "$2" mousedown 1
    shift 2
    while [ $# -gt 0 ]; do
        sleep 0.05
        xdotool mousemove "$1" "$2"
        shift 2
    done
}
# Who drags drops where it was last answered: slow programs are given more time with each try.
let_go() {
    sleep "$(($1 * 3 / 10)).$(($1 * 3 % 10))"
    xdotool mouseup 1
}
# drop_until X Y LINE: out of the other program's window, until ours has said the line.
drop_until() {
    local to=("$1" "$2")
    try_until drop_there said "$3" || fail "no line \"$3\""
}
drop_there() {
    mark
    drag 650 170 640 170 500 200 300 200 "${to[@]}"
    let_go "$1"
}

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
