#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""songlrc-service as its clients and its owner meet it."""
import json
import os
import socket
import ssl
import subprocess
import tempfile
import time
import unittest

from programs import DETAIL, FORM, SEARCH, Service, key, post, run, sealed, wait_until

LONG = "o" * 200
CHINESE = "[ti:茉莉花]\n[ar:江苏民歌]\n[00:01.00]好一朵美丽的茉莉花\n"
ODD = "C'est \"la\" (NEAR) * -vie♥|AB/CD"


class ServiceTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.service = Service(cls.folder)
        for name, content in {
            "a/1.lrc": "[ti:Silver Mill]\n[ar:Odette]\n[00:01.00]Hello\n",
            "a/2.LRC": "\ufeff[ti:Straße]\n[ar:Odette B]\n",
            "a/b/3.lrc": "\ufeff[ti:Silver]\n[ar:Odette]\nLé\n".encode("utf-16-le"),
            "a/b/4.lrc": "[ti:ＦＵＬＬ ｶﾗｵｹ]\n[ar:é]\n",
            "gb.lrc": CHINESE.encode("gb18030"),
            "Harbour - Lantern - Waltz.lrc": "[00:01.00]x\n",
            "No one.lrc": "",
            "Mr. Brook.lrc": "",
            " - Pebble.lrc": "",
            "blank.lrc": "[ti: ]\n[ti:Copper Rain]\n[ar:]\n[ar:Odo]\n",
            "same.lrc": "[ti:Silver]\n[ar:Odette B]\n",
            "long.lrc": f"[ti:Wick]\n[ar:{LONG}]\n",
            "longer.lrc": "[ti:Wicks]\n[ar:B]\n",
            "thai.lrc": "[ti:ฝนตกที่บ้าน]\n[ar:ก]\n",
            "mixed.lrc": "[ti:abc中xyz]\n[ar:C]\n",
            "expands.lrc": "[ti:\ufdfa]\n[ar:D]\n",
            "limit.lrc": "[ti:Exactly]\n".ljust(1 << 20),
            "odd.lrc": "[ti:%s]\n[ar:%s]\n" % tuple(ODD.split("|")),
            "broken.lrc": b"\xFF\xFE[\0t\0i",
            "binary.lrc": b"[ti:Binary]\0\1\2",
            "large.lrc": b"[ti:Large]" + b"\n" * (1 << 20),
            "../outside/secret.lrc": "[ti:Secret]\n[ar:Spy]\n",
        }.items():
            cls.service.write(name, content)
        cls.secret = os.path.join(cls.folder, "outside", "secret.lrc")
        os.symlink(os.path.dirname(cls.secret), cls.service.library / "folder")
        os.symlink(cls.secret, cls.service.library / "link.lrc")
        cls.enterClassContext(cls.service)

    def test_finds(self):
        full, odd = "ＦＵＬＬ ｶﾗｵｹ|é", [ODD]
        jasmine, mill = "茉莉花|江苏民歌", "Silver Mill|Odette"
        for name, track, artist, expected in (
            ("shortest first", "silver", "", ["Silver|Odette", "Silver|Odette B", mill]),
            ("shortest title first", "wick", "", [f"Wick|{LONG}", "Wicks|B"]),
            ("exact artist first", "", "odette", ["Silver|Odette", mill, "Silver|Odette B", "Straße|Odette B"]),
            ("words in any order", "MILL silver", "", [mill]),
            ("beginning of the last word", "silver mil", "", [mill]),
            ("beginning of another word", "sil mill", "", []),
            ("both must fit", "silver", "harbour", []),
            ("punctuation alone", "", "?", []),
            ("full case folding", "STRASSE", "", ["Straße|Odette B"]),
            ("width", "full カラオケ", "", [full]),
            ("width of the query", "Ｓｉｌｖｅｒ　Ｍｉｌｌ", "", [mill]),
            ("decomposed", "", "e\u0301", [full]),
            ("whole title in Chinese", "茉莉花", "江苏民歌", [jasmine]),
            ("its end", "莉花", "民歌", [jasmine]),
            ("one character", "花", "", [jasmine]),
            ("one kana", "ラ", "", [full]),
            ("not a run of characters", "茉花", "", []),
            ("name of the file", "lantern waltz", "harbour", ["Lantern - Waltz|Harbour"]),
            ("no artist", "no one", "", ["No one|Unknown"]),
            ("no artist before the dash", "pebble", "", ["- Pebble|Unknown"]),
            ("dot in the file's name", "brook", "", ["Mr. Brook|Unknown"]),
            ("blank tags", "copper rain", "odo", ["Copper Rain|Odo"]),
            ("within a Thai title", "ตกที่", "", ["ฝนตกที่บ้าน|ก"]),
            ("words beside a Chinese character", "xyz abc", "", ["abc中xyz|C"]),
            ("character of 18 decomposed ones", "\ufdfa", "", ["\ufdfa|D"]),
            ("just small enough a file", "exactly", "", ["Exactly|Unknown"]),
            ("through links", "secret", "", []),
            ("unusable files", "binary", "", []),
            ("symbol", "♥", "", odd),
            ("long", "花" * 6000, "花 " * 200, []),
            *(("operator", text, "", odd) for text in ('"la"', "(NEAR)", "la*", "-vie", 'c\'est "la', "la\0", "^c'est")),
            *(("harmless", text, "", []) for text in (
                "title:silver", "NEAR(silver mill, 2)", "silver OR harbour", '"*()^-+:{}', "' OR 1=1 --", '"' * 20000)),
        ):
            with self.subTest(name, track=track[:20]):
                self.assertEqual(self.service.names(track, artist), expected)

    def test_serves_lyrics(self):
        for track, lyric in (("silver mill", "[ti:Silver Mill]\n[ar:Odette]\n[00:01.00]Hello\n"),
                             ("straße", "[ti:Straße]\n[ar:Odette B]\n"),
                             ("silver", "[ti:Silver]\n[ar:Odette]\nLé\n"),
                             ("茉莉花", CHINESE)):
            self.assertEqual(self.service.lyric(track), lyric)

    def test_checks_keys(self):
        link = self.service.link("silver")
        for name, api_key, code in (
            ("290 s old", key(-290), 0), ("290 s ahead", key(290), 0),
            ("310 s old", key(-310), 3), ("310 s ahead", key(310), 3),
            ("missing", "", 1), ("not Base64", "!?", 2), ("Base64 and more", key() + "!", 2),
            ("not enciphered", "aW50ZXJ2YWw9MTcwMDAwMDAwMA==", 2), ("cut", key()[:20], 2),
            ("other text", sealed("time=1700000000"), 2), ("no number", sealed("interval="), 2),
            ("negative", sealed("interval=-5"), 2), ("beyond 64 bits", sealed("interval=99999999999999999999"), 2),
        ):
            for path in (SEARCH, DETAIL):
                with self.subTest(name, path=path):
                    status, reply = self.service.ask(post(path, {"track": "silver", "link": link, "apiKey": api_key}))
                    self.assertEqual((status, reply["code"], len(reply)), (200, code, 2))
                    self.assertEqual(bool(reply.get("message")), code != 0)

    def test_refuses(self):
        head = f"POST {SEARCH} HTTP/1.1\r\n{FORM}"
        for name, request, status in (
            ("method", f"GET {SEARCH} HTTP/1.1\r\n\r\n", 405),
            ("unknown method", "BREW /pot HTTP/1.1\r\n\r\n", 404),
            ("path", post("/etc/passwd", "track=a"), 404),
            ("climbing path", post("/../../etc/passwd", "track=a"), 404),
            ("type", post(SEARCH, "{}", "Content-Type: application/json\r\n"), 415),
            ("no type", post(SEARCH, "track=a", ""), 415),
            ("percent sign", post(SEARCH, "track=%4"), 400),
            ("invalid UTF-8", post(SEARCH, "track=%ED%A0%80"), 400),
            ("field twice", post(SEARCH, "track=a&track=b"), 400),
            ("just small enough", post(SEARCH, "a" * 65536), 200),
            ("large", post(SEARCH, "a" * 65537), 413),
            ("more than the length", post(SEARCH, "track=a") + b"POST / HTTP/1.1\r\n\r\n", 400),
            ("said to be huge", head + "Content-Length: 99999999999999999999\r\n\r\n", 413),
            ("without a length", head + "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n", 411),
            ("negative length", head + "Content-Length: -1\r\n\r\n", 400),
            ("two lengths", head + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nab", 400),
            ("endless head", head + "X: " + "x" * 200_000, 431),
            ("folded header", head + "X: a\r\n b\r\n\r\n", 400),
            ("control character", head + "X: a\nContent-Length: 0\rb\r\n\r\n", 400),
            ("name of a header", head + "X y: a\r\n\r\n", 400),
            ("upgrade", head + "Connection: Upgrade\r\nUpgrade: websocket\r\n\r\n", 400),
            ("not HTTP", b"\0\1\2\xFF\r\n\r\n", 400),
            ("HTTP/2", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 400),
        ):
            with self.subTest(name):
                got, reply = self.service.ask(request.encode() if isinstance(request, str) else request)
                self.assertEqual(got, status)
                self.assertTrue(reply["code"] > 0 and reply["message"])
        with self.service.connect() as connection:
            connection.sendall(f"GET {SEARCH} HTTP/1.1\r\n\r\n".encode())
            self.assertIn(b"\r\nAllow: POST\r\n", connection.recv(65536))
        self.assertEqual(self.service.search()["code"], 4)
        self.assertTrue(self.service.names("silver"))

    def test_serves_nothing_but_the_index(self):
        good = self.service.link("silver")
        for link in ("", "a/1.lrc", self.secret, good[:-1] + ("1" if good[-1] == "0" else "0"), good + "\0", "%", "' OR ''='"):
            status, reply = self.service.ask(post(DETAIL, {"link": link, "apiKey": key()}))
            self.assertEqual((status, reply["code"], len(reply)), (200, 5, 2), link)

    def test_understands_other_clients(self):
        request = post(SEARCH, "track=mill+silver&artist&apiKey=" + key().replace("+", "%2B"),
                       "content-type: Application/x-www-form-urlencoded; charset=utf-8\r\n")
        self.assertEqual([song["track"] for song in self.service.ask(request)[1]["results"]], ["Silver Mill"])
        self.service.connect("localhost").close()

    def test_notices_changes(self):
        def becomes(expected, track):
            self.assertTrue(wait_until(lambda: self.service.names(track) == expected), track)

        self.service.write("new/1.lrc", "[ti:Fresh]\n[ar:Nobody]\n")
        becomes(["Fresh|Nobody"], "fresh")
        link = self.service.link("fresh")
        self.service.write("new/1.lrc", "[ti:Stale]\n[ar:Nobody]\nsecond\n")
        becomes(["Stale|Nobody"], "stale")
        becomes([], "fresh")
        self.assertEqual(self.service.link("stale"), link)
        self.assertTrue(self.service.lyric("stale").endswith("second\n"))
        file = self.service.library / "new/1.lrc"
        file.unlink()
        file.symlink_to(self.secret)
        self.assertNotIn("result", self.service.detail(link))  # before and after the service notices
        becomes([], "stale")
        self.assertEqual(self.service.detail(link)["code"], 5)

    def test_reports_what_it_skips_once(self):
        errors = self.service.errors.read_text()
        self.assertEqual(errors.count("skipped"), 3, errors)
        for name in ("broken.lrc", "binary.lrc", "large.lrc"):
            self.assertIn(name, errors)

    def test_keeps_its_files_private(self):
        for name in (".", "authority-key.pem", "server-key.pem", "index.sqlite"):
            self.assertEqual((self.service.data / name).stat().st_mode & 0o077, 0, name)


class LifeTest(unittest.TestCase):
    def setUp(self):
        self.service = Service(self.enterContext(tempfile.TemporaryDirectory()), "--json-log")
        self.service.write("1.lrc", "[ti:One]\n[ar:A]\n")

    def test_logs_requests(self):
        with self.service:
            def logged():
                return json.loads(self.service.process.stdout.readline())

            self.service.names("one")
            line = logged()
            self.assertEqual(sorted(line), ["code", "method", "ms", "path", "results", "status", "time"])
            self.assertEqual((line["results"], line["path"]), (1, SEARCH))
            self.service.ask(b"PUT /x?apiKey=secret HTTP/1.1\r\nContent-Length: 70000\r\n\r\n")
            line = logged()
            self.assertEqual((line["status"], line["path"]), (413, "/x"))

    def test_starts_again(self):
        file = self.service.library / "1.lrc"
        modified = file.stat().st_mtime_ns
        with self.service:
            link, authority = self.service.link("one"), self.service.authority.read_bytes()
            self.assertEqual(self.service.stop(), 0)
        file.write_text("[ti:Two]\n[ar:A]\n")  # a change that neither size nor time shows is not read
        os.utime(file, ns=(modified, modified))
        self.service.write("3.lrc", "[ti:Six]\n[ar:A]\n")
        (self.service.data / "server.pem").write_text("damaged")
        with self.service:
            self.assertEqual(self.service.link("one"), link)
            self.assertEqual(self.service.link("two"), "")
            self.assertTrue(self.service.link("six"))
            self.assertEqual(self.service.authority.read_bytes(), authority)
        (self.service.data / "index.sqlite").write_bytes(b"x" * 5000)  # killed above, and damaged
        with self.service:
            self.assertTrue(self.service.link("two"))

    def test_renews_certificates(self):
        data = self.service.data
        new_key = "openssl ecparam -name prime256v1 -genkey -noout -out server-key.pem"
        for name, change, address in (
            ("expires soon", f"{new_key} && openssl req -new -key server-key.pem -subj /CN=x"
             " -addext subjectAltName=IP:127.0.0.1,IP:::1,DNS:localhost -out request && openssl x509 -req -in request"
             " -CA authority.pem -CAkey authority-key.pem -copy_extensions copy -days 20 -out server.pem", "127.0.0.1"),
            ("another key", new_key, "127.0.0.1"),
            ("another authority", "rm authority*", "127.0.0.1"),
            ("another address", "true", "127.0.0.2"),
        ):
            with self.subTest(name):
                with self.service:
                    old = (data / "server.pem").read_bytes()
                    self.service.stop()
                subprocess.run(["sh", "-c", change], cwd=data, check=True, capture_output=True)
                self.service.options = ["--address", address]
                with self.service, self.service.connect(address) as connection:
                    self.assertNotEqual((data / "server.pem").read_bytes(), old)
                    days = (ssl.cert_time_to_seconds(connection.getpeercert()["notAfter"]) - time.time()) / 86400
                    self.assertGreater(days, 30)

    def test_finishes_requests_when_it_stops(self):
        request = post(SEARCH, {"track": "one", "apiKey": key()})
        with self.service, self.service.connect() as idle, self.service.connect() as busy:
            idle.sendall(request)
            self.assertEqual(self.service.read(idle)[0], 200)
            busy.sendall(request[:-5])
            self.service.process.terminate()
            self.assertEqual(idle.recv(1), b"")
            with self.assertRaises(OSError):
                self.service.connect()
            busy.sendall(request[-5:])
            self.assertEqual(self.service.read(busy)[1]["results"][0]["track"], "One")
            self.assertEqual(self.service.process.wait(15), 0)

    def test_refuses_to_start(self):
        with self.service, socket.create_server(("127.0.0.1", 0)) as other:
            library, file = ["--library", self.service.library], self.service.library / "1.lrc"
            data = self.service.data.with_name("other")
            for name, options, status in (
                ("no library", [], 2),
                ("port", [*library, "--port", "65536"], 2),
                ("address", [*library, "--address", "here"], 2),
                ("library is a file", ["--library", file, "--data", data], 3),
                ("port in use", [*library, "--data", data, "--port", str(other.getsockname()[1])], 3),
                ("data is a file", [*library, "--data", file], 3),
                ("data in use", [*library, "--data", self.service.data], 3),
            ):
                with self.subTest(name):
                    result = run("songlrc-service", *options)
                    self.assertEqual((result.returncode, result.stdout), (status, b""))
                    self.assertTrue(result.stderr.count(b"\n") == 1 if status == 3 else result.stderr)


if __name__ == "__main__":
    unittest.main()
