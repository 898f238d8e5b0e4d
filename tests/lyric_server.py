#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""A lyric service over TLS on loopback that misbehaves on request, for the tests of the lookup.

The form's "track" is the name of a route below or an HTTP status. Any other request is held until standard input has a
line such as {"reply": 1, "body": "...", "status": "200 OK"}, where 1 is the first request. The arguments name the ports
to open. The first line of output has their numbers and the authority's certificate; each request makes another line.
"""
import contextlib
import json
import queue
import re
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
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
    "no HTTP": (b"SSH-2.0-x\r\n\r\n", CLOSE),
    "a length that is too short": (OK + b"Content-Length: 10\r\n\r\n" + GOOD, CLOSE),
    "a length beyond counting": (OK + b"Content-Length: 9223372036854775807\r\n\r\n", SPACE),
    "stalls at once": (b"", KEEP),
    "stalls in the body": (OK + b"Content-Length: 1000\r\n\r\n{", KEEP),
    "trickles": (OK + b"Connection: close\r\n\r\n" + GOOD, TRICKLE),
    "headers without end": (OK, b"A: " + b"a" * 4096 + b"\r\n"),
    "body without end": (OK + b"Connection: close\r\n\r\n", SPACE),
    "16 MiB, most of it white space": (lambda: whole(GOOD.ljust(LIMIT)), KEEP),
    "one byte more than 16 MiB": (lambda: whole(GOOD.ljust(LIMIT + 1)), KEEP),
    "packed": (packed(zlib.compress(GOOD)), KEEP),
    "packed 64 MiB": (lambda: packed(zlib.compress(b" " * 4 * LIMIT)), KEEP),
    "broken packing": (packed(b"nothing packed"), KEEP),
    "201": (whole(GOOD, "201 Created", "Location: /x\r\n"), KEEP),
    "204": (b"HTTP/1.1 204 No Content\r\n\r\n", CLOSE),
}
# Status, address of the next hop (PORT is the server's, N the number and the route), number of hops.
REDIRECTS = {
    "five redirects": ("301 Moved", "https://127.0.0.1:PORT/?N", 5),
    "six redirects": ("302 Found", "/?N", 6),
    "see other": ("303 See Other", "/?N", 1),
    "see a reply that is cut": ("303 See Other", "/?track=cut%20in%20the%20headers", 1),
    "redirect that wants the form again": ("307 Temporary Redirect", "/?N", 1),
    "redirect to http": ("301 Moved", "http://127.0.0.1:PORT/?N", 1),
    "redirect to a file": ("301 Moved", "file:///etc/hostname", 1),
    "redirect to another name": ("301 Moved", "https://localhost:PORT/?N", 1),
}

LOCK = threading.Lock()
ORDERS = []  # a queue for each request
PROXIES = {  # what a proxy replies to the first and to the second request of a connection
    "HTTP proxy": (b"HTTP/1.1 407 No\r\nProxy-Authenticate: Basic realm=x\r\nContent-Length: 0\r\n\r\n",
                   b"HTTP/1.1 502 No\r\n\r\n"),
    "SOCKS proxy": (b"\5\0", b"\5\1\0\1\0\0\0\0\0\0"),
}


def openssl(*arguments):
    subprocess.run(["openssl", *arguments], check=True, capture_output=True)


def certificate(name, extension):
    """Writes a self-signed certificate and its key, for this run only, to the files name.pem and name.key."""
    openssl("req", "-x509", "-config", "/dev/null", "-subj", f"/CN=Test {name} {time.time_ns()}", "-addext", extension,
            "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout", name + ".key", "-out",
            name + ".pem")


# The ports with TLS: trusted, wrong host name, expired, unknown authority, TLS 1.1 only, TLS 1.2 only.
def context_of(port):
    certificate("server", "subjectAltName=" + ("DNS:localhost" if port == "wrong host name" else "IP:127.0.0.1"))
    authority = "stranger" if port == "unknown authority" else "authority"
    openssl("x509", "-in", "server.pem", "-CA", authority + ".pem", "-CAkey", authority + ".key", "-CAcreateserial",
            "-days", "-1" if port == "expired" else "2", "-out", "signed.pem")
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain("signed.pem", "server.key")
    if port.startswith("TLS"):  # "TLS 1.1 only"
        context.set_ciphers("ALL:@SECLEVEL=0")
        context.minimum_version = context.maximum_version = ssl.TLSVersion[f"TLSv1_{port[6]}"]
    return context


def run(function, *arguments):
    threading.Thread(target=function, args=arguments, daemon=True).start()


def listen(port):
    listener = socket.create_server(("127.0.0.1", 0), backlog=128)
    run(accept, listener, *(refuse, PROXIES[port]) if port in PROXIES else (serve, context_of(port)))
    return listener.getsockname()[1]


def accept(listener, answer, argument):
    while True:
        run(answer, listener.accept()[0], argument)


def refuse(connection, replies):
    for reply in replies:
        report(connection.recv(65536))
        connection.sendall(reply)


def serve(connection, context):
    connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    with contextlib.suppress(OSError):  # the client has gone, or does not trust the certificate
        with context.wrap_socket(connection, server_side=True) as client, client.makefile("rb") as stream:
            while request := read(stream):
                answer(client, request)


def read(stream):
    """A request, head and body; nothing when the client has closed the connection."""
    head = b""
    while not head.endswith(b"\r\n\r\n"):
        if not (line := stream.readline()):
            return b""
        head += line
    length = re.search(rb"(?i)\r\ncontent-length: *(\d+)", head)
    return head + stream.read(int(length[1]) if length else 0)


def report(request):
    print(json.dumps({"request": request.decode("latin-1")}), flush=True)


def answer(client, request):
    head, _, body = request.partition(b"\r\n\r\n")
    form = body or head.split(b" ")[1].partition(b"?")[2]
    fields = dict(urllib.parse.parse_qsl(form.decode("utf-8", "replace")))
    route = fields.get("track", "")
    order = queue.SimpleQueue()
    with LOCK:
        ORDERS.append(order)
        report(request)
    if route in ROUTES:
        first, then = ROUTES[route]
    elif route in REDIRECTS:
        status, address, hops = REDIRECTS[route]
        hop = int(fields.get("hop", 0))
        next_hop = urllib.parse.urlencode({"hop": hop + 1, "track": route})
        address = address.replace("PORT", str(client.getsockname()[1])).replace("N", next_hop)
        first, then = whole(b"moved", status, f"Location: {address}\r\n") if hop < hops else whole(GOOD), KEEP
    elif route.isdigit():
        first, then = whole(GOOD, route + " No", 'WWW-Authenticate: Basic realm="x"\r\n'), KEEP
    else:
        reply = order.get()
        first, then = whole(reply["body"].encode(), reply["status"]), KEEP
    client.sendall(first() if callable(first) else first)
    while isinstance(then, bytes):
        client.sendall(then)
    for _ in range(10 if then == TRICKLE else 0):
        time.sleep(0.25)
        client.sendall(b" ")
    if then != KEEP:
        client.settimeout(0)  # do not wait for the client to close the connection, too
        client.unwrap()


def main():
    with tempfile.TemporaryDirectory() as folder, contextlib.chdir(folder):
        for authority in "authority", "stranger":
            certificate(authority, "basicConstraints=critical,CA:TRUE")
        ports = {port: listen(port) for port in sys.argv[1:] or ["trusted"]}
        with open("authority.pem") as file:
            start = {"ports": ports, "authority": folder + "/authority.pem", "pem": file.read()}
        print(json.dumps(start), flush=True)
        for line in sys.stdin:
            order = json.loads(line)
            ORDERS[order["reply"] - 1].put(order)


main()
