#!/usr/bin/env python3
"""Writes the table and the picture of the results of tvwall-scale. Usage: report.py RESULTS-FOLDER TABLE PICTURE"""

import datetime
import json
import math
import os
import pathlib
import platform
import sys

KIB = 1024
AIM_KIB = 4

ROWS = [  # label, value of one result, format
    ("all logged in after, s", lambda r: r["login_seconds"], "{:.1f}"),
    ("commands answered", lambda r: r["commands"]["answered"], "{}"),
    ("… of which refused by the decoder", lambda r: r["commands"]["refused"], "{}"),
    ("answers lost", lambda r: r["commands"]["lost"], "{}"),
    ("answers doubled", lambda r: r["commands"]["doubled"], "{}"),
    ("answers of another command", lambda r: r["commands"]["foreign"], "{}"),
    ("commands without a reply in time", lambda r: r["commands"]["timed_out"], "{}"),
    ("notifications", lambda r: r["notifications"], "{}"),
    ("latency beyond the polling step, p50, ms", lambda r: r["latency_us"]["p50"] / 1000, "{:.1f}"),
    ("latency beyond the polling step, p99, ms", lambda r: r["latency_us"]["p99"] / 1000, "{:.1f}"),
    ("processor time of the host per command, µs", lambda r: r["processor_us_per_command"], "{:.0f}"),
    ("threads started by the plug-in", lambda r: r["plugin_threads"], "{}"),
    ("**session**, heap when created, KiB", lambda r: r["session_heap"]["created"] / KIB, "{:.1f}"),
    ("**session**, heap after the load, KiB", lambda r: r["session_heap"]["after_load"] / KIB, "{:.1f}"),
    ("session, resident in total, KiB", lambda r: r["session_resident"] / KIB, "{:.1f}"),
    ("… of which worker's stack", lambda r: r["session_stack"] / KIB, "{:.1f}"),
    ("host per decoder, heap, KiB", lambda r: r["host_heap"] / KIB, "{:.1f}"),
    ("… held in addition after the load", lambda r: r["host_heap_gained"] / KIB, "{:.1f}"),
    ("host per decoder, resident, KiB", lambda r: r["host_resident"] / KIB, "{:.1f}"),
    ("… of which worker's stack", lambda r: r["host_stack"] / KIB, "{:.1f}"),
    ("heap left when all is gone, in total, KiB", lambda r: r["left_heap"] / KIB, "{:.1f}"),
]

EXPLANATION = """\
Each decoder has a session of the plug-in, a worker thread of the host, a TCP connection on loopback and a wall of its
own in the simulated decoders' process; all log in with real keys. Then each gets commands for windows, media, playback,
sound and channel groups in turn, {rate:g} per second, and sends numbered notifications about {channels} channels,
{notify:g} per second.

- *Session, heap after the load* is what the heap gives back when the sessions are destroyed after the load, counted at
  every allocation. The aim is less than {aim} KiB. It grows with the longest message so far, which a session keeps, and
  with the memory in which its last large request was composed, at most 2 MiB.
- *Session, resident* is how much more memory the process holds after the load than with only connections and idle
  threads. It includes stack that the workers have used, what the worker threads and the allocator keep, and freed memory.
- *Host, held in addition after the load* is memory that the session does not own and that is freed with the host's
  thread and connection: OpenSSL's random generators of each worker thread, and the connection's receive buffer.
- *Heap left* is pooled by the host's socket library: 176 bytes for each socket at the peak of open ones.
- *Latency beyond the polling step* runs from queueing a command to its answer, less the 100 ms that the plug-in waits
  before it first looks for a reply.
- Processor time is that of the whole host process, notifications included, divided by the number of commands.
"""

NUMBERED_ROWS = [
    ("in bursts of", lambda r: r["notify_burst"], "{}"),
    ("commands", lambda r: r["commands"]["queued"], "{}"),
    ("lost: no answer, or a timeout",
     lambda r: r["commands"]["lost"] + r["commands"]["timed_out"], "{}"),
    ("answered twice", lambda r: r["commands"]["doubled"], "{}"),
    ("with a foreign answer", lambda r: r["commands"]["foreign"], "{}"),
    ("notifications received per second from each decoder",
     lambda r: r["notifications"] / r["load_seconds"] / r["decoders"], "{:.0f}"),
    ("latency beyond the polling step, p50, ms", lambda r: r["latency_us"]["p50"] / 1000, "{:.1f}"),
    ("latency beyond the polling step, p99, ms", lambda r: r["latency_us"]["p99"] / 1000, "{:.1f}"),
    ("session, heap after the load, KiB", lambda r: r["session_heap"]["after_load"] / KIB, "{:.1f}"),
]

NUMBERED = """\
Here decoders number their notifications like replies, from 1,000,000 on, and a session receives some between a reply
and its next poll for it. None of them may cost an answer, double one or pass for one.

Each answer is compared, byte by byte, with the one that its command must get. Windows, groups and names differ from
round to round and from decoder to decoder, so what an answer repeats, or reads back from the decoder, tells whose it is.
In each round one command must be refused: a notification has no error code, so if it were taken for the reply, it would
pass for success. A run ends with status 1 if any answer is lost, doubled or foreign, if a session holds more than {aim}
KiB, or if fewer than half of the notifications arrived.
"""

