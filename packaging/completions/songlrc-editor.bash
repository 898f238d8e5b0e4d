# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Completion for songlrc-editor. Needs the package bash-completion.
_songlrc_editor()
{
    local cur prev words cword split
    _init_completion -s || return
    if [[ $prev == --service ]]; then
        return
    elif [[ $prev != --ca-file && $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '-h --help --version --service --ca-file' -- "$cur")
    else
        _filedir
    fi
}
complete -F _songlrc_editor songlrc-editor
