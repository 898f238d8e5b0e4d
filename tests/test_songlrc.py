#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""songlrc as a person or a script runs it."""
import contextlib
import fcntl
import json
import os
import pathlib
import pty
import signal
import subprocess
import tempfile
import time
import unittest

from programs import BIN, SAMPLES, LyricServer, run

ODD = b"[ti:T]\n\n[00:02.00][0:1,5]x\r\nplain\n"
CUT = b"[00:01.00]a<00:01.200>b\n\n[offset: +500 ]\n"
MARK = b"[00:01.30]Maker Tool: Quendle\n[00:01.70]https://www.quendle.example\n"
HIDDEN = ".song.lrc.songlrc-new"


def songlrc(*arguments, **options):
    return run("songlrc", *arguments, **options)


class SonglrcTest(unittest.TestCase):
    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        self.enterContext(contextlib.chdir(folder))
        self.song = pathlib.Path("song.lrc")

    def assert_result(self, result, status, output, errors=""):
        """The last is a pattern for standard error without the program's name."""
        self.assertEqual((result.stdout, result.returncode), (output, status), result.stderr)
        self.assertRegex(result.stderr.decode(), rf"\Asonglrc: {errors}\n\Z" if errors else r"\A\Z")

    def test_results(self):
        pathlib.Path("-a.lrc").write_text("[ti:A]\n[0:1.0]x")
        for name, arguments, text, status, expected, errors in (
            ("parse", "parse", ODD.replace(b"plain", "\u202e\u200d".encode()), 0,
             "    0  property  ti = T\n    1  timed     00:02.00 00:01.00  x␍\n"
             "    2  plain     \ufffd\u200d\n".encode(),
             'standard input: 2 places that "songlrc check" would name'),
            ("no tags", "preview --no-tags --quiet", ODD, 0, b"T\nx\r\nx\r\n", ""),
            ("JSON", "parse --json --quiet", "[ti:a🎵:b]\n[01:02.50][00:01.00]'x\"\\\t\x01\n".encode(), 0,
             b'{"file":"-","encoding":"UTF-8","songText":"[ti:a\\ud83c]\\n[01:02.50][00:01.00]\'x\\"\\\\\\t\\u0001\\n",'
             b'"lines":[{"isProperty":true,"propertyStr":"ti","aryTimes":[],"lineText":"a\\ud83c","txtRg":[0,7],'
             b'"playTime":0,"displayText":"[ti:a\\ud83c]"},'
             b'{"isProperty":false,"propertyStr":null,"aryTimes":[62500,1000],"lineText":"\'x\\"\\\\\\t\\u0001",'
             b'"txtRg":[8,26],"playTime":62.5,"displayText":"[01:02.50][00:01.00]\'x\\"\\\\\\t\\u0001"}]}\n', ""),
            ("its JSON", "preview --json", b"", 0, b'{"file":"-","encoding":"UTF-8","text":"","lines":[]}\n', ""),
            ("equal", "compare --quiet -- -a.lrc", b"[ti:A]\n\n[00:01.00]x\n", 0, b"equal\n", ""),
            ("different", "compare -- -a.lrc", b"[ti:A]\n[00:01.01]x\n", 1, b"different\n", ""),
            ("the import", "format", ODD, 0, b"[ti:T]\n\n[00:02.00][00:01.50]x\nplain\n", ""),
            ("the documents", "format --strict", ODD, 0, b"[ti:T]\n[00:02.00][00:01.00]x\r\nplain\n", ""),
            ("most ends are CR LF", "format", b"a\r\nb\nc\r\nd", 0, b"a\r\nb\r\nc\r\nd", ""),
            ("most ends are CR", "format", b"a\nb\rc\r", 0, b"a\rb\rc\r", ""),
            ("as many LF as CR LF", "format", b"a\r\nb\n", 0, b"a\nb\n", ""),
            ("only blank lines", "mark", b" \r\n\n", 0, b" \r\n\n", ""),
            ("thousandths", "format", b"[0:1.234]a\n[00:02.345]b\n", 0, b"[00:01.23]a\n[00:02.34]b\n",
             "standard input: 2 times are cut to hundredths of a second"),
            ("word tags", "shift --by 1", CUT, 0, b"[00:01.00]a<00:01.201>b\n\n[offset: +500 ]\n", ".* 1 .*"),
            ("strict", "shift --strict --by -1000", CUT, 0, b"[00:00.00]a<00:01.200>b\n[offset: +500 ]\n", ""),
            ("an offset", "shift --apply-offset", CUT, 0, b"[00:00.50]a<00:00.700>b\n", ""),
            ("no offset", "shift --apply-offset", b"\n[0:1.0]\n[offset:9] [x]", 0, b"\n[0:1.0]\n[offset:9] [x]", ""),
            ("two offsets", "shift --apply-offset", CUT + b"[OFFSET :1]", 3, b"", "standard input: it has two offsets"),
            ("no whole offset", "shift --apply-offset", b"[offset:%99d.5]" % 1, 3, b"", ".*number: .offset: {52}"),
            ("least offset", "shift --apply-offset", b"[0:01]\n[offset:-9223372036854775808]", 3, b"", ".*9999.*"),
            ("below 0", "shift --by -1001", CUT, 3, b"", r'standard input: the line "\[00:01.00\]a.*b" .* --clamp .*'),
            ("a word below 0", "shift --by -1", b"<00:00.00>a", 3, b"", ".*--clamp.*"),
            ("cut at 0", "shift --clamp --by -1010", CUT, 0, b"[00:00.00]a<00:00.190>b\n\n[offset: +500 ]\n", ""),
            ("last time", "shift --by 599998990", b"[00:01.00]", 0, b"[9999:59.99]", ""),
            ("past the last time", "shift --by 599998991", b"[00:01.00]", 3, b"", ".*9999:59.99"),
            ("mark", "mark", b"[00:01.00]a\n\n[00:05.00]b\n", 0, b"[00:01.00]a\n" + MARK + b"\n[00:05.00]b\n", ""),
            ("mark at the top", "mark", b"a\n", 0, MARK.replace(b"1.", b"0.") + b"a\n", ""),
            ("other encodings", "format --encoding koi8-r --output-encoding utf-16", b"\xd0", 0, b"\xff\xfe?\4", ""),
            ("UTF-8 on standard output", "format", "\ufeff[0:1.0]a".encode("utf-32-le"), 0, b"[00:01.00]a", ""),
            ("half a character", "format", b"x\0\r\0\n", 3, b"", ".*any known encoding"),
            ("not in the encoding", "format --encoding utf-8", b"\xff", 3, b"", "standard input: .* encoding utf-8"),
            ("no text at all", "format", b"\x7fELF\0\xff\xff", 3, b"", ".*any known encoding"),
            ("unlikely guess", "format", "Берёза стояла".encode("cp1251"), 3, b"", ".*--encoding.* windows-1251.*"),
            ("not to be encoded", "mark --output-encoding us-ascii", "é".encode(), 3, b"", ".*: .*US-ASCII.*"),
            ("full disk", "format -o /dev/full", b"x", 3, b"", "/dev/full: No space.*"),
        ):
            with self.subTest(name):
                self.assert_result(songlrc(*arguments.split(), "-", stdin=text), status, expected, errors)
        self.assertTrue(pathlib.Path("/dev/full").is_char_device(), "the device was replaced by a file")

    def test_refuses(self):
        pathlib.Path("folder").mkdir()
        search = ("search", "--title", "x")
        for status, *arguments in (
            (2, "format", "several", "files"), (2, "format", "--in-place", "a", "-"), (2, "compare", "-", "-"),
            (2, "mark", "folder"), (2, "parse", ""), (2, "shift", "-"), (2, "search"),
            (2, "shift", "--by", "9223372036854775808", "-"), (2, "shift", "--by", "1", "--apply-offset", "-"),
            (2, "format", "--encoding", "klingon", "-"), (2, "format", "--in-place", "-o", "x", "y"),
            (2, "format", "--in-place", "--dry-run", "y"), (2, "fetch", "--title", "x", "--least-likeness", "101"),
            (2, *search, "--service", "a:65536"), (2, *search, "--service", "a/b"), (3, "format", "/nowhere/song.lrc"),
            (3, *search, "--ca-file", "/dev/null"), (3, "search", "--artist", "x", "--service", "127.0.0.1:1"),
        ):
            with self.subTest(arguments):
                self.assert_result(songlrc(*arguments), status, b"", ".+")
        self.assertEqual(json.loads(songlrc("search", "--json").stdout)["error"]["code"], 2)

    def test_keeps_bytes(self):
        for content, guess in (
            ("\ufeff[ti:歌🎵]\r\n[00:01.00]é".encode(), ""),
            ("\ufeff歌🎵\n".encode("utf-16-le"), ""),
            ("[00:01.00]a\n".encode("utf-16-be"), ".*guess: UTF-16BE, 100 .*"),
            ("[00:01.00]Grüße an alle, die über die Brücke gehen\n".encode("latin-1"), ".*guess: ISO-8859-1.*"),
            ("[00:01.00]Во поле берёза стояла, во поле кудрявая\n".encode("cp1251"), ".*guess: windows-1251.*"),
            ((SAMPLES / "sakura-sakura.lrc").read_bytes(), "song.lrc: .*guess: Shift_JIS.*"),
            ("歌".encode() * 30_000 + b"\n", ""),
        ):
            with self.subTest(content[:40]):
                self.song.write_bytes(content)
                self.assert_result(songlrc("format", self.song, "-o", str(len(content))), 0, b"", guess)
                self.assertEqual(pathlib.Path(str(len(content))).read_bytes(), content)

    def test_many_files(self):
        odd = os.fsdecode(b"f/\xe9\n.LRC")
        for name in ("f/.git/a.lrc", "f/.b.lrc", "f/c.txt", "f/d/e.lrc", "f/d/fine.lrc", odd, "g.txt", "linked/h.lrc"):
            pathlib.Path(name).parent.mkdir(parents=True, exist_ok=True)
            pathlib.Path(name).write_text({"f/d/fine.lrc": "[offset:1]\n", "f/c.txt": ""}.get(name, "[0:01]a\n"))
        pathlib.Path("f/link.lrc").symlink_to("../g.txt")
        pathlib.Path("f/linked").symlink_to("../linked")
        names = ["f", "none", "./f/d/../d/e.lrc", "g.txt"]
        changed = b"f/d/e.lrc\nf/\xe9\xe2\x90\x8a.LRC\n"
        first, fine, *more = map(json.loads, songlrc("check", "--json", *names).stdout.splitlines())
        self.assertEqual([entry["file"] for entry in more], [odd, "none", "g.txt"])
        message, note = (entry["remarks"][0].pop("message") for entry in (first, fine))
        self.assertEqual(first, {"file": "f/d/e.lrc", "encoding": "UTF-8", "guessed": False,
                                 "remarks": [{"line": 1, "column": 1, "length": 6, "kind": "time-form"}]})
        self.assert_result(songlrc("check", "f/d/e.lrc"), 1, f"f/d/e.lrc:1:1: time-form: {message}\n".encode())
        self.assert_result(songlrc("check", "f/d/fine.lrc"), 0, f"f/d/fine.lrc:1:1: offset: {note}\n".encode())
        self.assert_result(songlrc("format", "--dry-run", "g.txt", "f"), 1, b"g.txt\n" + changed)
        self.assert_result(songlrc("format", "--in-place", "--verbose", *names), 3, changed + b"g.txt\n", "none: No.*")
        self.assert_result(songlrc("format", "--dry-run", "--output-encoding", "utf-8", *names[2:]), 0, b"")
        self.assert_result(songlrc("preview", "[a,b]", "g.txt"), 3, b"==> g.txt <==\n[00:01.00]a\n", r"\[a,b\]: No.*")
        self.assertEqual(songlrc("preview", "--json", "g.txt", "f/c.txt").stdout.count(b"\n"), 2)
        self.assertEqual({pathlib.Path(name).read_text() for name in ("f/.b.lrc", "linked/h.lrc")}, {"[0:01]a\n"})
        pathlib.Path("g.txt").write_bytes("Берёза стояла".encode("cp1251"))  # an unlikely guess, and nothing to write
        self.assert_result(songlrc("format", "--in-place", "g.txt"), 0, b"")
        self.assert_result(songlrc("check", SAMPLES), 0, b"", ".*sakura-sakura.lrc: .* guess: Shift_JIS, .*")

    def test_progress(self):
        os.mkfifo("slow")
        master, terminal = pty.openpty()
        self.song.write_text("[00:01]")
        for second, status, end in ("song.lrc", 1, b"song.lrc:1:1: time-form: the documents take this time for words\r\n"
                                    ), ("none", 3, b"songlrc: none: No such file or directory\r\n"):
            process = subprocess.Popen([BIN / "songlrc", "check", "slow", second], stdout=terminal, stderr=terminal)
            with open("slow", "w"):
                time.sleep(1.1)
            self.assertEqual(process.wait(30), status)
            self.assertEqual(os.read(master, 999), b"\r[" + b"#" * 20 + b" " * 20 + b"] 1 of 2 files\r\x1b[K" + end)

    def test_keeps_what_a_file_has(self):
        attributes = {"user.note": b"n", "system.posix_acl_access": bytes.fromhex(  # user 1 may read
            "02000000 01000600ffffffff 0200040001000000 04000400ffffffff 10000400ffffffff 20000000ffffffff")}
        pathlib.Path("link").symlink_to(self.song)
        for name in HIDDEN, "song.lrc.backup":  # the first was left by a program that was killed
            pathlib.Path(name).touch()
        self.song.write_text("[0:1.0]x")
        for name, value in list(attributes.items()):
            try:
                os.setxattr(self.song, name, value)
            except OSError:  # not on this file system
                del attributes[name]
        if os.geteuid() == 0:
            os.chown(self.song, 1, 2)
        before = self.song.stat()
        for _ in range(2):
            self.assert_result(songlrc("format", "--in-place", "link"), 0, b"")
            after = self.song.stat()
            self.assertEqual((self.song.read_text(), after.st_mode, after.st_uid, after.st_gid),
                             ("[00:01.00]x", before.st_mode, before.st_uid, before.st_gid))
            os.utime(self.song, (1, 1))
        self.assertEqual({name: os.getxattr(self.song, name) for name in os.listxattr(self.song)}, attributes)
        self.assertEqual((after.st_mtime, set(os.listdir())), (1, {"link", "song.lrc", "song.lrc.backup"}))

    def test_loses_no_file(self):
        old = b"[0:1.0]" * 60_000 + b"x" * 400_000
        scripts = {"full disk": "trap '' XFSZ; ulimit -f 8; exec \"$0\" mark --in-place song.lrc",
                   "hard links": 'ln song.lrc more; "$0" format --in-place song.lrc; status=$?; rm more; exit $status',
                   "read-only": 'chmod a-w song.lrc; exec "$0" format --dry-run song.lrc',
                   "full output of help": 'exec "$0" --help >/dev/full',
                   "full output": 'exec "$0" parse --json song.lrc none >/dev/full',
                   "full output of an error": 'exec "$0" parse --json none >/dev/full'}
        if "SANITIZED" not in os.environ:  # AddressSanitizer needs more memory than this to start
            scripts["no memory"] = 'ulimit -v 4000000; exec "$0" preview song.lrc'
        for name, script in scripts.items():
            with self.subTest(name):
                self.song.unlink(missing_ok=True)
                self.song.write_bytes(old)
                self.assert_result(run("/bin/sh", "-c", script, BIN / "songlrc"), 3, b"", ".+")
                self.assertEqual((self.song.read_bytes(), os.listdir()), (old, ["song.lrc"]))
        more = pathlib.Path("more.lrc")
        more.write_bytes(old)
        script = 'exec "$0" mark --in-place --verbose song.lrc more.lrc >/dev/full'
        self.assert_result(run("/bin/sh", "-c", script, BIN / "songlrc"), 3, b"", "standard output: No space.*")
        self.assertNotEqual(more.read_bytes(), old)
        self.song.chmod(0o666)
        user = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        for mode, reason in (0o555, ".*beside it.* -o"), (0o777, ".*owner.* -o"):
            os.chmod(".", mode)
            if user or mode == 0o555:
                self.assert_result(songlrc("shift", "--by=10", "--dry-run", "song.lrc", **user), 3, b"", reason)
        with open(HIDDEN, "w") as file:
            fcntl.flock(file, fcntl.LOCK_EX)
            self.assert_result(songlrc("shift", "--by=10", "--in-place", self.song), 3, b"", ".*another program.* -o")
        self.assertTrue(pathlib.Path(HIDDEN).exists())


