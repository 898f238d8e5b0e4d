# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Tells what zsh offers for each command line with the cursor at its end: "= LINE", then a candidate a line.
# usage: zsh -f complete.zsh COMPLETIONS_FOLDER LINE...
zmodload zsh/zpty
export ZDOTDIR=$(mktemp -d) COMPLETIONS=$1 TERM=dumb
cat >$ZDOTDIR/.zshrc <<'RC'
PS1= PS2=
fpath=($COMPLETIONS $fpath)
autoload -U compinit
compinit -D -u
compadd() { # tells what fits
    local -a fitting
    if [[ $@[1,(i)(-|--)] != *-[OAD](| *) ]]; then # not one that adds nothing
        builtin compadd -O fitting "$@"
        ((!$#fitting)) || print -lr -- $fitting >>$ZDOTDIR/offered
    fi
    builtin compadd "$@"
}
offer() { print -r -- "= $BUFFER" >>$ZDOTDIR/offered; _main_complete }
zle -C offer complete-word offer
bindkey '^T' offer
next() { BUFFER= }
zle -N next
bindkey '^B' next
leave() { exit }
zle -N leave
bindkey '^Y' leave
print READY
RC
# The keys are such as mean nothing to the terminal before the line editor runs.
zpty shell zsh -i -o no_global_rcs
zpty -r shell ready '*READY*'
for line in "${@:2}"; do
    zpty -w -n shell $line$'\C-T\C-B'
done
zpty -w -n shell $'\C-Y'
while zpty -r shell rest; do done
cat $ZDOTDIR/offered
rm -r $ZDOTDIR
