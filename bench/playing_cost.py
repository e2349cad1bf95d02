#!/usr/bin/env python3
"""Processor time of a minute of playing, against other players of the same stream at the same time: mpg123 for MP3, mpv
for the rest. All of them send their sound nowhere in real time. And Wavelark playing and recording with its window
hidden, and its resident memory. Usage: bench/playing_cost.py [SECONDS [RUNS [FORMAT...]]]"""

import os
import subprocess
import sys
import tempfile
import time

from common import PROGRAM, environment, median, need_build, resident_mb, ticks
from radio import Radio, Segments

FORMATS = ["mp3", "aac", "opus", "hls"]
MPV = ["mpv", "--no-config", "--really-quiet", "--no-video", "--ao=null"]


def players(name, url, folder):
    """By name: command and environment."""
    plain = [str(PROGRAM), f"/url={url}", "/show=minimizedtotray"]
    result = {"wavelark": (plain, environment(f"{folder}/{name}")),
              "recording": ([*plain, "/action=Record (Split)"], environment(f"{folder}/{name}-recording"))}
    result["peer"] = (["mpg123", "-q", "-o", "dummy", url] if name == "mp3" else [*MPV, url], None)
    return result


def measure(name, url, folder, seconds, cost, memory):
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    running = {who: subprocess.Popen(command, env=env, **quiet)
               for who, (command, env) in players(name, url, folder).items()}
    time.sleep(10)  # all play
    start = time.monotonic()
    before = {who: ticks(process.pid) for who, process in running.items()}
    time.sleep(seconds)
    scale = 60 / (time.monotonic() - start) / os.sysconf("SC_CLK_TCK")
    for who, process in running.items():
        if process.poll() is not None:
            sys.exit(f"{who} does not play {name}")
        cost.setdefault(who, []).append((ticks(process.pid) - before[who]) * scale)
        memory.setdefault(who, []).append(resident_mb(process.pid))
        process.kill()
        process.wait()


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    names = sys.argv[3:] or FORMATS
    with Radio([name for name in names if name != "hls"]) as radio, Segments() as segments, \
            tempfile.TemporaryDirectory() as folder:
        for name in names:
            cost, memory = {}, {}
            for _ in range(runs):
                measure(name, segments.url if name == "hls" else radio.url(name), folder, seconds, cost, memory)
            peer = "mpg123" if name == "mp3" else "mpv"
            ours, theirs = median(cost["wavelark"]), median(cost["peer"])
            print(f"{name:5} CPU seconds a minute, median of {runs}: wavelark {ours:.2f} (recording too "
                  f"{median(cost['recording']):.2f}), {peer} {theirs:.2f}, ratio {ours / max(theirs, 0.01):.2f}; "
                  f"resident MB {median(memory['wavelark']):.0f}, {peer} {median(memory['peer']):.0f}", flush=True)


main()
