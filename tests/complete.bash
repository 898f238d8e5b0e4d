#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Tells what bash offers for each command line with the cursor at its end: "= LINE", then a candidate a line.
# usage: bash complete.bash COMPLETIONS_FOLDER LINE...
# shellcheck disable=SC1091 # a package
source /usr/share/bash-completion/bash_completion
compopt() { :; } # concerns the line editor, which is not there
folder=$1
shift
for COMP_LINE in "$@"; do
    echo "= $COMP_LINE"
    # shellcheck disable=SC2206 # split on purpose; at a "=" too, as the line editor does
    COMP_WORDS=(${COMP_LINE//=/ = })
    [[ $COMP_LINE != *[' ='] ]] || COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_POINT=${#COMP_LINE}
    COMPREPLY=()
    # shellcheck disable=SC1090 # one of several
    source "$folder/${COMP_WORDS[0]}"
    function=$(complete -p "${COMP_WORDS[0]}" | sed 's/.*-F \([^ ]*\).*/\1/')
    "$function" "${COMP_WORDS[0]}" "${COMP_WORDS[-1]}" "${COMP_WORDS[-2]}"
    printf '%s\n' "${COMPREPLY[@]}"
done
