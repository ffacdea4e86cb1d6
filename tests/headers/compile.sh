#!/usr/bin/env bash
# compile.sh alone|together|brings|kits|library INCLUDE_FOLDER WORK_FOLDER COMPILER...: compiles each public
# header in a source of its own, but for those that begin a source of "brings"; or all of them in one,
# forwards and backwards, so that each stands before each other one; or, by brings.txt, a program that
# includes a header and uses what that brings in (a header and the statements a line). No warning is
# allowed. Sources of the same text stay as they are, for a compiler cache. "kits" compiles nothing,
# but compares what each kit's own header includes with what is in its folder. "library" reads the
# library's own sources where each of them has all of the C library in sight, as <stdlib.h> alone has
# <signal.h> on another system: no name of ours is one of those.
set -euo pipefail
check=$1 include=$2 work=$3/$1
here=$(cd "$(dirname "$0")" && pwd)
shift 3
rm -rf "$work"
mkdir -p "$work"
cd "$include"
headers=$(find . -name '*.h' ! -path './server/*' -printf '%P\n' | sort)
# The oldest standard that the headers are for: there the host's own headers bring the least.
flags=(-std=c++14 -O0 -Wall -Wextra -Werror -Wno-unused -Wno-uninitialized -I"$include")
for folder in */; do
    flags+=(-I"$include/${folder%/}")
done

# Reads headers, a line each, into a source that includes them by name, as programs do.
includes() { sed 's|.*/||; s|.*|#include <&>|'; }

# What is in one list and not in the other ends the check.
same() { diff <(sort <<<"$2") <(sort <<<"$3") || { echo "$1 names something else" >&2; exit 1; }; }
included() { sed -n 's/^#include <\(.*\)>$/\1/p' "$1"; }
# The header of the kit in a folder.
kit_header() { echo "${1^}Kit.h"; }

case $check in
kits)
    kits=
    for folder in */; do
        folder=${folder%/}
        [ "$folder" != server ] || continue
        kit=$(kit_header "$folder")
        kits+=$kit$'\n'
        same "$kit" "$(included "$kit")" "$(ls "$folder")"
    done
    same Be.h "$(included Be.h)" "${kits%$'\n'}"
    ;;
library)
    root=$here/../..
    flags+=(-std=c++20 -Wno-multichar -I"$root" -I"$root/include")
    for header in signal stdlib unistd stdio string strings math time ctype errno fcntl limits \
        locale pthread dirent sched semaphore setjmp termios wchar sys/{stat,time,types,wait,mman}; do
        echo "#include <$header.h>"
    done >"$work/all.h"
    # Read once, for them all.
    echo Be.h algorithm atomic exception memory string utility vector | tr ' ' '\n' | includes \
        >>"$work/all.h"
    "$@" "${flags[@]}" -x c++-header "$work/all.h" -o "$work/all.h.gch"
    for folder in runtime windows gadgets graphics files system; do
        printf '#include "%s"\n' "$root/$folder"/*.cpp >"$work/all_$folder.cc"
        printf '%s\0' "$work/all_$folder.cc"
    done | xargs -0 -P 2 -I{} "$@" "${flags[@]}" -include "$work/all.h" -fsyntax-only {}
    ;;
alone)
    for header in $headers; do
        name=$(basename "$header" .h)
        grep -qw "^$name\.h" "$here/brings.txt" || includes <<<"$header" >"$work/$name.cpp"
    done
    ;;
together)
    flags+=(-std=c++20)
    includes <<<"$headers" >"$work/forwards.cpp"
    tac <<<"$headers" | includes >"$work/backwards.cpp"
    ;;
brings)
    while read -r header statements; do
        printf '#include <%s>\n#include <stdio.h>\nvoid use()\n{\n    %s\n}\n' "$header" "$statements" \
            >"$work/${header//\//_}.cpp"
    done <"$here/brings.txt"
    ;;
esac
find "$work" -name '*.cpp' -print0 | xargs -0 -P 2 -I{} "$@" "${flags[@]}" -c {} -o {}.o