FLAT = """\
Flat means that from the second quarter to the last the median of the heap, counted at every allocation, grows by no
more than 0.5 % or 64 KiB, and that of resident memory, which includes what the allocator's arenas keep, by no more than
2 % or 1 MiB. The numbers of descriptors and threads must not change from the first sample to the last."""


def first_match(path, key):
    for line in pathlib.Path(path).read_text().splitlines():
        name, _, value = line.partition(":")
        if name.strip() == key:
            return value.strip()
    return "unknown"


def machine(results):
    memory = int(first_match("/proc/meminfo", "MemTotal").split()[0]) / KIB / KIB
    return (
        f"{first_match('/proc/cpuinfo', 'model name')}, {os.cpu_count()} cores, {memory:.0f} GiB, "
        f"Linux {platform.release()}, {results[0]['compiler']}, {datetime.date.today().isoformat()}"
    )


def command_line(result):
    duration = f"--soak {result['soak_minutes']:g}" if result["soak_minutes"] else f"--seconds {result['load_seconds']:.0f}"
    notify = f" --notify {result['notify_rate']:g}" if result["notify_rate"] != 1 else ""
    burst = f" --burst {result['notify_burst']}" if result["notify_burst"] != 1 else ""
    return f"tvwall-scale --decoders {result['decoders']} {duration} --rate {result['rate']:g}{notify}{burst}"


def table(results, title, key, rows):
    lines = [f"| {title} | " + " | ".join(f"{r[key]:g}" for r in results) + " |"]
    lines.append("|---|" + "---:|" * len(results))
    for label, value, form in rows:
        lines.append(f"| {label} | " + " | ".join(form.format(value(r)) for r in results) + " |")
    return "\n".join(lines)


def numbered_section(numbered):
    lines = ["## Numbered notifications", "", NUMBERED.format(aim=AIM_KIB)]
    lines += ["```sh", *map(command_line, numbered), "```", ""]
    lines += [table(numbered, "notifications per second from each decoder", "notify_rate", NUMBERED_ROWS), ""]
    complaints = [complaint for r in numbered for complaint in r["complaints"]]
    lines += [f"Verdict: {'; '.join(complaints) or 'every command got its own answer, once'}.", ""]
    return "\n".join(lines)


def soak_section(soak):
    samples = soak["samples"]
    verdict = "; ".join(soak["complaints"]) or "memory, descriptors and threads flat; every command got its own answer, once"
    lines = [
        "## Soak",
        "",
        f"{soak['decoders']} decoders, {soak['soak_minutes']:g} minutes, {soak['commands']['answered']} commands, "
        f"{soak['notifications']} notifications; {soak['commands']['lost']} answers lost, "
        f"{soak['commands']['doubled']} doubled.",
        "",
        f"Verdict: {verdict}.",
        "",
        FLAT,
        "",
        "| minute | heap, KiB | resident, KiB | descriptors | threads | latency p50, ms | p99, ms |",
        "|---:|---:|---:|---:|---:|---:|---:|",
    ]
    for index in sorted({round(i * (len(samples) - 1) / 10) for i in range(11)}) if samples else []:
        s = samples[index]
        lines.append(
            f"| {s['seconds'] / 60:.1f} | {s['heap'] / KIB:.0f} | {s['resident'] / KIB:.0f} | {s['descriptors']} "
            f"| {s['threads']} | {s['latency_p50_us'] / 1000:.1f} | {s['latency_p99_us'] / 1000:.1f} |"
        )
    return "\n".join(lines) + "\n"


