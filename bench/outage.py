#!/usr/bin/env python3
"""How soon a station that went away is played and recorded again after its return: from the moment it
listens again to its first bytes in the recording. Usage: bench/outage.py [RUNS [SECONDS_AWAY]]"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

from common import STATION, DemoStation, PROGRAM, environment, free_port, median, need_build


def recorded_bytes(folder):
    return sum(p.stat().st_size for p in pathlib.Path(folder, "Recordings").rglob("*") if p.is_file())


def main():
    need_build()
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 5
    away = float(sys.argv[2]) if len(sys.argv) > 2 else 5
    times = []
    port = free_port()
    with DemoStation() as tracks, tempfile.TemporaryDirectory() as folder:
        files = [os.path.join(tracks.folder, name) for name in sorted(os.listdir(tracks.folder))]
        command = [STATION, "--port", str(port), "--bitrate", "128000", *files]
        station = subprocess.Popen(command, stdout=subprocess.DEVNULL)
        process = subprocess.Popen([str(PROGRAM), f"/url=http://127.0.0.1:{port}/", "/name=Outage", "/action=Record (No Split)"],
                                   env=environment(folder), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(8)
        for _ in range(runs):
            station.kill()
            station.wait()
            time.sleep(away)
            before = recorded_bytes(folder)
            station = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
            station.stdout.readline()  # it listens
            start = time.monotonic()
            while recorded_bytes(folder) == before:
                time.sleep(0.005)
                if time.monotonic() - start > 60:
                    sys.exit("the recording did not go on")
            times.append((time.monotonic() - start) * 1000)
            time.sleep(3)
        process.terminate()
        process.wait()
        station.kill()
    print(f"return to recording again after {away:.0f} s away, {runs} runs: median {median(times):.0f} ms, longest {max(times):.0f} ms")


main()
