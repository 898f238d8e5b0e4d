#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Measures songlrc-service with a large library on this machine.

usage: measure.py PROGRAM FOLDER [SONGS]

Creates SONGS (default 100,000) lyric files in FOLDER/library if it does not exist. Starts PROGRAM without an index and
again with the existing index, then searches with 8 clients. Needs the openssl command.
"""
import http.client
import json
import multiprocessing
import pathlib
import random
import signal
import ssl
import subprocess
import sys
import time
import urllib.parse

CLIENTS = 8
SEARCHES = 500  # per client
FOLDERS = 1000
HEADERS = {"Content-Type": "application/x-www-form-urlencoded"}

# As in real titles, a few words are very common and most are rare.
SYLLABLES = "ba ko li mer sun ta rin do ve na lo ess qui har po zan mi tu el or".split()
COMMON = "love you the my me night heart river time sea day world dance home".split()
HAN = "我你的爱心一天人生情歌不在夜梦想月风花雨海星空光年时间" + "".join(chr(0x4E00 + 7 * i) for i in range(1500))
HANGUL = "".join(chr(0xAC00 + 13 * i) for i in range(800))


def zipf(rnd, items):
    return items[min(int(rnd.paretovariate(0.7)) - 1, 10**9) % len(items)]


def words(rnd):
    latin = COMMON + ["".join(rnd.choices(SYLLABLES, k=rnd.randint(2, 4))) for _ in range(20000)]
    return lambda: zipf(rnd, latin)


def name(rnd, word, most):
    kind = rnd.random()
    if kind < 0.6:
        return " ".join(word().capitalize() for _ in range(rnd.randint(1, most)))
    return "".join(zipf(rnd, HAN if kind < 0.9 else HANGUL) for _ in range(rnd.randint(2, 2 * most)))


def make_songs(library, count):
    rnd = random.Random(1)
    word = words(rnd)
    artists = [name(rnd, word, 2) for _ in range(FOLDERS * 3)]
    for number in range(count):
        folder = library / f"{number % FOLDERS:03}"
        if number < FOLDERS:
            folder.mkdir(parents=True, exist_ok=True)
        lines = [f"[ti:{name(rnd, word, 5)}]", f"[ar:{zipf(rnd, artists)}]"]
        lines += [f"[{i // 12:02}:{i % 12 * 5:02}.00]{word()} {word()} {word()}" for i in range(40)]
        (folder / f"{number}.lrc").write_text("\n".join(lines) + "\n", encoding="utf-8")


def request_key():
    return subprocess.run(
        ["openssl", "enc", "-aes-128-cbc", "-base64", "-A", "-K", b"9e41c07ab3d6f2e8".hex(), "-iv",
         b"r3t9x27104cda58e".hex()], input=f"interval={int(time.time())}".encode(), capture_output=True,
        check=True).stdout.decode()


class Service:
    """The running program."""

    def __init__(self, program, library, data):
        begin = time.monotonic()
        self.process = subprocess.Popen([program, "--library", library, "--data", data], stdout=subprocess.PIPE,
                                        text=True)
        lines = dict(self.process.stdout.readline().strip().split(": ", 1) for _ in range(2))
        self.start_time = time.monotonic() - begin
        self.url = urllib.parse.urlsplit(lines["url"])
        self.authority = lines["authority"]

    def memory(self, key):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.split(key + ":")[1].split()[0]) // 1024

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        assert self.process.wait() == 0


def client(job):
    """Runs searches one after the other. Returns their times in ms and the number of results."""
    host, port, authority, seed, fresh = job
    rnd = random.Random(1)
    word = words(rnd)
    rnd.seed(seed)
    context = ssl.create_default_context(cafile=authority)
    key = request_key()
    times, results, connection = [], 0, None
    for _ in range(SEARCHES):
        track, artist = name(rnd, word, 2), name(rnd, word, 1) if rnd.random() < 0.3 else ""
        if rnd.random() < 0.2:
            track = track[:1] if ord(track[0]) > 0x2E80 else track[:3]
        form = urllib.parse.urlencode({"artist": artist, "track": track, "apiKey": key})
        begin = time.perf_counter()
        if fresh or not connection:
            connection = http.client.HTTPSConnection(host, port, context=context)
        connection.request("POST", "/phpLyricFetcher/search/search.php", form, HEADERS)
        reply = json.loads(connection.getresponse().read())
        times.append((time.perf_counter() - begin) * 1000)
        assert reply["code"] == 0, reply
        results += len(reply["results"])
        if fresh:
            connection.close()
    return times, results


def search(service, fresh):
    jobs = [(service.url.hostname, service.url.port, service.authority, seed, fresh) for seed in range(CLIENTS)]
    with multiprocessing.Pool(CLIENTS) as pool:
        answers = pool.map(client, jobs, 1)
    times = sorted(t for part, _ in answers for t in part)
    results = sum(count for _, count in answers)
    print(f"{CLIENTS} clients, {'one connection per search' if fresh else 'persistent connections'}: median "
          f"{times[len(times) // 2]:.1f} ms, p99 {times[len(times) * 99 // 100]:.1f} ms, max {times[-1]:.1f} ms "
          f"({len(times)} searches, {results / len(times):.1f} results each)")


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 100000
    library, data = folder / "library", folder / "data"
    if not library.exists():
        make_songs(library, count)
    for file in data.glob("index.sqlite*"):
        file.unlink()
    for title in ("no index", "unchanged folder"):
        service = Service(program, str(library), str(data))
        print(f"start, {title}: {service.start_time:.2f} s, resident {service.memory('VmRSS')} MiB, "
              f"at most {service.memory('VmHWM')} MiB")
        if title == "unchanged folder":
            search(service, fresh=True)
            search(service, fresh=False)
            print(f"resident after the searches {service.memory('VmRSS')} MiB, at most {service.memory('VmHWM')} MiB")
        service.stop()
    size = sum(file.stat().st_size for file in data.glob("index.sqlite*"))
    print(f"index {size // 2**20} MiB")


if __name__ == "__main__":
    main()
