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
    --artist | --by | --encoding | --least-likeness | --link | --output-encoding | --service | --title) return ;;
    esac
    $split && return
    local edit='--encoding -o --output --in-place --dry-run --verbose --strict --output-encoding'
    for command in "${words[@]:1:cword-1}" ''; do
        case $command in
        check) options='--encoding --json' ;;
        parse) options='--encoding --json --quiet' ;;
        format | mark) options=$edit ;;
        preview) options='--encoding --json --quiet --no-tags' ;;
        shift) options="--by --apply-offset --clamp $edit" ;;
        compare) options='--encoding --quiet' ;;
        search) options='--title --artist --service --ca-file --json' ;;
        fetch) options='--title --artist --service --ca-file --link --least-likeness -o --output' ;;
        '') options='--version' ;;
        *) continue ;;
        esac
        break
    done
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "-h --help $options" -- "$cur")
    elif [[ $command == '' ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'check parse format preview shift mark compare search fetch' -- "$cur")
    elif [[ $command != search && $command != fetch ]]; then
        _filedir
    fi
}
complete -F _songlrc songlrc
