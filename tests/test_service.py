#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""songlrc-service as its clients and its owner meet it."""
import json
import os
import re
import subprocess
import tempfile
import unittest
from unittest.mock import ANY

from programs import DETAIL, FORM, SEARCH, Service, key, post, run, sealed, wait_until

ODD = "C'est \"la\" (NEAR) * -vie♥|AB/CD"
FULL, MILL, JASMINE, THAI = "ＦＵＬＬ ｶﾗｵｹ|é \ufdfa", "Silver Mill|Odette", "茉莉花|江苏民歌", "ฝนตกที่บ้าน|ก"
SONGS = (ODD, FULL, MILL, JASMINE, THAI, "Silver|Odette B", "abc中xyz|C", f"Wick|{'o' * 300}", "Wicks|B",
         f"Wick{'s' * 300}|C", *(f"Many|{number}" for number in range(60)))


class ServiceTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.service = Service(cls.enterClassContext(tempfile.TemporaryDirectory()))
        for number, song in enumerate(SONGS):
            cls.service.write(f"songs/{number}.lrc", "[ti:%s]\n[ar:%s]\n" % tuple(song.split("|")))
        files = dict.fromkeys(("Odo - No - Ox.lrc", "No one.lrc", "No. two.lrc", " - No.lrc"), "")
        files |= {
            "a/b/mark.LRC": "\ufeff[ti:Straße]\n[ar:Odette B]\n",
            "a/b/utf-16.lrc": "[ti:Silver]\n[ar:Odette]\n".encode("utf-16"),
            "limit.lrc": "[ti: ]\n[ti:Copper Rain]\n[ar:]\n[ar:Odo]\n".ljust(1 << 20),
            "large.lrc": "[ti:Large]\n".ljust((1 << 20) + 1),
            "broken.lrc": b"\xFF\xFE[\0t\0i",
            "binary.lrc": b"[ti:Binary]\0\1\2",
            "../outside/secret.lrc": "[ti:Secret]\n[ar:Spy]\n",
        }
        for name, content in files.items():
            cls.service.write(name, content)
        os.symlink("../outside", cls.service.library / "folder")
        cls.enterClassContext(cls.service)

    def test_finds(self):
        for rule, expected, *queries in (
            ("the shortest names first", ["Silver|Odette", "Silver|Odette B", MILL], "silver|"),
            ("shorter titles before shorter artists", ["Wick|" + "o" * 255, "Wicks|B", f"Wick{'s' * 251}|C"], "wick|"),
            ("the exact artist first", ["Silver|Odette", MILL, "Silver|Odette B", "Straße|Odette B"], "|odette"),
            ("any 32 words, the last one begun", [MILL], "MILL silver|", "silver=mil|", "silver " * 31 + "mil zither|"),
            ("all words of both names, whole and in a run", [], "sil mill|", "mi|", "silver|harbour", "|?", "茉花|"),
            ("case is folded", ["Straße|Odette B"], "STRASSE|"),
            ("widths and compositions are alike", [FULL], "full カラオケ|", "ラ|", "|e\u0301", "|\ufdfa"),
            ("any run of Chinese characters", [JASMINE], "茉莉花|江苏民歌", "莉花|民歌", "花|"),
            ("any run of Thai characters", [THAI], "ตกที่|"),
            ("words beside a Chinese character", ["abc中xyz|C"], "xyz abc|"),
            ("operators are text", [ODD], "♥|", '"la"|', "(NEAR)|", "la*|", "-vie|", 'c\'est "la|', "la\0|", "^c'est|"),
            ("operators do nothing", [], "title:silver|", "NEAR(silver mill, 2)|", "silver OR harbour|",
             '"*()^-+:{}|', "' OR 1=1 --|", '"' * 20000 + "|", "花" * 6000 + "|" + "花 " * 600),
            ("the file's name for tags", ["- No|Unknown", "No one|Unknown", "No. two|Unknown", "No - Ox|Odo"], "no|"),
            ("tags with a value, of a file of 1 MiB", ["Copper Rain|Odo"], "copper rain|odo"),
            ("neither unusable files nor linked folders", [], "binary|", "secret|"),
        ):
            for query in queries:
                with self.subTest(rule, query=query[:20]):
                    self.assertEqual(self.service.names(*query.split("|")), expected)
        self.assertEqual(len(self.service.names("many")), 50)

    def test_replies_with_codes(self):
        link = self.service.link("silver")
        forms = "track=%4", "track=%g0", "track=%0g", "track=%ED%A0%80", "track=a&track=b"
        headers = ("Content-Length: -1", "Content-Length: 1\r\nContent-Length: 2", "X: a\r\n b", "X y: a",
                   "X: a\nContent-Length: 0\rb", "Connection: Upgrade\r\nUpgrade: websocket")

        def search(api_key, track="silver"):
            return post(SEARCH, {"track": track, "apiKey": api_key})

        def detail(requested):
            return post(DETAIL, {"link": requested, "apiKey": key()})

        def with_header(header):
            return f"POST {SEARCH} HTTP/1.1\r\n{FORM}{header}\r\n\r\n".encode()

        for code, *requests in (
            (0, search(key(-290)), search(key(290)), detail(link)),
            (1, search(""), post(DETAIL, {"link": link}), post(SEARCH, "a" * 65536)),
            (2, *map(search, ("!?", key() + "!", key()[:20], "aW50ZXJ2YWw9MTcwMDAwMDAwMA==",
                              *map(sealed, ("time=1700000000", "interval=", "interval=-5", "interval=" + "9" * 20))))),
            (3, search(key(-310)), search(key(310))),
            (4, search(key(), "")),
            (5, *map(detail, ("", "a/1.lrc", "../outside/secret.lrc", link[:-1], link + "\0", "%", "' OR ''='"))),
            (400, *(post(SEARCH, form) for form in forms), *map(with_header, headers)),
            (400, search(key()) + search(key()), b"\0\1\2\xFF\r\n\r\n", b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"),
            (404, post("/../../etc/passwd", "track=a")),
            (405, f"GET {SEARCH} HTTP/1.1\r\n\r\n".encode()),
            (411, with_header("Transfer-Encoding: chunked") + b"5\r\nhello\r\n"),
            (413, post(SEARCH, "a" * 65537), with_header("Content-Length: 99999999999999999999")),
            (415, post(SEARCH, "{}", "Content-Type: application/json\r\n"), post(SEARCH, "track=a", "")),
            (431, with_header("X: " + "x" * 200_000)),
        ):
            for request in requests:
                with self.subTest(code=code, request=request[:200]):
                    status, reply = self.service.ask(request)
                    self.assertEqual((status, reply["code"], len(reply)), (code if code > 5 else 200, code, 2))

    def test_serves_other_clients(self):
        with self.service.connect("localhost") as connection:
            self.assertIn(("DNS", "localhost"), connection.getpeercert()["subjectAltName"])
            connection.sendall(post(SEARCH, "track=mill+silver&artist&apiKey=" + key().replace("+", "%2B"),
                                    "content-type: Application/x-www-form-urlencoded; charset=utf-8\r\n"))
            self.assertEqual(self.service.read(connection)[1]["results"][0]["track"], "Silver Mill")
            connection.sendall(f"GET {SEARCH} HTTP/1.1\r\n\r\n".encode())
            self.assertIn(b"\r\nAllow: POST\r\n", connection.recv(65536))

    def test_notices_changes(self):
        def becomes(track, expected):
            self.assertTrue(wait_until(lambda: self.service.names(track) == expected), track)

        file = self.service.library / "new/1.lrc"
        self.service.write(file, "[ti:Fresh]\n")
        becomes("fresh", ["Fresh|Unknown"])
        link = self.service.link("fresh")
        self.service.write(file, "[ti:Stale]\nsécond\n".encode("utf-16"))
        becomes("stale", ["Stale|Unknown"])
        self.assertEqual(self.service.link("stale"), link)
        self.assertEqual(self.service.lyric("stale"), "[ti:Stale]\nsécond\n")
        file.unlink()
        file.symlink_to("../../outside/secret.lrc")
        self.assertNotIn("result", self.service.detail(link))  # before and after the service notices
        becomes("stale", [])

    def test_reports_what_it_skips_once(self):
        skipped = re.findall('skipped "(.*)" -', self.service.errors.read_text())
        self.assertEqual(sorted(skipped), ["binary.lrc", "broken.lrc", "large.lrc"])

    def test_keeps_its_files_private(self):
        for name in (".", "authority-key.pem", "server-key.pem", "index.sqlite"):
            self.assertEqual((self.service.data / name).stat().st_mode & 0o077, 0, name)


class LifeTest(unittest.TestCase):
    def setUp(self):
        self.service = Service(self.enterContext(tempfile.TemporaryDirectory()), "--json-log")
        self.service.write("1.lrc", "[ti:One]\n[ar:A]\n")
        self.file, self.data = self.service.library / "1.lrc", self.service.data

    def test_logs_requests(self):
        with self.service:
            self.service.names("one")
            self.service.ask(b"PUT /x?apiKey=secret HTTP/1.1\r\nContent-Length: 70000\r\n\r\n")
            for expected in ({"method": "POST", "path": SEARCH, "status": 200, "code": 0, "results": 1},
                             {"method": "PUT", "path": "/x", "status": 413, "code": 413, "results": 0}):
                line = json.loads(self.service.process.stdout.readline())
                self.assertEqual(line, expected | {"time": ANY, "ms": ANY})

    def test_starts_again(self):
        modified = self.file.stat().st_mtime_ns
        with self.service:
            link = self.service.link("one")
            self.assertEqual(self.service.stop(), 0)
        self.file.write_bytes(b"[ti:One]\n[ar:A]\0")  # a change that neither size nor time shows is not read
        os.utime(self.file, ns=(modified, modified))
        self.service.write("3.lrc", "[ti:Six]\n[ar:A]\n")
        with self.service:
            self.assertEqual([self.service.link("one"), self.service.detail(link)["code"]], [link, 6])
            self.assertTrue(self.service.link("six"))
        (self.data / "index.sqlite").write_bytes(b"x" * 5000)  # killed above, and damaged
        with self.service:
            self.assertEqual(self.service.names(artist="a"), ["Six|A"])

    def test_renews_certificates(self):
        valid_for = ("openssl x509 -x509toreq -copy_extensions copy -in server.pem -key server-key.pem | openssl x509"
                     " -req -copy_extensions copy -CA authority.pem -CAkey authority-key.pem -out server.pem -days ")
        for change, address, is_renewed in (
            (valid_for + "29", "127.0.0.1", True),
            (valid_for + "31", "127.0.0.1", False),
            ("openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -out server-key.pem", "127.0.0.1", True),
            ("rm authority*", "127.0.0.1", True),
            ("echo damaged >server.pem", "127.0.0.1", True),
            ("true", "127.0.0.1", False),
            ("true", "127.0.0.2", True),
        ):
            with self.subTest(change, address=address):
                with self.service:
                    self.service.stop()
                subprocess.run(["sh", "-c", change], cwd=self.data, check=True, capture_output=True)
                old = (self.data / "server.pem").read_bytes()
                self.service.options = ["--address", address]
                with self.service, self.service.connect(address):
                    self.assertEqual((self.data / "server.pem").read_bytes() != old, is_renewed)

    def test_finishes_requests_when_it_stops(self):
        request = post(SEARCH, {"track": "one", "apiKey": key()})
        with self.service, self.service.connect() as idle, self.service.connect() as busy:
            idle.sendall(request)
            self.assertEqual(self.service.read(idle)[0], 200)
            busy.sendall(request[:-5])
            self.service.process.send_signal(2)  # Ctrl+C
            self.assertEqual(idle.recv(1), b"")
            with self.assertRaises(OSError):
                self.service.connect()
            busy.sendall(request[-5:])
            self.assertEqual(self.service.read(busy)[1]["results"][0]["track"], "One")
            self.assertEqual(self.service.process.wait(30), 0)

    def test_refuses_to_start(self):
        library = ["--library", self.service.library]
        with self.service:
            for status, message, options in (
                (2, "--library is required", []),
                (2, "65536", [*library, "--port", "65536"]),
                (2, "not an IP address", [*library, "--address", "here"]),
                (3, "library", ["--library", self.file]),
                (3, "can't write", [*library, "--data", self.file]),
                (3, "another service", [*library, "--data", self.data]),
                (3, "can't listen", [*library, "--data", f"{self.data}2", "--port", str(self.service.port)]),
            ):
                with self.subTest(options):
                    result = run("songlrc-service", *options)
                    self.assertEqual((result.returncode, result.stdout), (status, b""))
                    self.assertIn(message, result.stderr.decode())


if __name__ == "__main__":
    unittest.main()
