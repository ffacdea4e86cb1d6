#!/usr/bin/env bash
# lost.sh WAY PROGRAM [RUNS]: a program that loses its X server ends with a status that says so, and
# leaves all that it wrote.
scenario=$1 program=$2 runs=${3:-3}
. "$(dirname "$0")/screen.sh"

windows=(1 3 8)
for ((run = 0; run < runs; run++)); do
    start_server none
    count=${windows[run % 3]} file=$folder/written
    rm -f "$file"
    : >"$log"
    timeout -s ABRT 250 "$program" "$scenario" "$count" 0 "$file" >"$log" 2>"$folder/err" &
    lonely=$!
    started+=("$lonely")
    expect ready
    sleep "0.0$((run % 10))"
    kill "$server_pid"
    wait "$lonely"
    status=$?
    where="run $run, $count windows"
    [ $status -eq 1 ] || fail "$where: status $status"
    [ "$(stat -c %s "$file")" = 3000 ] || fail "$where: $(stat -c %s "$file") bytes of 3000"
done
