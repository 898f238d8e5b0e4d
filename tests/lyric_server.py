#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""A lyric service over TLS on loopback that misbehaves on request, for the tests of the lookup.

A search chooses what happens by its title: the form's "track" names a route below. A request with any other title is
held until standard input answers it with a line such as {"reply": 1, "body": "...", "status": "200 OK"}; requests are
counted from 1.

The first line of standard output has the ports and the authority's certificate; each request then makes a line. The
server ends when standard input does.
"""
import itertools
import json
import os
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import urllib.parse
import warnings
import zlib

OK = b"HTTP/1.1 200 OK\r\n"
GOOD = b'{"results":[{"track":"T","artist":"A","link":"1"}],"result":{"lyric":"text"}}'
TWO = b'{"results":[{"track":"Other","artist":"B","link":"1"},{"track":"two songs","artist":"A","link":"2"}]}'
LIMIT = 16 * 1024 * 1024
SPACE = b" " * 65536


def whole(body, status="200 OK", headers=""):
    return f"HTTP/1.1 {status}\r\nContent-Length: {len(body)}\r\n{headers}\r\n".encode() + body


def packed(body):
    return whole(body, headers="Content-Encoding: deflate\r\n")


# Sent before the connection is closed.
CLOSED = {
    "closed without a word": b"",
    "cut in the headers": b"HTTP/1.1 200 OK\r\nContent-Le",
    "cut in the body": OK + b"Content-Length: 1000\r\n\r\n" + GOOD,
    "cut in a chunk": OK + b"Transfer-Encoding: chunked\r\n\r\n40\r\n{",
    "no HTTP": b"SSH-2.0-x\r\n\r\n",
    "a length that is too short": OK + b"Content-Length: 10\r\n\r\n" + GOOD,
    "a length that is no number": OK + b"Content-Length: x\r\nConnection: close\r\n\r\n" + GOOD,
    "204": b"HTTP/1.1 204 No Content\r\n\r\n",
}
# Sent before the connection stays open and silent.
STALLED = {
    "good": whole(GOOD),
    "two songs": whole(TWO),
    "nothing found": whole(b'{"results":[]}'),
    "refused": whole(b'{"code":5,"message":"no"}'),
    "no lyric": whole(b'{"result":{}}'),
    "empty lyric": whole(b'{"result":{"lyric":""}}'),
    "lyric with half a surrogate pair": whole(b'{"result":{"lyric":"\\udfb5x"}}'),
    "refused without a message": whole(b'{"code":5}'),
    "stalls at once": b"",
    "stalls in the body": OK + b"Content-Length: 1000\r\n\r\n{",
    "16 MiB, most of it white space": whole(GOOD.ljust(LIMIT)),
    "one byte more than 16 MiB": whole(GOOD.ljust(LIMIT + 1)),
    "16 MiB of brackets": whole(b"[" * LIMIT),
    "packed": packed(zlib.compress(GOOD)),
    "packed 64 MiB": packed(zlib.compress(b" " * 4 * LIMIT, 9)),
    "broken packing": packed(b"nothing packed"),
    "201": whole(GOOD, "201 Created", "Location: /x\r\n"),
    "300 without an address": whole(GOOD, "300 Multiple Choices"),
    "401": whole(GOOD, "401 No", 'WWW-Authenticate: Basic realm="x"\r\n'),
    "404": whole(GOOD, "404 Not Found"),
    "500": whole(GOOD, "500 Oh"),
}
# The first is sent once, the second over and over.
ENDLESS = {
    "headers without end": (OK, b"A: " + b"a" * 4096 + b"\r\n"),
    "body without end": (OK + b"Connection: close\r\n\r\n", SPACE),
    "chunks without end": (OK + b"Transfer-Encoding: chunked\r\n\r\n", b"10000\r\n" + SPACE + b"\r\n"),
    "a length beyond counting": (OK + b"Content-Length: 9223372036854775807\r\n\r\n", SPACE),
}
# Status, address of the next hop (PORT is the server's port, N the number of the hop), number of hops.
REDIRECTED = {
    "five redirects": ("301 Moved", "https://127.0.0.1:PORT/N", 5),
    "six redirects": ("302 Found", "/N", 6),
    "see other": ("303 See Other", "/N", 1),
    "redirect that wants the form again": ("307 Temporary Redirect", "/N", 1),
    "redirect to http": ("301 Moved", "http://127.0.0.1:PORT/N", 1),
    "redirect to a file": ("301 Moved", "file:///etc/hostname", 1),
    "redirect to another name": ("301 Moved", "https://localhost:PORT/N", 1),
}


class Authority:
    """A certificate authority made by the openssl command for this run; no key lies in the repository."""

    def __init__(self, folder):
        self.folder = folder
        self.file = self.run("authority", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                             "-subj", "/CN=Test authority", "-days", "2", "-keyout", self.path("authority.key"))

    def path(self, name):
        return os.path.join(self.folder, name)

    def run(self, name, *arguments):
        subprocess.run(["openssl", *arguments, "-out", self.path(name)], check=True, stderr=subprocess.DEVNULL)
        return self.path(name)

    def context(self, name, alternative="IP:127.0.0.1", days="2", version=None):
        self.run(name + ".request", "req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                 "-subj", "/CN=Test server", "-addext", "subjectAltName=" + alternative, "-keyout", self.path(name + ".key"))
        self.run(name, "x509", "-req", "-in", self.path(name + ".request"), "-CA", self.file,
                 "-CAkey", self.path("authority.key"), "-CAcreateserial", "-copy_extensions", "copy", "-days", days)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        if version:
            context.set_ciphers("ALL:@SECLEVEL=0")
            with warnings.catch_warnings(action="ignore"):  # TLS 1.1 is deprecated, and must be refused for that
                context.minimum_version = context.maximum_version = version
        context.load_cert_chain(self.path(name), self.path(name + ".key"))
        return context


class Server:
    def __init__(self):
        self.lock = threading.Lock()
        self.numbers = itertools.count(1)
        self.held = {}

    def listen(self, context):
        listener = socket.create_server(("127.0.0.1", 0), backlog=128)

        def accept():
            while True:
                connection = listener.accept()[0]
                threading.Thread(target=self.serve, args=(connection, context), daemon=True).start()

        threading.Thread(target=accept, daemon=True).start()
        return listener.getsockname()[1]

    def serve(self, connection, context):
        try:
            with context.wrap_socket(connection, server_side=True) as client:
                while request := read(client):
                    self.answer(client, request)
        except (OSError, ssl.SSLError):
            pass  # the client has gone, or trusts nobody here

    def answer(self, client, request):
        head, _, body = request.partition(b"\r\n\r\n")
        path = head.split(b" ")[1].decode()
        form = dict(urllib.parse.parse_qsl(body.decode("utf-8", "replace")))
        with self.lock:
            number = next(self.numbers)
            print(json.dumps({"request": request.decode("latin-1")}), flush=True)
        route, hop = form.get("track"), 0
        if path.count("/") == 2:  # "/hop/route", as a redirect of ours has it
            hop, route = path.split("/")[1:]
            hop, route = int(hop), urllib.parse.unquote(route)
        if route in STALLED:
            client.sendall(STALLED[route])
        elif route in CLOSED:
            client.sendall(CLOSED[route])
            client.unwrap()
        elif route in ENDLESS:
            first, again = ENDLESS[route]
            client.sendall(first)
            while True:
                client.sendall(again)
        elif route in REDIRECTED:
            status, address, hops = REDIRECTED[route]
            target = address.replace("PORT", str(client.getsockname()[1]))
            target = target.replace("N", f"{hop + 1}/{urllib.parse.quote(route)}")
            client.sendall(whole(b"moved", status, f"Location: {target}\r\n") if hop < hops else whole(GOOD))
        elif route == "trickles":
            client.sendall(OK + b"Connection: close\r\n\r\n" + GOOD)
            for _ in range(7):
                threading.Event().wait(0.1)
                client.sendall(b" ")
            client.unwrap()
        else:
            self.held[number] = client

    def reply(self, order):
        try:
            self.held[order["reply"]].sendall(whole(order["body"].encode(), order.get("status", "200 OK")))
        except OSError:
            pass  # the client has gone


def read(client):
    """A request, head and body; nothing when the client has closed the connection."""
    request = b""
    while True:
        head, end, body = request.partition(b"\r\n\r\n")
        length = [line[15:] for line in head.split(b"\r\n") if line.lower().startswith(b"content-length:")]
        if end and len(body) >= int(length[0] if length else 0):
            return request
        more = client.recv(65536)
        if not more:
            return b""
        request += more


def main():
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as other:
        authority = Authority(folder)
        stranger = Authority(other)
        server = Server()
        ports = {name: server.listen(context) for name, context in {
            "trusted": authority.context("trusted"),
            "wrong host name": authority.context("name", alternative="DNS:localhost"),
            "expired": authority.context("expired", days="-1"),
            "unknown authority": stranger.context("stranger"),
            "TLS 1.2 only": authority.context("tls12", version=ssl.TLSVersion.TLSv1_2),
            "TLS 1.1 only": authority.context("tls11", version=ssl.TLSVersion.TLSv1_1),
        }.items()}
        print(json.dumps({"ports": ports, "authority": authority.file}), flush=True)
        for line in sys.stdin:
            server.reply(json.loads(line))


main()
