#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""songlrc as a person or a script runs it."""
import contextlib
import json
import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

from programs import BIN, SAMPLES, LyricServer, run

ODD = "[ti:T]\n\n[00:02.00][0:1,5]x\r\nplain\n"


def songlrc(*arguments, **options):
    return run("songlrc", *arguments, **options)


class SonglrcTest(unittest.TestCase):
    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        self.enterContext(contextlib.chdir(folder))

    def assert_error(self, result, status):
        """The status, and one line of text on standard error."""
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertRegex(result.stderr.decode(), r"\Asonglrc: [^\x00-\x1f]+\n\Z")

    def test_prints(self):
        for name, arguments, text, expected in (
            ("parse", "parse", ODD, "    0  property  ti = T\n    1  timed     00:02.00 00:01.00  x␍\n    2  plain     plain\n"),
            ("format", "format", ODD, "[ti:T]\n[00:02.00][00:01.00]x\r\nplain\n"),
            ("preview", "preview", ODD, "[ti:T]\n[00:01.00]x\r\n[00:02.00]x\r\n"),
            ("preview without tags", "preview --no-tags", ODD, "T\nx\r\nx\r\n"),
            ("shift stops at 0", "shift --by -1500", ODD, "[ti:T]\n[00:00.50][00:00.00]x\r\nplain\n"),
            ("shift stops at the end of time", "shift --by=9223372036854775807", ODD,
             "[ti:T]\n[153722867280912:55.80][153722867280912:55.80]x\r\nplain\n"),
            ("mark", "mark", "[00:01.00]a\n[00:05.00]b",
             "[00:01.00]a\n[00:01.30]Maker Tool: Quendle\n[00:01.70]https://www.quendle.example\n[00:05.00]b\n"),
            ("format characters", "parse", "a\u202eb", "    0  plain     a\ufffdb\n"),
            ("half a surrogate pair", "format", "[ti:a🎵:b]", "[ti:a\ufffd]\n"),
            ("empty", "format", "", ""),
            ("parse to JSON", "parse --json", "[ti:a🎵:b]\n[01:02.50][00:01.00]'x\"\\\t\x01\n",
             '{"file":"-","songText":"[ti:a\\ud83c]\\n[01:02.50][00:01.00]\'x\\"\\\\\\t\\u0001\\n","lines":['
             '{"isProperty":true,"propertyStr":"ti","aryTimes":[],"lineText":"a\\ud83c","txtRg":[0,7],"playTime":0,'
             '"displayText":"[ti:a\\ud83c]"},'
             '{"isProperty":false,"propertyStr":null,"aryTimes":[62500,1000],"lineText":"\'x\\"\\\\\\t\\u0001",'
             '"txtRg":[8,26],"playTime":62.5,"displayText":"[01:02.50][00:01.00]\'x\\"\\\\\\t\\u0001"}]}\n'),
            ("preview to JSON", "preview --json --no-tags", "[ti:T]\n[20:02.03]\t",
             '{"file":"-","text":"T\\n\\t\\n","lines":['
             '{"isProperty":true,"propertyStr":"ti","aryTimes":[200],"lineText":"T","txtRg":[0,1],"playTime":0.2,'
             '"displayText":"[ti:T]"},'
             '{"isProperty":false,"propertyStr":null,"aryTimes":[1202029],"lineText":"\\t","txtRg":[2,1],'
             '"playTime":1202.029,"displayText":"[20:02.02]\\t"}]}\n'),
        ):
            with self.subTest(name):
                result = songlrc(*arguments.split(), "-", stdin=text.encode())
                self.assertEqual((result.stdout.decode(), result.stderr, result.returncode), (expected, b"", 0))

    def test_refuses(self):
        search = ["search", "--title", "x"]
        for name, status, arguments, stdin in (
            ("no command", 2, [], b""),
            ("unknown command", 2, ["sing"], b""),
            ("no file", 2, ["format"], b""),
            ("two files", 2, ["format", "a", "b"], b""),
            ("one file to compare", 2, ["compare", "a"], b""),
            ("no time", 2, ["shift", "-"], b""),
            ("time is not a number", 2, ["shift", "--by", "1.5s", "-"], b""),
            ("time beyond 64 bits", 2, ["shift", "--by", "9223372036854775808", "-"], b""),
            ("unknown encoding", 2, ["format", "--encoding", "klingon", "-"], b""),
            ("unknown encoding to write", 2, ["format", "--output-encoding", "klingon", "-"], b""),
            ("standard input in place", 2, ["format", "--in-place", "-"], b""),
            ("two places to write", 2, ["format", "--in-place", "-o", "x", "y"], b""),
            ("standard input twice", 2, ["compare", "-", "-"], b""),
            ("a file without a name", 2, ["parse", ""], b""),
            ("a name like a list", 3, ["parse", "[a,b]"], b""),
            ("a name that begins with a dash", 2, ["parse", "-a.lrc"], b""),
            ("nothing to look up", 2, ["search"], b""),
            ("no host", 2, [*search, "--service", "a b"], b""),
            ("port 0", 2, [*search, "--service", "a:0"], b""),
            ("port 65536", 2, [*search, "--service", "a:65536"], b""),
            ("user before the host", 2, [*search, "--service", "u@a"], b""),
            ("artist alone", 3, ["search", "--artist", "x", "--service", "127.0.0.1:1"], b""),
            ("path behind the host", 2, [*search, "--service", "a/b"], b""),
            ("no authority", 3, [*search, "--ca-file", "/nowhere"], b""),
            ("authority without certificate", 3, [*search, "--ca-file", "/dev/null"], b""),
            ("nothing listens", 3, [*search, "--service", "127.0.0.1:1"], b""),
            ("missing", 3, ["format", "/nowhere/song.lrc"], b""),
            ("a directory", 3, ["format", "/"], b""),
            ("unreadable", 3, ["format", "/proc/self/mem"], b""),
            ("not in the encoding", 3, ["format", "--encoding", "utf-8", "-"], b"\xff"),
            ("UTF-16 of odd length", 3, ["format", "-"], b"\xff\xfex"),
            ("no text at all", 3, ["format", "-"], b"\x7fELF\0\xff\xff"),
            ("not in the encoding to write", 3, ["format", "--output-encoding", "us-ascii", "-"], "é".encode()),
            ("full disk", 3, ["format", "-o", "/dev/full", "-"], b"x"),
            ("nowhere to write", 3, ["format", "-o", "/nowhere/song.lrc", "-"], b"x"),
            ("directory to write", 3, ["format", "-o", "/", "-"], b"x"),
            ("missing file to compare", 3, ["compare", "-", "/nowhere/song.lrc"], b"x"),
        ):
            with self.subTest(name):
                result = songlrc(*arguments, stdin=stdin)
                self.assert_error(result, status)
                self.assertEqual(result.stdout, b"")
        self.assertIn(b"PEM", songlrc(*search, "--ca-file", "/dev/null").stderr)
        self.assertEqual(json.loads(songlrc("search", "--json").stdout)["error"]["code"], 2)
        self.assertTrue(pathlib.Path("/dev/full").is_char_device(), "the device was replaced by a file")

    def test_compares(self):
        pathlib.Path("-a.lrc").write_text("[ti:A]\n[0:1.0]x")
        for text, output in (("[ti:A]\n\n[00:01.00]x\n", b"equal\n"), ("[ti:A]\n[00:01.01]x\n", b"different\n")):
            result = songlrc("compare", "--", "-a.lrc", "-", stdin=text.encode())
            self.assertEqual((result.stdout, result.returncode), (output, 0 if output == b"equal\n" else 1))

    def test_goes_on_after_a_failure(self):
        pathlib.Path("good").write_text("[00:01.00]x")
        for command in ("parse", "preview"):
            result = songlrc(command, "--json", "good", "none", "good")
            self.assert_error(result, 3)
            first, failure, last = map(json.loads, result.stdout.splitlines())
            self.assertEqual((first, len(first["lines"])), (last, 1))
            self.assertEqual((failure["file"], failure["error"]["code"]), ("none", 3))
        self.assertEqual(songlrc("preview", "good", "good").stdout, b"==> good <==\n[00:01.00]x\n" * 2)

    def test_reads_samples(self):
        for name, title, lines, timed, properties in (  # as one counts them in the file
            ("arirang", "아리랑", 6, 4, 2), ("au-clair-de-la-lune", "Au clair de la lune", 10, 8, 2),
            ("auld-lang-syne", "Auld Lang Syne", 19, 16, 3), ("gaudeamus-igitur", "Gaudeamus igitur", 14, 10, 1),
            ("hymn-to-liberty", "Ύμνος εις την Ελευθερίαν", 10, 8, 2), ("molihua", "茉莉花", 10, 8, 2),
            ("sakura-sakura", "さくら さくら", 9, 7, 2), ("the-star", "The Star", 6, 4, 2),
            ("vo-pole-bereza", "Во поле берёза стояла", 9, 7, 2),
        ):
            output = songlrc("parse", SAMPLES / f"{name}.lrc").stdout.decode()
            self.assertIn(f"  property  ti = {title}\n", output)
            self.assertEqual([output.count(kind) for kind in ("\n", "  timed     ", "  property  ")], [lines, timed, properties])

    def test_keeps_bytes(self):
        for name, content in (
            ("UTF-8", "[ti:歌🎵]\n[00:01.00]é\r\n".encode()),
            ("UTF-8 with a mark", "\ufeff[ti:歌]\n".encode()),
            ("UTF-16LE", "\ufeff歌🎵\n".encode("utf-16-le")),
            ("UTF-16BE", "\ufeff歌🎵\n".encode("utf-16-be")),
            ("NUL", b"[00:01.00]a\0b\n"),
            ("Latin-1", "[00:01.00]Grüße\n".encode("latin-1")),
            ("one letter in Latin-1", b"\xe9\n"),
            ("EUC-KR", "[00:00.43]가고다서\n".encode("euc-kr")),
            ("windows-1251", "[00:01.00]Берёза стояла\n".encode("cp1251")),
            ("windows-1250", "[00:01.00]Łąka pełna świata\n".encode("cp1250")),
            ("GBK", "[00:01.00]好一朵\n[00:02.00]茉莉花\n".encode("gbk")),
            ("Shift_JIS", (SAMPLES / "sakura-sakura.lrc").read_bytes()),
            ("all high bytes", bytes(range(128, 256)) + b"\n"),
            ("several blocks", "歌".encode() * 30_000 + b"\n"),
        ):
            with self.subTest(name):
                song = pathlib.Path("[a]")
                song.write_bytes(content)
                self.assertEqual(songlrc("format", song, "-o", "written").returncode, 0)
                self.assertEqual(pathlib.Path("written").read_bytes(), content)
                self.assertEqual(songlrc("shift", "--by", "0", "--in-place", song).returncode, 0)
                self.assertEqual(song.read_bytes(), content)

    def test_converts_encodings(self):
        self.assertEqual(songlrc("format", "-", stdin="\ufeffé".encode("utf-16-le")).stdout, "é\n".encode())
        for source, target, text, expected in (
            ("koi8-r", "cp1251", "[ti:Песня]".encode("koi8-r"), "[ti:Песня]\n".encode("cp1251")),
            ("utf-8", "utf-16", b"x", b"\xff\xfex\0\n\0"),
            ("utf-16", "utf-8", "é".encode("utf-16-be"), "é\n".encode()),
            ("utf-16", "utf-8", "\ufeffé".encode("utf-16-le"), "é\n".encode()),
        ):
            result = songlrc("format", "--encoding", source, "--output-encoding", target, "-", stdin=text)
            self.assertEqual(result.stdout, expected)

    def test_keeps_the_file_when_something_runs_out(self):
        old = b"[0:1.0]" * 60_000 + b"x" * 400_000
        song = pathlib.Path("old.lrc")
        song.write_bytes(old)
        scripts = ["trap '' XFSZ; ulimit -f 8; exec \"$0\" mark --in-place old.lrc", 'exec "$0" parse old.lrc >/dev/full']
        if "SANITIZED" not in os.environ:  # AddressSanitizer needs more memory than this to start
            scripts.append('ulimit -v 4000000; exec "$0" preview old.lrc')
        for script in scripts:
            with self.subTest(script):
                self.assert_error(subprocess.run(["sh", "-c", script, BIN / "songlrc"], capture_output=True), 3)
                self.assertEqual(song.read_bytes(), old)
                self.assertEqual(os.listdir(), ["old.lrc"])

    def test_writes_through_links(self):
        song, link = pathlib.Path(":linked.lrc"), pathlib.Path(":link")  # Qt takes a leading ":" for a resource
        song.write_text("[0:1.0]x")
        song.chmod(0o640)
        link.symlink_to(song)
        self.assertEqual(songlrc("format", "--in-place", link).returncode, 0)
        self.assertTrue(link.is_symlink())
        self.assertEqual((song.read_text(), song.stat().st_mode & 0o777), ("[00:01.00]x\n", 0o640))


class LookupTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = cls.enterClassContext(LyricServer())

    def options(self):
        return ["--service", f"127.0.0.1:{self.server.ports['trusted']}", "--ca-file", self.server.authority]

    def test_answers(self):
        for title, arguments, status, output in (
            ("two songs", "search --artist A", 0, "  B - Other  (1)\n* A - two songs  (2)\n"),
            ("two songs", "search --artist A --json", 0,
             '{"bestIndex":1,"results":[{"artist":"B","link":"1","track":"Other"},'
             '{"artist":"A","link":"2","track":"two songs"}]}\n'),
            ("nothing found", "search", 1, ""),
            ("refused", "search --json", 1,
             '{"error":{"domain":"com.zt.lyric","code":5,"localizedDescription":"no"}}\n'),
            ("good", "fetch", 0, "text"),
            ("good", "fetch --link 2", 0, "text"),
            ("no lyric", "fetch --link 2", 1, ""),
            ("empty lyric", "fetch --link 2", 0, ""),
            ("lyric with half a surrogate pair", "fetch --link 2", 0, "\ufffdx"),
            ("refused without a message", "search", 1, ""),
            ("closed without a word", "search", 3, ""),
        ):
            with self.subTest(title, arguments=arguments):
                result = songlrc(*arguments.split(), "--title", title, *self.options())
                self.assertEqual((result.stdout.decode(), result.returncode), (output, status))
                self.assertRegex(result.stderr.decode(), r"\Asonglrc: .+\n\Z" if status else r"\A\Z")

    def test_ends_on_interrupt(self):
        with tempfile.TemporaryDirectory() as folder:
            output = pathlib.Path(folder, "song.lrc")
            process = subprocess.Popen([BIN / "songlrc", "fetch", "--title", "stalls at once", "-o", output, *self.options()])
            self.server.wait_for_request("stalls%20at%20once")
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(10), 130)
            self.assertFalse(output.exists())


if __name__ == "__main__":
    unittest.main()
