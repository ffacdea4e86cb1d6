#!/usr/bin/env bash
# locks.sh SOURCE_DIR KEPT_DIR COMPILER FLAGS...: has clang follow the locks of all sources that know
# the words of kits/support/Mutex.h or runtime/lasting_locker.h, directly or through other headers.
# Fails where something is touched without the lock that guards it. The sources of a folder are
# followed at once, or one by one where they have names in common. What was right is not looked at
# again before a source, a header of ours that one includes, or the flags change.
set -euo pipefail
cd "$1"
kept=$2
compiler=$3
shift 3
flags=(-std=c++20 -Wno-everything "$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$kept"

# The files among those named that include a header of `headers`.
including() { git ls-files "$@" | xargs grep -lE "#include [\"<]($headers)[\">]" || true; }
# The names that a header of the tree is included by: below its root or below kits/.
headers='support/Mutex\.h|runtime/lasting_locker\.h'
before=
while [ "$headers" != "$before" ]; do
    before=$headers
    headers=$({ tr '|' '\n' <<<"$headers" && including '*.h' | sed 's|^kits/||; s|\.|\\.|g'; } |
        sort -u | paste -sd '|')
done
sources=$(including '*.cpp' | grep -v '^tests/')
[ -n "$sources" ] || { echo "no source locks anything"; exit 1; }

# What a source was when it was right: the flags, and all files of ours that it is made of.
print_of() { { echo "${flags[*]}"; xargs sha256sum <"$1" 2>&1; } | sha256sum; }

waiting=()
for group in $(dirname $sources | sort -u); do
    files=$kept/${group//\//:}
    if [ ! -f "$files.right" ] || [ "$(print_of "$files")" != "$(cat "$files.right")" ]; then
        waiting+=("$group")
    fi
done
[ ${#waiting[@]} -gt 0 ] || exit 0

"$compiler" "${flags[@]}" -x c++-header kits/pch.h -o "$folder/pch.h.pch"
# Follows a source, which writes down what it is made of.
follow_source() {
    "$compiler" "${flags[@]}" -include-pch "$folder/pch.h.pch" -fsyntax-only -Wthread-safety \
        -Werror=thread-safety -MD -MF "$2" "$1"
}
# Follows the sources of a folder.
follow() {
    local group=$1 files=$kept/${1//\//:} made=$folder/${1//\//:} source number=0
    rm -f "$files.right"
    for source in $sources; do
        [ "$(dirname "$source")" != "$group" ] || echo "#include \"$source\""
    done >"$made.cpp"
    if ! follow_source "$made.cpp" "$made.d" 2>/dev/null; then
        for source in $(cut -d '"' -f 2 "$made.cpp"); do
            number=$((number + 1))
            follow_source "$source" "$made.$number.d" || return
        done
    fi
    cat "$made"*.d | sed 's/^[^ ]*: //' | tr -d '\\' | tr ' ' '\n' | sort -u |
        { grep -v "^$\|^/usr/\|^$folder" || true; } >"$files"
    print_of "$files" >"$files.right"
}
for group in "${waiting[@]}"; do
    [ "$(jobs -rp | wc -l)" -lt 2 ] || wait -n || true
    follow "$group" &
done
wait
for group in "${waiting[@]}"; do
    [ -f "$kept/${group//\//:}.right" ] || exit 1
done
