#!/usr/bin/env bash
# locks.sh SOURCE_DIR COMPILER FLAGS...: has clang follow the locks of all sources that know
# kits/support/Mutex.h, directly or through other headers. Fails where something is touched without
# the lock that guards it.
set -euo pipefail
cd "$1/kits"
compiler=$2
shift 2
flags=(-std=c++20 -Wno-everything "$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# The files among those named that include a header of `headers`.
including() { git ls-files "$@" | xargs grep -lE "#include [\"<]($headers)[\">]" || true; }

headers=support/Mutex.h
before=
while [ "$headers" != "$before" ]; do
    before=$headers
    headers=$({ tr '|' '\n' <<<"$headers" && including '*.h'; } | sort -u | paste -sd '|')
done
sources=$(including '*.cpp')
[ -n "$sources" ] || { echo "no source locks anything"; exit 1; }

"$compiler" "${flags[@]}" -x c++-header pch.h -o "$folder/pch.h.pch"
xargs -P 2 -n 1 "$compiler" "${flags[@]}" -include-pch "$folder/pch.h.pch" -fsyntax-only \
    -Wthread-safety -Werror=thread-safety <<<"$sources"
