#!/usr/bin/python3
"""Measures what the page of tvwall-decoder costs in a real browser: bytes, pictures, and how soon a change is seen, with 4
windows and one host, and with 4096 windows and 50 hosts.

Usage: bench/page_bench.py [DECODER HOST PLUGIN]   default: those of build/release
"""  # by Debian's Python, which has its Selenium
import importlib.machinery
import itertools
import os
import socket
import statistics
import tempfile
import threading
import time
import urllib.request

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
checks = importlib.machinery.SourceFileLoader("checks", ROOT + "/scripts/check-page").load_module()


class Follower(threading.Thread):
    """Requests what the page requests, and counts the bytes."""

    def __init__(self, url):
        super().__init__(daemon=True)
        self.url, self.bytes, self.pictures, self.walls = url, 0, 0, False
        self.start()

    def run(self):
        for line in urllib.request.urlopen(self.url + "events"):
            self.bytes += len(line)
            if line == b"event: activity\n" and self.walls:
                self.bytes += len(urllib.request.urlopen(self.url + "wall.svg").read())
                self.pictures += 1
            self.walls = line == b"event: wall\n" or (self.walls and line != b"event: activity\n")

    def cost(self, host, commands, seconds):
        begin, was, pictures = time.monotonic(), self.bytes, self.pictures
        while time.monotonic() < begin + seconds:
            host.run(commands()) if commands else time.sleep(1)
        took = time.monotonic() - begin
        return f"{(self.bytes - was) / took / 1000:.1f} kB/s and {(self.pictures - pictures) / took:.1f} pictures/s"


def measure_wall(name, page, host, url):
    page.execute_script("""window.seen = [];
        new MutationObserver(() => requestAnimationFrame(() => setTimeout(() => seen.push(Date.now() - activity.requests[0].time))))
            .observe(picture, { childList: true })""")
    places = itertools.cycle(range(1, 10))
    move = lambda: f"window move 1 {next(places)} 0 90 33"
    seen = lambda: page.execute_script("return window.seen")
    times = []
    for _ in range(11):
        time.sleep(3)  # for the page to come to rest
        before = len(seen())
        host.run(move())
        page.until("another picture", lambda: len(seen()) > before)
        times.append(seen()[-1])
    state, picture = (len(urllib.request.urlopen(url + part).read()) for part in ("state", "wall.svg"))
    follower = Follower(url)
    time.sleep(3)
    print(f"{name}: {state / 1000:.0f} kB of state, {picture / 1000:.0f} kB of picture; one change is seen after {statistics.median(times)} ms "
          f"(median of {len(times)}, {min(times)} to {max(times)});")
    for what, commands in (("nothing", None), ("requests that change nothing", lambda: "border 1 0 on"), ("the wall", move)):
        print(f"    {what}: {follower.cost(host, commands, 20)}")


def measure(folder, log):
    decoder, address, url = checks.start_decoder(log)
    try:
        with checks.Page(folder) as page:
            page.look(1280, 800)
            page.get(url)
            host = checks.Host(address)
            host.run(checks.WALL)
            page.shows("#summary", "4 windows")
            measure_wall("4 windows, 1 host", page, host, url)
            hosts = [socket.create_connection(address.split(":")) for _ in range(49)]
            host.run("wall clear")
            checks.create_thousands(host, 4)
            page.shows("#summary", "4096 windows")
            page.until("50 hosts", lambda: page.count("#hosts tr") == 1 + len(hosts))
            measure_wall("4096 windows, 50 hosts", page, host, url)
    finally:
        decoder.kill()


with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder, open(folder + "/log", "w") as log:
    measure(folder, log)
