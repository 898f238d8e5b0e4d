# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Completion for songlrc. Needs the package bash-completion.
_songlrc()
{
    local cur prev words cword split command options
    _init_completion -s || return
    case $prev in
    -o | --output | --ca-file)
        _filedir
        return
        ;;
    --artist | --by | --encoding | --link | --output-encoding | --service | --title) return ;;
    esac
    $split && return
    for command in "${words[@]:1:cword-1}" ''; do
        case $command in
        parse) options='--encoding --json' ;;
        format | mark) options='--encoding -o --output --in-place --output-encoding' ;;
        preview) options='--encoding --json --no-tags' ;;
        shift) options='--by --encoding -o --output --in-place --output-encoding' ;;
        compare) options='--encoding' ;;
        search) options='--title --artist --service --ca-file --json' ;;
        fetch) options='--title --artist --service --ca-file --link -o --output' ;;
        '') options='--version' ;;
        *) continue ;;
        esac
        break
    done
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "-h --help $options" -- "$cur")
    elif [[ $command == '' ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'parse format preview shift mark compare search fetch' -- "$cur")
    elif [[ $command != search && $command != fetch ]]; then
        _filedir
    fi
}
complete -F _songlrc songlrc
