#!/usr/bin/env bash
# shutdown.sh NAME PROGRAM [RUNS]: a display ends while threads open and close windows on it, each
# time, and no other one takes its place.
scenario=$1 program=$2 runs=${3:-5}
. "$(dirname "$0")/screen.sh"

start_server none
for ((run = 0; run < runs; run++)); do
    timeout -s ABRT 250 "$program" >"$log" 2>&1
    status=$?
    [ $status -eq 0 ] || fail "run $run: status $status"
done
