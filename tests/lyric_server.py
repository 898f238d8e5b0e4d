#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""A lyric service over TLS on loopback that misbehaves on request, for the tests of the lookup.

A search chooses its reply by its title: the form's "track" is the name of a route below or an HTTP status. Any other request is held
until standard input has a line such as {"reply": 1, "body": "...", "status": "200 OK"}, where 1 is the first request.

The arguments name the ports to open (see PORTS). The first line of standard output has their numbers and the
authority's certificate; each request makes another line. The server ends when standard input does.
"""
import itertools
import json
import os
import pathlib
import queue
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
KEEP, CLOSE, TRICKLE = range(3)  # what to do after the first bytes


def whole(body, status="200 OK", headers=""):
    return f"HTTP/1.1 {status}\r\nContent-Length: {len(body)}\r\n{headers}\r\n".encode() + body


def packed(body):
    return whole(body, headers="Content-Encoding: deflate\r\n")


# What a route sends first (large replies are made when they are wanted), and what it does then: bytes are sent over
# and over.
ROUTES = {
    "good": (whole(GOOD), KEEP),
    "two songs": (whole(TWO), KEEP),
    "nothing found": (whole(b'{"results":[]}'), KEEP),
    "refused": (whole(b'{"code":5,"message":"no"}'), KEEP),
    "no lyric": (whole(b'{"result":{}}'), KEEP),
    "empty lyric": (whole(b'{"result":{"lyric":""}}'), KEEP),
    "lyric with half a surrogate pair": (whole(b'{"result":{"lyric":"\\udfb5x"}}'), KEEP),
    "refused without a message": (whole(b'{"code":5}'), KEEP),
    "closed without a word": (b"", CLOSE),
    "cut in the headers": (b"HTTP/1.1 200 OK\r\nContent-Le", CLOSE),
    "cut in the body": (OK + b"Content-Length: 1000\r\n\r\n" + GOOD, CLOSE),
    "cut in a chunk": (OK + b"Transfer-Encoding: chunked\r\n\r\n40\r\n{", CLOSE),
    "no HTTP": (b"SSH-2.0-x\r\n\r\n", CLOSE),
    "a length that is too short": (OK + b"Content-Length: 10\r\n\r\n" + GOOD, CLOSE),
    "a length that is no number": (OK + b"Content-Length: x\r\nConnection: close\r\n\r\n" + GOOD, CLOSE),
    "a length beyond counting": (OK + b"Content-Length: 9223372036854775807\r\n\r\n", SPACE),
    "stalls at once": (b"", KEEP),
    "stalls in the body": (OK + b"Content-Length: 1000\r\n\r\n{", KEEP),
    "trickles": (OK + b"Connection: close\r\n\r\n" + GOOD, TRICKLE),
    "headers without end": (OK, b"A: " + b"a" * 4096 + b"\r\n"),
    "body without end": (OK + b"Connection: close\r\n\r\n", SPACE),
    "chunks without end": (OK + b"Transfer-Encoding: chunked\r\n\r\n", b"10000\r\n" + SPACE + b"\r\n"),
    "16 MiB, most of it white space": (lambda: whole(GOOD.ljust(LIMIT)), KEEP),
    "one byte more than 16 MiB": (lambda: whole(GOOD.ljust(LIMIT + 1)), KEEP),
    "packed": (packed(zlib.compress(GOOD)), KEEP),
    "packed 64 MiB": (lambda: packed(zlib.compress(b" " * 4 * LIMIT)), KEEP),
    "broken packing": (packed(b"nothing packed"), KEEP),
    "201": (whole(GOOD, "201 Created", "Location: /x\r\n"), KEEP),
    "204": (b"HTTP/1.1 204 No Content\r\n\r\n", CLOSE),
}
# Status, address of the next hop (PORT is the server's, N names the hop), number of hops.
REDIRECTS = {
    "five redirects": ("301 Moved", "https://127.0.0.1:PORT/N", 5),
    "six redirects": ("302 Found", "/N", 6),
    "see other": ("303 See Other", "/N", 1),
    "see a reply that is cut": ("303 See Other", "/1/cut%20in%20the%20headers", 1),
    "redirect that wants the form again": ("307 Temporary Redirect", "/N", 1),
    "redirect to http": ("301 Moved", "http://127.0.0.1:PORT/N", 1),
    "redirect to a file": ("301 Moved", "file:///etc/hostname", 1),
    "redirect to another name": ("301 Moved", "https://localhost:PORT/N", 1),
}
NEW_KEY = "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout"
# The certificate's name and days of validity, and the TLS version when there is only one.
PORTS = {
    "trusted": ("IP:127.0.0.1", "2", None),
    "wrong host name": ("DNS:localhost", "2", None),
    "expired": ("IP:127.0.0.1", "-1", None),
    "unknown authority": ("IP:127.0.0.1", "2", None),
    "TLS 1.2 only": ("IP:127.0.0.1", "2", ssl.TLSVersion.TLSv1_2),
    "TLS 1.1 only": ("IP:127.0.0.1", "2", ssl.TLSVersion.TLSv1_1),
}


def openssl(*arguments):
    environment = {**os.environ, "OPENSSL_CONF": "/etc/ssl/openssl.cnf"}  # a test may have its own
    subprocess.run(["openssl", *arguments], check=True, capture_output=True, env=environment)


class Authority:
    """A certificate authority made by the openssl command for this run; no key lies in the repository."""

    def __init__(self, folder, name):
        self.stem = os.path.join(folder, name)
        self.file = self.stem + ".pem"
        subject = f"/CN=Test {name} {os.getpid()}"
        openssl("req", "-x509", "-subj", subject, "-out", self.file, *NEW_KEY, self.stem + ".key")

    def context(self, port):
        name, days, version = PORTS[port]
        stem = self.stem + port
        openssl("req", "-new", "-subj", "/CN=Test server", "-addext", "subjectAltName=" + name, "-out", stem + ".csr",
                *NEW_KEY, stem + ".key")
        openssl("x509", "-req", "-in", stem + ".csr", "-CA", self.file, "-CAkey", self.stem + ".key", "-CAcreateserial",
                "-copy_extensions", "copy", "-days", days, "-out", stem + ".pem")
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        if version:
            context.set_ciphers("ALL:@SECLEVEL=0")
            with warnings.catch_warnings(action="ignore"):  # TLS 1.1 is deprecated, therefore tested
                context.minimum_version = context.maximum_version = version
        context.load_cert_chain(stem + ".pem", stem + ".key")
        return context


def run(function, *arguments):
    threading.Thread(target=function, args=arguments, daemon=True).start()


class Server:
    def __init__(self):
        self.lock = threading.Lock()
        self.numbers = itertools.count(1)
        self.orders = {}

    def listen(self, context):
        listener = socket.create_server(("127.0.0.1", 0), backlog=128)
        run(self.accept, listener, context)
        return listener.getsockname()[1]

    def accept(self, listener, context):
        while True:
            run(self.serve, listener.accept()[0], context)

    def serve(self, connection, context):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        try:
            with context.wrap_socket(connection, server_side=True) as client:
                while request := read(client):
                    self.answer(client, request)
        except OSError:
            pass  # the client has gone, or does not trust the certificate

    def answer(self, client, request):
        head, _, body = request.partition(b"\r\n\r\n")
        route = dict(urllib.parse.parse_qsl(body.decode("utf-8", "replace"))).get("track")
        hop = 0
        path = urllib.parse.unquote(head.split(b" ")[1].decode()).split("/")
        if len(path) == 3:  # "/hop/route", an address of REDIRECTS
            hop, route = int(path[1]), path[2]
        with self.lock:
            number = next(self.numbers)
            order = self.orders[number] = queue.SimpleQueue()
            write({"request": request.decode("latin-1")})
        if route in ROUTES:
            first, then = ROUTES[route]
        elif route in REDIRECTS:
            status, address, hops = REDIRECTS[route]
            address = address.replace("PORT", str(client.getsockname()[1]))
            address = address.replace("N", f"{hop + 1}/{urllib.parse.quote(route)}")
            first, then = whole(b"moved", status, f"Location: {address}\r\n") if hop < hops else whole(GOOD), KEEP
        elif route and route.isdigit():
            first, then = whole(GOOD, route + " No", 'WWW-Authenticate: Basic realm="x"\r\n'), KEEP
        else:
            reply = order.get()
            first, then = whole(reply["body"].encode(), reply["status"]), KEEP
        client.sendall(first() if callable(first) else first)
        while isinstance(then, bytes):
            client.sendall(then)
        if then == TRICKLE:
            for _ in range(10):
                threading.Event().wait(0.25)
                client.sendall(b" ")
        if then != KEEP:
            client.settimeout(0)  # do not wait for the client to close the connection, too
            client.unwrap()


def read(client):
    """A request, head and body; nothing when the client has closed the connection."""
    request = b""
    while True:
        head, end, body = request.partition(b"\r\n\r\n")
        length = [line[15:] for line in head.split(b"\r\n") if line.lower().startswith(b"content-length:")]
        if end and len(body) >= int(length[0] if length else 0):
            return request
        if not (more := client.recv(65536)):
            return b""
        request += more


def write(line):
    os.write(1, json.dumps(line).encode() + b"\n")


def main():
    with tempfile.TemporaryDirectory() as folder:
        authority = Authority(folder, "authority")
        server = Server()
        ports = {}
        for port in sys.argv[1:] or ["trusted"]:
            issuer = Authority(folder, "stranger") if port == "unknown authority" else authority
            ports[port] = server.listen(issuer.context(port))
        write({"ports": ports, "authority": authority.file, "pem": pathlib.Path(authority.file).read_text()})
        for line in sys.stdin:
            order = json.loads(line)
            server.orders[order["reply"]].put(order)


main()
