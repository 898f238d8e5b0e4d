# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Compares the options in manual pages and shell completions with those in --help.

usage: test_manual.py PROGRAM...
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
COMPLETIONS = ROOT / "packaging/completions"

# Prints the candidates for the end of the line "$1".
BASH = """
source /usr/share/bash-completion/bash_completion
source "$0"
compopt() { :; }  # needs the line editor, which is not running
COMP_LINE=$1 COMP_POINT=${#1} COMP_WORDS=(${1//=/ = })  # the line editor splits at "=" too
[[ $1 != *[' ='] ]] || COMP_WORDS+=('')
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
"_${COMP_WORDS//-/_}"
printf '%s\\n' "${COMPREPLY[@]}"
"""
# Prints what is passed to _arguments for the program, or for its command "$1".
ZSH = """
_arguments() { [[ -n $words && $* == *-C* ]] || print -rl -- "$@"; state=argument }
words=("$@")
source "$0"
"""


def output(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True, timeout=60, **options).stdout


def help_options(program, *commands):
    """Maps each call, "songlrc" or "songlrc parse", to the set of its options."""
    text = output(program, *commands, "--help")
    found = {" ".join([program.name, *commands]): set(",".join(re.findall(r"^  (-\S+)", text, re.M)).split(","))}
    for command in re.findall(r"^  (\w+)", text.partition("Subcommands:")[2], re.M):
        found |= help_options(program, *commands, command)
    return found


OPTIONS = {pathlib.Path(argument).name: help_options(pathlib.Path(argument)) for argument in sys.argv[1:]}


class TestManual(unittest.TestCase):
    def test_pages(self):
        for program, calls in OPTIONS.items():
            page = (ROOT / f"docs/man/{program}.1").read_text().replace("\\-", "-")
            synopsis = {call: set(re.findall(r"--[\w-]+", text))
                        for call, text in re.findall(r'^\.SY "?([^"\n]*)"?\n(.*?)^\.YS', page, re.M | re.S)}
            described = re.findall(r"--?\w[\w-]*", " ".join(re.findall(r"^\.TP\n\.B[IR]? (-.*)", page, re.M)))
            self.assertEqual(sorted(described), sorted(set().union(*calls.values())))
            for call, options in calls.items():
                long = {name for name in options if name.startswith("--")} - {"--help", "--version"}
                self.assertEqual(synopsis.pop(call, set()), long, call)
            self.assertFalse(synopsis)

    def test_zsh(self):
        for program, calls in OPTIONS.items():
            for call, options in calls.items():
                arguments = output("zsh", "-fc", ZSH, COMPLETIONS / f"_{program}", *call.split()[1:])
                self.assertEqual(set(re.findall(r"^(?:\(.*?\))?(-[\w-]+)[+=]?\[", arguments, re.M)), options, call)

    def test_bash(self):
        rows = {call + " -": options for calls in OPTIONS.values() for call, options in calls.items()} | {
            "songlrc pa": {"parse"},
            "songlrc parse song": {"song.lrc"},
            "songlrc fetch --ca-file so": {"song.lrc"},
            "songlrc format --output=so": {"song.lrc"},
            "songlrc shift --by ": set(),
            "songlrc search so": set(),
            "songlrc-editor so": {"song.lrc"},
            "songlrc-service --data ": {"folder"},
            "songlrc-service --library=fo": {"folder"},
        }
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "song.lrc").touch()
            pathlib.Path(folder, "folder").mkdir()
            for line, expected in rows.items():
                program = line.split()[0]
                if program in OPTIONS:
                    found = output("bash", "-c", BASH, COMPLETIONS / f"{program}.bash", line, cwd=folder).split()
                    self.assertEqual(set(found), expected, line)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
