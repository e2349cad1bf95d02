#!/usr/bin/env python3
"""Processor time of a minute of playing, against other players of the same stream at the same time: mpg123 for MP3, mpv
for the rest. All of them send their sound nowhere in real time, or, with --server, through a sound server. And Wavelark
playing and recording with its window hidden, and its resident memory.
Usage: bench/playing_cost.py [--server] [SECONDS [RUNS [FORMAT...]]]"""

import contextlib
import os
import sys
import tempfile

from common import PROGRAM, Cost, SoundServer, arguments_and_flag, environment, need_build
from radio import Radio, Segments

FORMATS = ["mp3", "aac", "opus", "hls"]


def players(name, url, folder, server):
    """By name: command and environment."""
    plain = [str(PROGRAM), f"/url={url}", "/show=minimizedtotray"]
    more = server.env if server else {}
    output = "pulse" if server else "dummy" if name == "mp3" else "null"
    peer = ["mpg123", "-q", "-o", output, url] if name == "mp3" else \
        ["mpv", "--no-config", "--really-quiet", "--no-video", f"--ao={output}", url]
    return {"wavelark": (plain, environment(f"{folder}/{name}", **more)),
            "recording": ([*plain, "/action=Record (Split)"], environment(f"{folder}/{name}-recording", **more)),
            peer[0]: (peer, dict(os.environ, **more))}


def main():
    need_build()
    arguments, has_server = arguments_and_flag("--server")
    seconds = int(arguments[0]) if arguments else 60
    runs = int(arguments[1]) if len(arguments) > 1 else 3
    names = arguments[2:] or FORMATS
    with Radio([name for name in names if name != "hls"]) as radio, Segments() as segments, \
            tempfile.TemporaryDirectory() as folder, \
            (SoundServer() if has_server else contextlib.nullcontext()) as server:
        for name in names:
            cost = Cost()
            for _ in range(runs):
                url = segments.url if name == "hls" else radio.url(name)
                cost.measure(players(name, url, folder, server), seconds)
            peer = list(cost.cpu)[-1]
            ours, theirs = cost.seconds("wavelark"), cost.seconds(peer)
            print(f"{name:5} CPU seconds a minute, median of {runs}: wavelark {ours:.2f} (recording too "
                  f"{cost.seconds('recording'):.2f}), {peer} {theirs:.2f}, ratio {ours / max(theirs, 0.01):.2f}; "
                  f"resident MB {cost.resident('wavelark'):.0f}, {peer} {cost.resident(peer):.0f}", flush=True)


main()
