#!/usr/bin/env bash
# compile_by_hand.sh BUILD_FOLDER C_COMPILER SANITIZERS: cmake --install, then what the manual says:
# cc prog.c $(pkg-config --cflags --libs plinth).
set -euo pipefail
build=$1 cc=$2 sanitize=$3
prefix=$build/install_test/prefix
rm -rf "$build/install_test"
mkdir -p "$prefix"
cmake --install "$build" --prefix "$prefix.made" >/dev/null
rmdir "$prefix"
mv "$prefix.made" "$prefix" # what is installed may be moved
cd "$build/install_test"
cat >prog.c <<'PROGRAM'
#include <plinth.h>

int Text_calls;

/* A program may have functions named like the library's own insides or calls. */
void *MyUpdate(void)
{
    Text_calls++;
    return 0;
}

void ProgramMain(void)
{
    Open_Sys(0);
    int32_t window = OpenWindow(50, 50, 200, 100);
    Text(window, "by hand");
    if (window != 0 && GetTextWidth(window, "by hand") > 0)
        End();
}
PROGRAM
flags=()
[ -z "$sanitize" ] || flags=("-fsanitize=$sanitize")
libdir=$(dirname "$(find "$prefix" -name plinth.pc)")
# shellcheck disable=SC2046
"$cc" "${flags[@]}" prog.c -o prog \
    $(PKG_CONFIG_PATH=$libdir pkg-config --cflags --libs plinth)
env -u DISPLAY -u WAYLAND_DISPLAY timeout 250 ./prog
