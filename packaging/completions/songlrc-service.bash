# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Completion for songlrc-service. Needs the package bash-completion.
_songlrc_service()
{
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --library | --data) _filedir -d ;;
    --address | --port) ;;
    *) mapfile -t COMPREPLY < <(compgen -W '-h --help --version --library --port --data --address --json-log' -- "$cur") ;;
    esac
}
complete -F _songlrc_service songlrc-service
