# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""What the tests of the programs share: starting them, waiting, and talking to the service."""
import contextlib
import http.client
import json
import os
import pathlib
import socket
import ssl
import subprocess
import time
import urllib.parse

BIN = pathlib.Path(os.environ["PROGRAMS"])  # where the programs were built
SAMPLES = pathlib.Path(__file__).parent.parent / "samples"
SEARCH = "/phpLyricFetcher/search/search.php"
DETAIL = "/phpLyricFetcher/detail/detail.php"
FORM = "Content-Type: application/x-www-form-urlencoded\r\n"


def run(program, *arguments, stdin=b"", **options):
    """The finished process, its output in bytes."""
    return subprocess.run([BIN / program, *arguments], input=stdin, capture_output=True, timeout=60, **options)


def wait_until(condition, seconds=20):
    """Waits for a condition, a busy machine allowed for, and returns what it returned last."""
    deadline = time.monotonic() + seconds
    while not (result := condition()) and time.monotonic() < deadline:
        time.sleep(0.02)
    return result


def sealed(text):
    """A text enciphered as a request key is."""
    return subprocess.run(
        ["openssl", "enc", "-aes-128-cbc", "-base64", "-A", "-K", b"9e41c07ab3d6f2e8".hex(), "-iv", b"r3t9x27104cda58e".hex()],
        input=text.encode(), capture_output=True, check=True).stdout.decode()


def key(seconds_from_now=0):
    return sealed(f"interval={int(time.time()) + seconds_from_now}")


def post(path, body, headers=FORM):
    """A POST of a dictionary of fields, or of a body as it is."""
    if isinstance(body, dict):
        body = urllib.parse.urlencode(body, quote_via=urllib.parse.quote)
    body = body.encode() if isinstance(body, str) else body
    return f"POST {path} HTTP/1.1\r\n{headers}Content-Length: {len(body)}\r\n\r\n".encode() + body


class Service:
    """songlrc-service on a folder's library; killed at the end if it still runs."""

    def __init__(self, folder, *options):
        self.options = options
        self.library = pathlib.Path(folder, "library")
        self.data = pathlib.Path(folder, "data")
        self.errors = pathlib.Path(folder, "errors")
        self.library.mkdir(parents=True, exist_ok=True)

    def write(self, name, content):
        """Puts a file into the library in one step, as a careful program does."""
        path = self.library / name
        path.parent.mkdir(parents=True, exist_ok=True)
        whole = path.with_name(path.name + ".new")
        whole.write_bytes(content if isinstance(content, bytes) else content.encode())
        whole.replace(path)

    def __enter__(self):
        with self.errors.open("ab") as errors:
            self.process = subprocess.Popen(
                [BIN / "songlrc-service", "--library", self.library, "--data", self.data, *self.options],
                stdout=subprocess.PIPE, stderr=errors)
        lines = dict(self.process.stdout.readline().decode().strip().split(": ", 1) for _ in range(2))
        self.authority = pathlib.Path(lines["authority"])
        self.port = urllib.parse.urlsplit(lines["url"]).port
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()

    def stop(self):
        """The exit status after a polite request to stop."""
        self.process.terminate()
        return self.process.wait(15)

    def connect(self, host="127.0.0.1"):
        context = ssl.create_default_context(cafile=self.authority)
        return context.wrap_socket(socket.create_connection((host, self.port), 10), server_hostname=host)

    @staticmethod
    def read(connection):
        """Status and JSON of the reply that comes next; 0 and nothing where the connection ends."""
        reply = http.client.HTTPResponse(connection)
        try:
            reply.begin()
            return reply.status, json.load(reply)
        except (http.client.RemoteDisconnected, ConnectionError):
            return 0, {}

    def ask(self, request):
        with self.connect() as connection:
            with contextlib.suppress(OSError):  # a refusal may close the connection before all is sent
                connection.sendall(request)
            return self.read(connection)

    def search(self, track="", artist=""):
        return self.ask(post(SEARCH, {"track": track, "artist": artist, "apiKey": key()}))[1]

    def names(self, track="", artist=""):
        """"title|artist" of each result, best first."""
        return [f"{result['track']}|{result['artist']}" for result in self.search(track, artist)["results"]]

    def link(self, track):
        return next((result["link"] for result in self.search(track)["results"]), "")

    def detail(self, link):
        return self.ask(post(DETAIL, {"link": link, "apiKey": key()}))[1]

    def lyric(self, track):
        return self.detail(self.link(track))["result"]["lyric"]


class LyricServer:
    """The misbehaving service in lyric_server.py."""

    def __enter__(self):
        self.process = subprocess.Popen(["python3", pathlib.Path(__file__).with_name("lyric_server.py")],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        start = json.loads(self.process.stdout.readline())
        self.ports, self.authority = start["ports"], start["authority"]
        return self

    def __exit__(self, *_):
        self.process.communicate()

    def wait_for_request(self, text):
        while text not in self.process.stdout.readline():
            pass
