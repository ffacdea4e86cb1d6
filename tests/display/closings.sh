#!/usr/bin/env bash
# closings.sh WAY MANAGER PROGRAM [RUNS]: a program whose windows close in one way ends with status 0
# and leaves all that it wrote, each time, with few windows and many, at once and when they are up.
# MANAGER is openbox, or none.
scenario=$1 manager=$2 program=$3 runs=${4:-12}
. "$(dirname "$0")/screen.sh"

# Moves over the windows all the time, faster than a hand.
move_pointer() {
    local path=() i
    for i in $(seq 0 40); do
        path+=(mousemove $((110 + 6 * i)) $((120 + (i * 53) % 240)) sleep 0.003)
    done
    while xdotool "${path[@]}"; do :; done
}

start_server "$manager"
if [ "$scenario" = under-pointer ]; then
    move_pointer >/dev/null 2>&1 &
    started+=($!)
fi
windows=(1 2 3 8) delays=(0 150 4 40 1)
for ((run = 0; run < runs; run++)); do
    count=${windows[run % 4]} delay=${delays[run % 5]} file=$folder/written
    rm -f "$file"
    timeout -s ABRT 250 "$program" "$scenario" "$count" "$delay" "$file" >"$log" 2>&1
    status=$?
    where="run $run, $count windows, delay $delay"
    [ $status -eq 0 ] || fail "$where: status $status"
    [ "$(stat -c %s "$file")" = 3000 ] || fail "$where: $(stat -c %s "$file") bytes of 3000"
done
