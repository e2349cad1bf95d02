#!/usr/bin/env python3
"""kill -9 at random moments of recordings of a real Icecast, each format in turn: files that do not decode, and how old
the newest byte on the disk was. Usage: bench/recording_kill.py [KILLS [AT_ONCE]]"""

import pathlib
import random
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

from common import PROGRAM, environment, need_build, wait_for
from radio import FORMATS, Radio, decoded, recorded_files


def kill_once(radio, name, moment):
    with tempfile.TemporaryDirectory() as folder:
        process = subprocess.Popen([str(PROGRAM), f"/url={radio.url(name)}", "/name=Bench", "/action=Record (Split)"],
                                   env=environment(folder), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: recorded_files(folder), f"nothing is recorded of {name}", 60)
        time.sleep(moment)
        process.kill()
        killed = time.time()
        process.wait()
        files = recorded_files(folder)
        newest = max(path.stat().st_mtime for path in files)
        broken = [path.name for path in files if decoded(path)[1] or not decoded(path)[0]]
        return name, killed - newest, broken


def main():
    need_build()
    kills = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    at_once = int(sys.argv[2]) if len(sys.argv) > 2 else 6
    dice = random.Random(1)
    names = list(FORMATS)
    with Radio(seconds=3) as radio, ThreadPoolExecutor(at_once) as pool:
        jobs = [pool.submit(kill_once, radio, names[n % len(names)], dice.uniform(0.2, 5)) for n in range(kills)]
        results = [job.result() for job in jobs]
    broken = [(name, files) for name, _, files in results if files]
    ages = sorted(age for _, age, _ in results)
    print(f"kills {kills}, with a file that does not decode {len(broken)} {broken[:5]}")
    print(f"age of the newest byte on the disk in seconds: median {ages[len(ages) // 2]:.2f}, most {ages[-1]:.2f}")


main()
