#!/usr/bin/env python3
"""What changing stations leaves behind: threads, descriptors, sockets and memory of a running program that is sent from
one station to the next - MP3, AAC and Vorbis of an Icecast, and segments - after the first ten and
every hundred changes. Each change is sent as a second start of the program sends it, and waits until the station plays.
Usage: bench/station_changes.py [CHANGES]"""

import os
import pathlib
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import time

from common import PROGRAM, environment, need_build, resident_mb, wait_for
from radio import Radio, Segments

FORMATS = ["mp3", "aac", "vorbis"]
RECONNECT = 3


def checksum(data):
    """CRC-16 of ISO 3309, as qChecksum() gives it."""
    crc = 0xFFFF
    for byte in data:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (0x8408 if crc & 1 else 0)
    return crc ^ 0xFFFF


class Remote:
    """The local socket on which a second start hands its arguments over."""

    def __init__(self, path):
        self.link = socket.socket(socket.AF_UNIX)
        self.link.settimeout(20)
        self.link.connect(str(path))
        name = path.name.encode()
        body = struct.pack(">I", len(name)) + name + struct.pack(">BI", RECONNECT, 1)
        self.frame(body + struct.pack(">H", checksum(body)))

    def frame(self, body):
        for part in (struct.pack(">Q", len(body)), body):
            self.link.sendall(part)
            if not self.link.recv(1):
                sys.exit("the program does not take the message")

    def play(self, url):
        self.frame(f"{PROGRAM.name}\n/url={url}".encode())


def own_copy(folder):
    """Starts find each other by the program's path: in another place it is alone."""
    for path in PROGRAM.parent.glob("*wavelark*"):
        if path.is_file():
            shutil.copy(path, folder)
    return pathlib.Path(folder, PROGRAM.name)


def local_sockets():
    return {path for path in pathlib.Path("/tmp").iterdir() if path.is_socket()}


def descriptors(pid):
    names = []
    for entry in pathlib.Path(f"/proc/{pid}/fd").iterdir():
        try:
            names.append(os.readlink(entry))
        except OSError:
            pass  # closed meanwhile
    return len(names), sum(name.startswith("socket:") for name in names)


def figures(pid):
    threads = len(list(pathlib.Path(f"/proc/{pid}/task").iterdir()))
    everything, sockets = descriptors(pid)
    return threads, everything, sockets, resident_mb(pid)


def change(pid, output, urls, changes, others):
    noted = {10, *range(100, changes, 100), changes}

    def played():
        return output.read_text().count("Connection succeeded")

    wait_for(lambda: played() == 1, "the first station does not play", 30)
    remote = Remote((local_sockets() - others).pop())
    for n in range(1, changes + 1):
        url = urls[n % len(urls)]
        remote.play(url)
        wait_for(lambda: played() > n, f"change {n} to {url} does not play", 30)
        if n in noted:
            time.sleep(3)  # the last station's threads and sockets end
            threads, everything, sockets, memory = figures(pid)
            print(f"after {n:4} changes: threads {threads}, descriptors {everything}, sockets {sockets}, "
                  f"resident MB {memory:.1f}", flush=True)


def main():
    need_build()
    changes = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
    with Radio(FORMATS) as radio, Segments() as segments, tempfile.TemporaryDirectory() as folder:
        urls = [radio.url(name) for name in FORMATS] + [segments.url]
        output = pathlib.Path(folder, "output")
        others = local_sockets()
        with output.open("w") as sink:
            process = subprocess.Popen([str(own_copy(folder)), f"/url={urls[-1]}"], env=environment(folder),
                                       stdout=subprocess.DEVNULL, stderr=sink)
        try:
            change(process.pid, output, urls, changes, others)
        finally:
            process.kill()
            process.wait()


main()