class LookupTest(unittest.TestCase):
    def setUp(self):
        self.server = self.enterContext(LyricServer())
        self.options = ["--service", f"127.0.0.1:{self.server.ports['trusted']}", "--ca-file", self.server.authority]

    def test_answers(self):
        for title, arguments, status, output in (
            ("two songs", "search --artist A", 0, "  B - Other  (1)\n* A - two songs  (2)\n"),
            ("good", "search --json", 0, '{"bestIndex":0,"results":[{"artist":"A","link":"1","track":"T"}]}\n'),
            ("nothing found", "search", 1, ""),
            ("refused", "search --json", 1,
             '{"error":{"domain":"com.zt.lyric","code":5,"localizedDescription":"no"}}\n'),
            ("good", "fetch --least-likeness 0", 0, "text"),
            ("lyric with half a surrogate pair", "fetch --link 2", 0, "\ufffdx"),
        ):
            with self.subTest(title, arguments=arguments):
                result = songlrc(*arguments.split(), "--title", title, *self.options)
                self.assertEqual((result.stdout.decode(), result.returncode), (output, status))
                self.assertRegex(result.stderr.decode("ascii"), r"\Asonglrc: .+\n\Z" if status else r"\A\Z")

        closed = run("/bin/sh", "-c", 'exec "$0" "$@" >&-', BIN / "songlrc", "search", "--title", "good", *self.options)
        self.assertEqual((closed.stderr, closed.returncode), (b"songlrc: standard output: Bad file descriptor\n", 3))

    def test_likeness(self):
        for number, (title, artist, track, found, likeness) in enumerate((
            ("TÍDE!", "ab", "ｔｉｄｅ", "abcd", 75),  # 2 of 8 letters differ
            ("Tide feat. Marlow", "ab", "Tide【x】 – Live 2011", "Abcd" + "(x)" * 300_000, 75),
            ("Tide [x] (Live", "ab", "Tide", "ab", 55),  # not closed
            ("(...)", "ab", "(...)", "ac", 86),
            ("Straße か", "", "STRASSE が", "x", 90),
        ), 1):
            command = ["fetch", "--title", title, "--artist", artist, *self.options, f"--least-likeness={likeness + 1}"]
            process = subprocess.Popen([BIN / "songlrc", *command], stderr=subprocess.PIPE, text=True)
            self.server.wait_for_request("track")
            body = json.dumps({"results": [{"track": track, "artist": found, "link": "1"}]})
            reply = json.dumps({"reply": number, "body": body, "status": "200 OK"})
            print(reply, file=self.server.process.stdin, flush=True)
            self.assertIn(f'"{track}" by {found}, is only {likeness} % like', process.communicate(timeout=30)[1])
            self.assertEqual(process.returncode, 1)

    def test_ends_on_interrupt(self):
        process = subprocess.Popen([BIN / "songlrc", "fetch", "--title", "stalls at once", *self.options])
        self.server.wait_for_request("stalls%20at%20once")
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(30), 130)


if __name__ == "__main__":
    unittest.main()
