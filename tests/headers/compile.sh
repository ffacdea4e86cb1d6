#!/usr/bin/env bash
# compile.sh alone|together|brings INCLUDE_FOLDER WORK_FOLDER COMPILER...: compiles each public header
# in a source of its own; or all of them in one, forwards and backwards, so that each stands before
# each other one; or, by brings.txt, a program that includes a header and uses what that brings in
# (a header and the statements a line). No warning is allowed. Sources of the same text stay as they
# are, for a compiler cache.
set -euo pipefail
check=$1 include=$2 work=$3/$1
here=$(cd "$(dirname "$0")" && pwd)
shift 3
rm -rf "$work"
mkdir -p "$work"
cd "$include"
headers=$(find . -name '*.h' ! -path './server/*' -printf '%P\n' | sort)
flags=(-std=c++17 -O0 -Wall -Wextra -Werror -Wno-unused -Wno-uninitialized -I"$include")
for folder in */; do
    flags+=(-I"$include/${folder%/}")
done

# Reads headers, a line each, into a source that includes them by name, as programs do.
includes() { sed 's|.*/||; s|.*|#include <&>|'; }

case $check in
alone)
    for header in $headers; do
        includes <<<"$header" >"$work/$(basename "$header" .h).cpp"
    done
    ;;
together)
    includes <<<"$headers" >"$work/forwards.cpp"
    tac <<<"$headers" | includes >"$work/backwards.cpp"
    ;;
brings)
    while read -r header statements; do
        printf '#include <stdio.h>\n#include <%s>\nvoid use()\n{\n    %s\n}\n' "$header" "$statements" \
            >"$work/${header//\//_}.cpp"
    done <"$here/brings.txt"
    ;;
esac
find "$work" -name '*.cpp' -print0 | xargs -0 -P 2 -I{} "$@" "${flags[@]}" -c {} -o {}.o
