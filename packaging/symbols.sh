#!/bin/sh
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# usage: symbols.sh check|update FOLDER VERSION HEADER_FOLDER LIBRARY...
# Compares the exports of each shared library with its Debian symbols file in FOLDER, or adds new exports to that file
# as introduced in VERSION. It never removes a symbol, because programs built with an older version may need it.
# Delete a symbol by hand if no release has had it, or if the SOVERSION changes.
set -eu
[ $# -ge 5 ] || { sed -n '4s/^# //p' "$0" >&2; exit 2; }
command=$1
folder=$2
version=$3
headers=$4
shift 4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

for library in "$@"; do
    name=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
    # libQVSongLrcCore.so.1 is in libqvsonglrc-core1.
    package=$(echo "$name" | sed -E 's/^lib(QVSongLrc)(.*)\.so\.([0-9]+)$/lib\L\1-\2\3/')
    list=$folder/$package.symbols
    [ -e "$list" ] || [ "$command" != update ] || : >"$list"
    nm -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort >"$work/exported"
    awk '/^ / { sub("@Base", "", $1); print $1, $2 }' "$list" | LC_ALL=C sort >"$work/listed"
    awk '{ print $1 }' "$work/listed" >"$work/names"
    LC_ALL=C comm -13 "$work/names" "$work/exported" >"$work/new"
    LC_ALL=C comm -23 "$work/names" "$work/exported" >"$work/gone"

    # Every export must belong to a class, namespace or variable that a public header declares.
    c++filt <"$work/exported" | sed -E 's/^(vtable|typeinfo|typeinfo name|VTT|guard variable) for //; s/^([A-Za-z0-9_]+).*/\1/' |
        sort -u >"$work/owners"
    while read -r owner; do
        grep -Eqs "^((class|struct) ([A-Z_]+_EXPORT )?$owner( .*|)|namespace $owner \{|.* extern .*\<$owner\>.*)$" \
            "$headers"/*.h || { echo "$name exports $owner, which is not in $headers"; status=1; }
    done <"$work/owners"

    if [ "$command" = update ]; then
        {
            echo "$name $package #MINVER#"
            { cat "$work/listed"; sed "s/$/ $version/" "$work/new"; } | LC_ALL=C sort | sed 's/ /@Base /; s/^/ /'
        } >"$list"
        c++filt <"$work/new" | sed "s/^/$name + /"
    elif [ -s "$work/new" ] || ! [ -s "$work/names" ]; then
        c++filt <"$work/new" | sed "s/^/$name has a new export: /"
        status=1
    fi
    if [ -s "$work/gone" ]; then
        c++filt <"$work/gone" | sed "s/^/$name has lost: /"
        status=1
    fi
done
exit $status
