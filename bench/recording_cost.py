#!/usr/bin/env python3
"""Processor time of a minute of recording without re-encoding while nobody listens (muted, hidden), against
`ffmpeg -c copy` of the same mount at the same time. Usage: bench/recording_cost.py [SECONDS [RUNS]]"""

import os
import subprocess
import sys
import tempfile
import time

from common import PROGRAM, environment, median, need_build, resident_mb, ticks
from radio import Radio


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    ours, theirs, memory = [], [], []
    with Radio(["mp3"], seconds=60) as radio: # titles of a minute, shorter than music has
        for _ in range(runs):
            with tempfile.TemporaryDirectory() as folder:
                wavelark = subprocess.Popen([str(PROGRAM), f"/url={radio.url('mp3')}", "/action=Record (Split) MuteVolume",
                                             "/show=minimizedtotray"], env=environment(folder), **quiet)
                peer = subprocess.Popen(["ffmpeg", "-v", "quiet", "-i", radio.url("mp3"), "-c", "copy", f"{folder}/peer.mp3"],
                                        stdin=subprocess.DEVNULL, **quiet)
                time.sleep(10)
                start = time.monotonic()
                before = ticks(wavelark.pid), ticks(peer.pid)
                time.sleep(seconds)
                scale = 60 / (time.monotonic() - start) / os.sysconf("SC_CLK_TCK")
                ours.append((ticks(wavelark.pid) - before[0]) * scale)
                theirs.append((ticks(peer.pid) - before[1]) * scale)
                memory.append(resident_mb(wavelark.pid))
                for process in (wavelark, peer):
                    process.kill()
                    process.wait()
    print(f"CPU seconds a minute, median of {runs}: wavelark recording unheard {median(ours):.3f}, ffmpeg -c copy "
          f"{median(theirs):.3f}, ratio {median(ours) / median(theirs):.2f}; resident MB {median(memory):.1f}")


main()
