#!/bin/sh
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# usage: symbols.sh check|update LIST VERSION HEADER_FOLDER LIBRARY...
# Compares what the shared libraries export with LIST, a Debian symbols file, or adds what is new to it with the
# version in which it came. Nothing is ever taken out: programs that were built with an older version need it.
# A symbol that no release has had, and one that goes with a new SOVERSION, is deleted from LIST by hand.
set -eu
[ $# -ge 5 ] || { sed -n '4s/^# //p' "$0" >&2; exit 2; }
command=$1
list=$2
version=$3
headers=$4
shift 4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

soname() {
    objdump -p "$1" | awk '$1 == "SONAME" { print $2 }'
}

# The symbols that LIST has of a library, with the version that each came in.
listed() {
    awk -v soname="$1" '/^[^ ]/ { is_in = $1 == soname } /^ / && is_in { sub("@Base", "", $1); print $1, $2 }' "$list"
}

[ -e "$list" ] || [ "$command" != update ] || : >"$list"
for library in "$@"; do
    name=$(soname "$library")
    nm -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort >"$work/exported"
    listed "$name" | LC_ALL=C sort >"$work/listed"
    awk '{ print $1 }' "$work/listed" >"$work/names"
    LC_ALL=C comm -13 "$work/names" "$work/exported" >"$work/new"
    LC_ALL=C comm -23 "$work/names" "$work/exported" >"$work/gone"

    # What is exported belongs to a name that a header defines, and so documents.
    c++filt <"$work/exported" | sed -E 's/^(vtable|typeinfo|typeinfo name|VTT|guard variable) for //; s/^([A-Za-z0-9_]+).*/\1/' |
        sort -u >"$work/owners"
    while read -r owner; do
        grep -Eqs "^((class|struct) ([A-Z_]+_EXPORT )?$owner( .*|)|namespace $owner \{|.* extern .*\<$owner\>.*)$" \
            "$headers"/*.h || { echo "$name exports $owner, which is not in $headers"; status=1; }
    done <"$work/owners"

    if [ "$command" = update ]; then
        {
            echo "$name libqvsonglrc${name##*.} #MINVER#"
            { cat "$work/listed"; sed "s/$/ $version/" "$work/new"; } | LC_ALL=C sort | sed 's/ /@Base /; s/^/ /'
        } >>"$work/list"
        c++filt <"$work/new" | sed "s/^/$name + /"
    elif [ -s "$work/new" ] || ! [ -s "$work/names" ]; then
        c++filt <"$work/new" | sed "s/^/$name exports, and the list has not: /"
        status=1
    fi
    if [ -s "$work/gone" ]; then
        c++filt <"$work/gone" | sed "s/^/$name has lost: /"
        status=1
    fi
done
[ "$command" != update ] || cp "$work/list" "$list"
exit $status
