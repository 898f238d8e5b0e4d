# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""songlrc-editor from outside, and the tutorial's program. Needs an X server, since the keys come from xdotool."""
import os
import pathlib
import subprocess
import tempfile
import unittest

import programs


def press(title, *keys):
    """Sends keys to the window with this title, once it is there."""
    subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", title, "windowfocus", "--sync",
                    "key", "--window", "0", *keys], check=True, timeout=20)


class TestEditor(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        os.environ.update(XDG_CONFIG_HOME=folder.name, XDG_DATA_HOME=folder.name)

    def start(self, *arguments):
        editor = subprocess.Popen([programs.BIN / "songlrc-editor", *arguments])
        self.addCleanup(lambda: (editor.kill(), editor.wait()))
        return editor

    def recovery(self):
        return [file.read_text() for file in self.folder.glob("QVSongLrc/songlrc-editor/recovery/*.json")]

    def test_arguments(self):
        for arguments, status, output in [
                (["--version"], 0, "songlrc-editor 1."), (["--help"], 0, "--ca-file"), (["a", "b"], 2, ": b"),
                (["--service", "a/b"], 2, "not a host and port: a/b"), (["--ca-file", "/none"], 3, "/none: No such")]:
            with self.subTest(arguments):
                done = programs.run("songlrc-editor", *arguments)
                self.assertEqual((done.returncode, status == 0), (status, done.stderr == b""))
                self.assertIn(output, (done.stderr if status else done.stdout).decode())
                self.assertEqual(done.stdout if status else done.stderr, b"")

    def test_recovery(self):
        song = self.folder / "song.lrc"
        song.write_bytes("one\r\n".encode("utf-16"))
        first = self.start(song)
        press("song.lrc", "Insert", "w", "o", "r", "d", "Return")
        self.assertTrue(programs.wait_until(lambda: "word" in "".join(self.recovery())))
        other = self.start()
        press("New song", "ctrl+w")  # without a question, since the first editor runs
        self.assertEqual(other.wait(20), 0)
        first.kill()
        first.wait()

        later = self.start()
        press("Recover Changes", "Escape")  # ask later
        press("New song", "ctrl+w")
        self.assertEqual(later.wait(20), 0)
        two = self.start(self.folder)
        press("Recover Changes", "alt+r")
        press("Not Opened", "Return")  # a folder
        press("song.lrc", "Home")
        two.kill()
        two.wait()
        one = self.start()
        press("Recover Changes", "alt+r")
        press("song.lrc", "ctrl+s")
        self.assertTrue(programs.wait_until(lambda: song.read_bytes() == "one\r\nword\r\n".encode("utf-16")))
        press("song.lrc", "ctrl+w")
        self.assertEqual((one.wait(20), self.recovery()), (0, []))

        (self.folder / "QVSongLrc/songlrc-editor/recovery/left.json").write_text('{"text": "words\\n"}')
        none = self.start()
        press("Recover Changes", "alt+d")
        press("New song", "ctrl+w")
        self.assertEqual((none.wait(20), self.recovery()), (0, []))

    def test_tutorial(self):
        service = programs.Service(self.folder)
        service.write("star.lrc", "[ti:Auld Lang Syne]\n[ar:Robert Burns]\nwords\n")
        with service:
            done = programs.run("tutorial", str(service.port), service.authority,
                                env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
        self.assertEqual(done.stdout, b"[ti:Auld Lang Syne]\n[ar:Robert Burns]\nwords\n\n")


if __name__ == "__main__":
    unittest.main()
