#!/usr/bin/env python3
"""kill -9 at random moments of recordings of a real Icecast, each format in turn: files that do not decode, and what had
been received and is not in the file. A second listener of each mount writes down when what came. What counts is how long
ago the first missing byte had come; in Ogg the first missing page's last byte, for nobody can keep a page that the server
has not finished. And kills of recordings that are encoded on the way, named by what they become; there it counts what has
come since the newest write. Usage: bench/recording_kill.py [KILLS [AT_ONCE [MOUNT|ENCODER...]]]"""

import bisect
import random
import socket
import subprocess
import sys
import tempfile
import threading
import time
from concurrent.futures import ThreadPoolExecutor

from common import PROGRAM, environment, need_build, put_settings, wait_for
from radio import FORMATS, Radio, decoded, recorded_files

OGG_HEADER = 27
ENCODERS = {"to-mp3": 1, "to-wma": 2, "to-ogg": 4, "to-flac": 6, "to-aac": 8, "to-oga": 10}
ENCODED_MOUNT = "mp3"
TAIL = 48  # bytes of noise that are found again


def ogg_bodies(data):
    """What the whole pages hold, joined, with (end in it, end in `data`) for each page (RFC 3533, section 6)."""
    bodies, ends = bytearray(), []
    at = data.find(b"OggS")
    while at >= 0 and at + OGG_HEADER <= len(data):
        segments = data[at + 26]
        begin = at + OGG_HEADER + segments
        end = begin + sum(data[at + OGG_HEADER:begin])
        if begin > len(data) or end > len(data):
            break
        bodies += data[begin:end]
        ends.append((len(bodies), end))
        at = data.find(b"OggS", end)
    return bytes(bodies), ends


class Witness(threading.Thread):
    """Listens to a mount and keeps its bytes with the moments at which they came."""

    def __init__(self, radio, name):
        super().__init__(daemon=True)
        self.is_ogg = radio.mounts[name].is_ogg
        self.data, self.ends, self.times = bytearray(), [], []
        self.lock = threading.Lock()
        self.link = socket.create_connection(("127.0.0.1", radio.port))
        self.link.sendall(f"GET /{name} HTTP/1.0\r\n\r\n".encode())
        self.start()

    def run(self):
        head = b""
        while b"\r\n\r\n" not in head:
            head += self.link.recv(1)
        while piece := self.link.recv(65536):
            now = time.monotonic()
            with self.lock:
                self.data += piece
                self.ends.append(len(self.data))
                self.times.append(now)

    def came(self, place):
        """When the byte came that ends at this place."""
        return self.times[bisect.bisect_left(self.ends, place)]

    def came_since(self, moment, killed):
        """How long before the kill the first byte came that came after this moment."""
        with self.lock:
            later = [time for time in self.times if moment < time <= killed]
        return killed - later[0] if later else 0.0

    def missing_since(self, files, killed):
        """How long before the kill the first thing had come that is in none of the files."""
        with self.lock:
            data = bytes(self.data[:self.ends[max(0, bisect.bisect_right(self.times, killed) - 1)]])
        bodies, pages = ogg_bodies(data) if self.is_ogg else (data, [])
        tails = [path.read_bytes() for path in files[-2:]]
        tails = [(ogg_bodies(tail)[0] if self.is_ogg else tail)[-TAIL:] for tail in tails]
        place = max(bodies.rfind(tail) for tail in tails) + TAIL
        if place < TAIL:
            sys.exit(f"the end of {files[-1]} is nowhere in the stream")
        if self.is_ogg:
            lost = [end for body, end in pages if body > place]
            return killed - self.came(lost[0]) if lost else 0.0
        return killed - self.came(place + 1) if place < len(data) else 0.0


def fault_of(path):
    """Why a file does not play; empty: it does."""
    samples, said = decoded(path)
    return "" if samples and not said else f"{path.name} ({path.stat().st_size} bytes): {said[:80] or 'silent'}"


def kill_once(radio, witness, name, moment):
    with tempfile.TemporaryDirectory() as folder:
        if name in ENCODERS:
            put_settings(folder, f"[General]\nEncodingStreamType={ENCODERS[name]}\nEncodingBitrate=192\n")
        url = radio.url(ENCODED_MOUNT if name in ENCODERS else name)
        process = subprocess.Popen([str(PROGRAM), f"/url={url}", "/name=Bench", "/action=Record (Split)"],
                                   env=environment(folder), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: recorded_files(folder), f"nothing is recorded of {name}", 60)
        time.sleep(moment)
        process.kill()
        killed, clock_ahead = time.monotonic(), time.time() - time.monotonic()
        process.wait()
        files = recorded_files(folder)
        if name in ENCODERS:
            age = witness.came_since(max(path.stat().st_mtime for path in files) - clock_ahead, killed)
        else:
            age = witness.missing_since(files, killed)
        broken = [fault for fault in map(fault_of, files) if fault]
        return name, age, broken


def print_ages(name, ages):
    ages = sorted(ages)
    what = "what came after the newest write" if name in ENCODERS else "the first byte that is missing"
    print(f"{name:8} kills {len(ages):3}, {what} had come so long before (s): median "
          f"{ages[len(ages) // 2]:.2f}, 95 % {ages[len(ages) * 95 // 100]:.2f}, most {ages[-1]:.2f}")


def main():
    need_build()
    kills = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    at_once = int(sys.argv[2]) if len(sys.argv) > 2 else 6
    dice = random.Random(1)
    names = sys.argv[3:] or [*FORMATS, *ENCODERS]
    mounts = {name: ENCODED_MOUNT if name in ENCODERS else name for name in names}
    with Radio(list(set(mounts.values())), seconds=3) as radio, ThreadPoolExecutor(at_once) as pool:
        witnesses = {mount: Witness(radio, mount) for mount in set(mounts.values())}
        time.sleep(2)
        order = [names[n % len(names)] for n in range(kills)]
        jobs = [pool.submit(kill_once, radio, witnesses[mounts[name]], name, dice.uniform(0.2, 5)) for name in order]
        results = [job.result() for job in jobs]
    broken = [(name, files) for name, _, files in results if files]
    print(f"kills {kills}, with a file that does not decode {len(broken)} {broken[:5]}")
    for name in names:
        print_ages(name, [age for kind, age, _ in results if kind == name])
    print_ages("all", [age for _, age, _ in results])


main()
