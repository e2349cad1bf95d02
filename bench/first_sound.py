#!/usr/bin/env python3
"""From the server's accept to the first sound, against mpv and ffplay on the same streams, in turn: MP3, AAC and Opus
of an Icecast, and a live station of segments.

All players write their sound into a pipe; the time is taken when the first sample that is not silent arrives. A
forwarder in front of the server notes when the player's first connection was accepted.
Usage: bench/first_sound.py [RUNS [FORMAT...]]"""

import os
import socket
import subprocess
import sys
import tempfile
import threading
import time

from common import PROGRAM, environment, median, need_build
from radio import Radio, Segments

FORMATS = ["mp3", "aac", "opus", "hls"]


class Forwarder:
    """Passes connections on to the server and remembers when the first was accepted."""

    def __init__(self, target):
        self.target = target
        self.accepted = None
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        try:
            while True:
                client, _ = self.listener.accept()
                self.accepted = self.accepted or time.monotonic()
                server = socket.create_connection(("127.0.0.1", self.target))
                for pair in ((client, server), (server, client)):
                    pair[1].setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
                    threading.Thread(target=self.copy, args=pair, daemon=True).start()
        except OSError:
            pass  # closed

    @staticmethod
    def copy(source, sink):
        try:
            while data := source.recv(65536):
                sink.sendall(data)
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # the other side has gone


def sound_in(fifo):
    """The time of the first sample that is not silent; none: the player closed its output before."""
    with open(fifo, "rb", buffering=0) as pipe:
        while data := pipe.read(4096):
            if any(data):
                return time.monotonic()
    return None


def first_sound(command, env, url, port, fifo):
    forwarder = Forwarder(port)
    address = url.replace(f":{port}/", f":{forwarder.port}/")
    process = subprocess.Popen([part.replace("URL", address) for part in command], env=env,
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        at = sound_in(fifo)
    finally:
        process.kill()
        process.wait()
        forwarder.listener.close()
    if at is None:
        sys.exit(f"{command[0]} gave no sound of {url}")
    return (at - forwarder.accepted) * 1000


def players(folder, fifo):
    disk = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": fifo, "SDL_DISKAUDIODELAY": "20"}
    return {
        "wavelark": ([str(PROGRAM), "/url=URL"], environment(os.path.join(folder, "data"), **disk)),
        "mpv": (["mpv", "--no-config", "--really-quiet", "--no-video", "--ao=pcm", "--ao-pcm-waveheader=no",
                 f"--ao-pcm-file={fifo}", "URL"], dict(os.environ)),
        "ffplay": (["ffplay", "-nodisp", "-v", "quiet", "URL"], dict(os.environ, **disk)),
    }


def main():
    need_build()
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 10
    names = sys.argv[2:] or FORMATS
    with Radio([name for name in names if name != "hls"]) as radio, Segments() as segments, \
            tempfile.TemporaryDirectory() as folder:
        fifo = os.path.join(folder, "sound")
        os.mkfifo(fifo)
        for name in names:
            url, port = (segments.url, segments.port) if name == "hls" else (radio.url(name), radio.port)
            times = {}
            for _ in range(runs):
                for who, (command, env) in players(folder, fifo).items():
                    times.setdefault(who, []).append(first_sound(command, env, url, port, fifo))
            fastest = min(median(times["mpv"]), median(times["ffplay"]))
            print(f"{name:5} accept to first sound, median of {runs}: "
                  + ", ".join(f"{who} {median(values):.0f} ms" for who, values in times.items())
                  + f"; ratio to the fastest other {median(times['wavelark']) / fastest:.2f}", flush=True)


main()