class Panel:
    """One diagram with a linear vertical axis from 0."""

    WIDTH, HEIGHT, MARGIN = 420, 300, 50

    def __init__(self, left, top, title, unit, horizontal, series, log):
        self.left, self.top, self.title, self.unit = left, top, title, unit
        self.horizontal, self.series, self.log = horizontal, series, log
        self.most = max(max(values) for _, _, values in series) * 1.15 or 1
        self.ends = min(horizontal) if log else 0, max(horizontal)

    def x(self, value):
        scale = math.log10 if self.log else float
        low, high = (scale(end) for end in self.ends)
        share = (scale(value) - low) / (high - low) if high > low else 0.5
        return self.left + self.MARGIN + share * (self.WIDTH - self.MARGIN - 20)

    def y(self, value):
        return self.top + self.HEIGHT - 40 - value / self.most * (self.HEIGHT - 120)

    @staticmethod
    def ticks(most):
        step = 10 ** math.floor(math.log10(most / 2))
        step *= next(factor for factor in (1, 2, 5, 10) if most / (step * factor) <= 6)
        return [step * i for i in range(int(most / step) + 1)]

    def draw(self):
        right = self.left + self.WIDTH - 20
        yield f'<text x="{self.left + self.MARGIN}" y="{self.top + 20}" class="title">{self.title}, {self.unit}</text>'
        for tick in self.ticks(self.most):
            y = self.y(tick)
            yield f'<path class="grid" d="M{self.left + self.MARGIN} {y:.1f}H{right}"/>'
            yield f'<text x="{self.left + self.MARGIN - 6}" y="{y + 4:.1f}" text-anchor="end">{tick:g}</text>'
        marks = self.horizontal if self.log else self.ticks(self.ends[1])
        for mark in marks:
            yield f'<text x="{self.x(mark):.1f}" y="{self.top + self.HEIGHT - 22}" text-anchor="middle">{mark:g}</text>'
        label = "decoders" if self.log else "minutes"
        yield f'<text x="{right}" y="{self.top + self.HEIGHT - 6}" text-anchor="end">{label}</text>'
        for index, (name, colour, values) in enumerate(self.series):
            points = [(self.x(h), self.y(v)) for h, v in zip(self.horizontal, values)]
            path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
            yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>'
            if self.log:
                yield from (f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>' for x, y in points)
            y = self.top + 38 + 15 * index
            yield f'<text x="{right}" y="{y}" text-anchor="end" style="fill:{colour}">{name}</text>'


def picture(results, soak):
    panels = []
    if results:
        decoders = [r["decoders"] for r in results]
        panels += [
            Panel(0, 0, "Memory of a session", "KiB", decoders, [
                ("resident, with stack and freed memory", "#8a8a8a", [r["session_resident"] / KIB for r in results]),
                ("heap after the load", "#1f5fa8", [r["session_heap"]["after_load"] / KIB for r in results]),
                (f"aim: heap below {AIM_KIB}", "#b03a2e", [AIM_KIB] * len(results)),
            ], True),
            Panel(Panel.WIDTH, 0, "Latency beyond the polling step", "ms", decoders, [
                ("p99", "#b06a00", [r["latency_us"]["p99"] / 1000 for r in results]),
                ("p50", "#1f5fa8", [r["latency_us"]["p50"] / 1000 for r in results]),
            ], True),
        ]
    if soak and soak["samples"]:
        minutes = [s["seconds"] / 60 for s in soak["samples"]]
        top = Panel.HEIGHT if results else 0
        panels += [
            Panel(0, top, f"Soak, {soak['decoders']} decoders: memory", "MiB", minutes, [
                ("resident", "#8a8a8a", [s["resident"] / KIB / KIB for s in soak["samples"]]),
                ("heap", "#1f5fa8", [s["heap"] / KIB / KIB for s in soak["samples"]]),
            ], False),
            Panel(Panel.WIDTH, top, "Soak: latency beyond the polling step", "ms", minutes, [
                ("p99", "#b06a00", [s["latency_p99_us"] / 1000 for s in soak["samples"]]),
                ("p50", "#1f5fa8", [s["latency_p50_us"] / 1000 for s in soak["samples"]]),
            ], False),
        ]
    height = max((p.top for p in panels), default=0) + Panel.HEIGHT
    width = 2 * Panel.WIDTH
    style = "text{font:12px sans-serif;fill:#333}.title{font-size:14px;font-weight:bold}.grid{stroke:#ddd}"
    head = f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}">'
    body = [line for panel in panels for line in panel.draw()]
    return "\n".join([head, f"<style>{style}</style>", f'<rect width="{width}" height="{height}" fill="#fff"/>', *body, "</svg>"]) + "\n"


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    try:
        named = {path.stem: json.loads(path.read_text()) for path in folder.glob("*.json")}
    except (OSError, ValueError) as error:
        sys.exit(f"report.py: cannot read the results: {error}")
    found = list(named.values())
    if not found:
        sys.exit(f"report.py: no results in {folder}")
    numbered = sorted((r for name, r in named.items() if name.startswith("numbered")),
                      key=lambda r: (r["notify_burst"], r["notify_rate"]))
    results = sorted((r for r in found if not r["soak_minutes"] and r not in numbered), key=lambda r: r["decoders"])
    soak = next((r for r in found if r["soak_minutes"]), None)
    parts = ["# Many decoders in one host", "", f"![Memory and latency over the number of decoders]({pathlib.Path(sys.argv[3]).name})", ""]
    first = (results or [soak or numbered[0]])[0]
    parts += [EXPLANATION.format(rate=first["rate"], channels=first["channels"], notify=first["notify_rate"], aim=AIM_KIB)]
    parts += [f"Machine: {machine(found)}. Made by `scripts/scale`, which ran:", ""]
    parts += ["```sh", *map(command_line, results + ([soak] if soak else [])), "```", ""]
    if os.environ.get("SCALE_NOTE"):
        parts += [os.environ["SCALE_NOTE"], ""]
    if results:
        parts += [table(results, "decoders", "decoders", ROWS), ""]
    if numbered:
        parts += [numbered_section(numbered)]
    if soak:
        parts += [soak_section(soak)]
    pathlib.Path(sys.argv[2]).write_text("\n".join(parts).rstrip() + "\n")
    pathlib.Path(sys.argv[3]).write_text(picture(results, soak))


if __name__ == "__main__":
    main()
