#!/usr/bin/env python3
"""Processor time of a minute of 128 kbit/s MP3: Wavelark playing and recording with its window hidden,
against mpv playing the same Icecast mount, at the same time; and Wavelark's resident memory.
Usage: bench/playing_cost.py [SECONDS [RUNS]]"""

import os
import subprocess
import sys
import tempfile
import time

from common import Icecast, PROGRAM, environment, median, need_build, resident_mb, ticks


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    ours, theirs, memory, peer_memory = [], [], [], []
    with Icecast() as icecast, tempfile.TemporaryDirectory() as folder:
        for _ in range(runs):
            quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
            wavelark = subprocess.Popen([str(PROGRAM), f"/url={icecast.url}", "/action=Record (Split)", "/show=minimizedtotray"],
                                        env=environment(folder), **quiet)
            mpv = subprocess.Popen(["mpv", "--no-config", "--really-quiet", "--no-video", "--ao=null", icecast.url], **quiet)
            time.sleep(8)  # both play
            start = time.monotonic()
            before = ticks(wavelark.pid), ticks(mpv.pid)
            time.sleep(seconds)
            scale = 60 / (time.monotonic() - start) / os.sysconf("SC_CLK_TCK")
            ours.append((ticks(wavelark.pid) - before[0]) * scale)
            theirs.append((ticks(mpv.pid) - before[1]) * scale)
            memory.append(resident_mb(wavelark.pid))
            peer_memory.append(resident_mb(mpv.pid))
            for process in (wavelark, mpv):
                process.kill()
                process.wait()
    print(f"CPU seconds a minute, median of {runs}: wavelark playing and recording {median(ours):.2f}, "
          f"mpv playing {median(theirs):.2f}, ratio {median(ours) / median(theirs):.2f}")
    print(f"resident MB: wavelark {median(memory):.1f}, mpv {median(peer_memory):.1f}")


main()
