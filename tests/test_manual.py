# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Compares the options in manual pages and shell completions with those in --help.

usage: test_manual.py PROGRAM...
"""
import os
import pathlib
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAMS = [pathlib.Path(argument) for argument in sys.argv[1:]]
COMPLETIONS = ROOT / "packaging/completions"

# Both scripts complete each argument after the first two, and print "= LINE" and one candidate per line.
BASH = """
source /usr/share/bash-completion/bash_completion
compopt() { :; }  # needs the line editor, which is not running
for COMP_LINE in "${@:2}"; do
    COMP_WORDS=(${COMP_LINE//=/ = })  # the line editor splits at "=" too
    [[ $COMP_LINE != *[' ='] ]] || COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) COMP_POINT=${#COMP_LINE} COMPREPLY=()
    source "$0/${COMP_WORDS[0]}.bash"
    "_${COMP_WORDS[0]//-/_}"
    printf '%s\\n' "= $COMP_LINE" "${COMPREPLY[@]}"
done
"""
ZSH = """
fpath=($0 $fpath)
autoload -U compinit
compinit -D -u
compadd() {
    local -a matching
    [[ $@[1,(i)(-|--)] == *-[OAD](| *) ]] || builtin compadd -O matching "$@"
    print -lr -- $matching >&3
    builtin compadd "$@"
}
complete-all() {
    for BUFFER in "${(@)argv_lines}"; do
        print -r -- "= $BUFFER" >&3
        CURSOR=$#BUFFER
        zle candidates
    done
    exit
}
argv_lines=("${@:2}")
exec 3>&1
candidates() { _main_complete _normal }
zle -C candidates complete-word candidates
zle -N zle-line-init complete-all
vared -t $1 -c line
"""


def help_options(program, *commands):
    """Maps each command line, "songlrc" or "songlrc parse", to the set of its options."""
    text = subprocess.run([program, *commands, "--help"], stdout=subprocess.PIPE, check=True, text=True).stdout
    options = set(",".join(re.findall(r"^  (-\S+)", text, re.M)).split(","))
    found = {" ".join([program.name, *commands]): options}
    for command in re.findall(r"^  (\w+)", text.partition("Subcommands:")[2], re.M):
        found |= help_options(program, *commands, command)
    return found


def completions(shell, script, lines):
    """Maps each line to the set of candidates that the shell offers at its end, in a folder with a few files."""
    master, terminal = pty.openpty()
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "song.lrc").touch()
        pathlib.Path(folder, "folder").mkdir()
        output = subprocess.run([*shell, "-c", script, COMPLETIONS, os.ttyname(terminal), *lines], cwd=folder,
                                stdin=terminal, stdout=subprocess.PIPE, text=True, timeout=60).stdout
    os.close(terminal)
    os.close(master)
    blocks = (block.split("\n") for block in ("\n" + output).split("\n= ")[1:])
    return {line: set(filter(None, candidates)) for line, *candidates in blocks}


class TestManual(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.options = {}
        for program in PROGRAMS:
            cls.options |= help_options(program)

    def test_pages(self):
        standard = {"-h", "--help", "--version"}
        for program in PROGRAMS:
            page = (ROOT / f"docs/man/{program.name}.1").read_text().replace("\\-", "-")
            calls = {call: options for call, options in self.options.items() if call.split()[0] == program.name}
            synopsis = {call: set(re.findall(r"--[\w-]+", text))
                        for call, text in re.findall(r'^\.SY "?([^"\n]*)"?\n(.*?)^\.YS', page, re.M | re.S)}
            with self.subTest(program=program.name):
                self.assertEqual(synopsis, {call: {name for name in options - standard if name.startswith("--")}
                                            for call, options in calls.items() if options - standard})
                described = re.findall(r"^\.TP\n\.B[IR]? (-.*)", page, re.M)
                self.assertEqual(sorted(re.findall(r"--?\w[\w-]*", " ".join(described))),
                                 sorted(set().union(*calls.values())))

    def test_completions(self):
        expected = {call + " -": options for call, options in self.options.items()}
        expected |= {
            "songlrc pa": {"parse"},
            "songlrc format --output": {"--output", "--output-encoding"},
            "songlrc parse song": {"song.lrc"},
            "songlrc compare song.lrc so": {"song.lrc"},
            "songlrc fetch --ca-file so": {"song.lrc"},
            "songlrc format --output=so": {"song.lrc"},
            "songlrc shift --by ": set(),
            "songlrc search so": set(),
            "songlrc-editor so": {"song.lrc"},
            "songlrc-service --data ": {"folder"},
            "songlrc-service --library=fo": {"folder"},
        }
        names = {program.name for program in PROGRAMS}
        expected = {line: options for line, options in expected.items() if line.split()[0] in names}
        for shell, script in (["bash"], BASH), (["zsh", "-f"], ZSH):
            with self.subTest(shell=shell[0]):
                if not shutil.which(shell[0]):
                    self.skipTest("the shell is not installed")
                self.assertEqual(completions(shell, script, expected), expected)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
