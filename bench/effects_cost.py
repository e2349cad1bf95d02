#!/usr/bin/env python3
"""Processor time of playing the same 128 kbit/s Icecast mount for a minute, at the same time: Wavelark
without effects, Wavelark with equalizer and boost, mpg123, and mpv where it is installed. All of them
send their sound nowhere in real time. Usage: bench/effects_cost.py [SECONDS [RUNS]]"""

import pathlib
import shutil
import sys
import tempfile

from common import PROGRAM, Cost, environment, need_build
from radio import Radio

EFFECTS = """[General]
EqualizerEnabled=true
EQPreset=Rock
EQPreamp=-3.0
DynamicBoost=2
"""


def players(url, plain, shaped):
    arguments = [str(PROGRAM), f"/url={url}", "/show=minimizedtotray"]
    result = {"wavelark": (arguments, environment(plain)),
              "wavelark with equalizer and boost": (arguments, environment(shaped)),
              "mpg123": (["mpg123", "-q", "-o", "dummy", url], None)}
    if shutil.which("mpv"):
        result["mpv"] = (["mpv", "--no-config", "--really-quiet", "--no-video", "--ao=null", url], None)
    return result


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    cost = Cost()
    with Radio(["mp3"]) as radio, tempfile.TemporaryDirectory() as plain, tempfile.TemporaryDirectory() as shaped:
        put_settings(shaped, EFFECTS)
        for _ in range(runs):
            cost.measure(players(radio.url("mp3"), plain, shaped), seconds)
    for name in cost.cpu:
        print(f"{name}: {cost.seconds(name):.2f} CPU seconds a minute, median of {runs}")
    more = cost.seconds("wavelark with equalizer and boost") - cost.seconds("wavelark")
    print(f"effects: {more / 0.6:.2f} % of a core more")


main()
