#!/usr/bin/env python3
"""How often the device asks for sound and there is too little, while one core and the disk are busy and the station is
recorded too. The device is SDL's writer of files at a real device's pace: a period of 882 frames each 20 ms, into a
pipe. The station is never silent, so that a period with 32 silent frames in a row is one that found too little.
Usage: bench/underruns.py [MINUTES]"""

import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import time

from common import PROGRAM, environment, need_build
from radio import Radio

PERIOD_MS = 20
FRAME = 8  # bytes: two floats
PERIOD_FRAMES = 882
PERIOD = PERIOD_FRAMES * FRAME
RATE = 44100
SILENCE = bytes(32 * FRAME)


def keep_disk_busy(folder, is_over):
    block = os.urandom(1 << 20)
    path = pathlib.Path(folder, "busy")
    written = 0
    while not is_over.is_set():
        with path.open("wb") as file:
            for _ in range(64):
                file.write(block)
                os.fsync(file.fileno())
                written += len(block)
                if is_over.is_set():
                    break
    path.unlink()
    print(f"the disk was written to with {written / 1e6:.0f} MB")


def listen(fifo, minutes):
    """Periods heard since the first sound, and for those of them that were short of it when, and how many silent
    frames."""
    heard, short = 0, []
    end = None
    with open(fifo, "rb", buffering=PERIOD) as pipe:
        while end is None or time.monotonic() < end:
            period = pipe.read(PERIOD)
            if len(period) < PERIOD:
                sys.exit("the program has ended")
            if end is None:
                if not any(period):
                    continue
                end = time.monotonic() + minutes * 60
                pipe.read(PERIOD * 50)  # the fade-in
            heard += 1
            if SILENCE in period:
                silent = sum(period[at:at + FRAME] == bytes(FRAME) for at in range(0, PERIOD, FRAME))
                short.append((heard * PERIOD_FRAMES / RATE, silent))
    return heard, short


def main():
    need_build()
    minutes = float(sys.argv[1]) if len(sys.argv) > 1 else 60
    is_over = threading.Event()
    with Radio(["mp3"]) as radio, tempfile.TemporaryDirectory() as folder:
        fifo = os.path.join(folder, "sound")
        os.mkfifo(fifo)
        env = environment(folder, SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=fifo, SDL_DISKAUDIODELAY=str(PERIOD_MS),
                          SDL_AUDIO_SAMPLES=str(PERIOD_FRAMES))
        process = subprocess.Popen([str(PROGRAM), f"/url={radio.url('mp3')}", "/action=Record (Split)"], env=env,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        core = subprocess.Popen([sys.executable, "-c", "while True: pass"])
        disk = threading.Thread(target=keep_disk_busy, args=(folder, is_over))
        disk.start()
        try:
            heard, short = listen(fifo, minutes)
        finally:
            is_over.set()
            for one in (core, process):
                one.kill()
                one.wait()
            disk.join()
    print(f"{minutes:g} minutes, {heard} periods, {len(short)} with too little sound")
    for at, silent in short:
        print(f"  at {at:.2f} s: {silent} silent frames")


main()
