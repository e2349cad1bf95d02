#!/usr/bin/env python3
"""Processor time of a minute of recording without re-encoding while nobody listens (muted, hidden), against
`ffmpeg -c copy` of the same mount at the same time. Usage: bench/recording_cost.py [SECONDS [RUNS]]"""

import sys
import tempfile

from common import PROGRAM, Cost, environment, need_build
from radio import Radio


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    cost = Cost()
    with Radio(["mp3"], seconds=60) as radio:  # titles of a minute, shorter than music has
        url = radio.url("mp3")
        for _ in range(runs):
            with tempfile.TemporaryDirectory() as folder:
                cost.measure({
                    "wavelark": ([str(PROGRAM), f"/url={url}", "/action=Record (Split) MuteVolume",
                                  "/show=minimizedtotray"], environment(folder)),
                    "ffmpeg": (["ffmpeg", "-v", "quiet", "-i", url, "-c", "copy", f"{folder}/peer.mp3"], None)}, seconds)
    ours, theirs = cost.seconds("wavelark"), cost.seconds("ffmpeg")
    print(f"CPU seconds a minute, median of {runs}: wavelark recording unheard {ours:.3f}, ffmpeg -c copy "
          f"{theirs:.3f}, ratio {ours / theirs:.2f}; resident MB {cost.resident('wavelark'):.1f}")


main()
