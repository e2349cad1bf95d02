#!/usr/bin/env python3
"""Memory of an hour of playing and recording, at 20 times speed: resident MB after each simulated ten
minutes. The output runs a tenth faster than the station: else each stall would leave more of the stream waiting,
which is the listener's delay and no growth of the program. Usage: bench/soak.py [SIMULATED_MINUTES [SPEED]]"""

import subprocess
import sys
import tempfile
import time

from common import DemoStation, PROGRAM, environment, need_build, resident_mb


def main():
    need_build()
    minutes = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    speed = int(sys.argv[2]) if len(sys.argv) > 2 else 20
    with DemoStation(speed=speed, seconds=60) as station, tempfile.TemporaryDirectory() as folder:
        process = subprocess.Popen([str(PROGRAM), f"/url={station.url}", "/name=Soak", "/action=Record (Split)"],
                                   env=environment(folder, WAVELARK_NULL_SPEED=str(speed * 1.1)),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(5)
        start = time.monotonic()
        first = None
        for minute in range(1, minutes + 1):
            time.sleep(max(0.0, start + minute * 60 / speed - time.monotonic()))
            if process.poll() is not None:
                sys.exit(f"the program has ended with {process.returncode}")
            if minute == 1 or minute % 10 == 0:
                value = resident_mb(process.pid)
                first = first or value
                print(f"minute {minute:3}: {value:.1f} MB resident ({value - first:+.1f})", flush=True)
        process.terminate()
        process.wait()


main()
