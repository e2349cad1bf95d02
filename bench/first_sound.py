#!/usr/bin/env python3
"""From the server's accept to the first sound, against mpv and ffplay on the same streams, in turn: MP3, AAC and Opus
of an Icecast, and a live station of segments.

All players write their sound into a pipe, or, with --server, play through a sound server whose device is listened to;
the time is taken when the first sample that is not silent arrives. A forwarder in front of the server notes when the
player's first connection was accepted, and when the server's first bytes behind its header went to the player: how long
a real server takes until then is chance.
Usage: bench/first_sound.py [--server] [RUNS [FORMAT...]]"""

import contextlib
import os
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

from common import PROGRAM, QUIET, SoundServer, arguments_and_flag, environment, median, need_build
from radio import Radio, Segments

FORMATS = ["mp3", "aac", "opus", "hls"]


class Forwarder:
    """Passes connections on to the server and remembers when the first was accepted."""

    def __init__(self, target):
        self.target = target
        self.accepted = None
        self.answered = None  # the first bytes of sound, or of a playlist
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
                    threading.Thread(target=self.copy, args=(*pair, pair[0] is server), daemon=True).start()
        except OSError:
            pass  # closed

    def copy(self, source, sink, is_answer):
        head = b""
        try:
            while data := source.recv(65536):
                sink.sendall(data)
                if is_answer and not self.answered:
                    head += data
                    if head.partition(b"\r\n\r\n")[2]:
                        self.answered = time.monotonic()
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # the other side has gone


def sound_in(pipe):
    """The time of the first sample that is not silent; none: the player closed its output before."""
    while data := pipe.read(4096):
        if any(data):
            return time.monotonic()
    return None


class TooLong(Exception):
    pass


def raise_too_long(*_):
    raise TooLong


def first_sound(player, url, port, listen):
    """In ms, from the accept and from the first bytes; none: there was no sound within half a minute."""
    command, env = player
    forwarder = Forwarder(port)
    address = url.replace(f":{port}/", f":{forwarder.port}/")
    at = None
    signal.alarm(30)
    with contextlib.suppress(TooLong), listen(
            lambda: subprocess.Popen([part.replace("URL", address) for part in command], env=env, **QUIET)) as pipe:
        at = sound_in(pipe)
    signal.alarm(0)
    forwarder.listener.close()
    if at is None:
        return None
    return [(at - begin) * 1000 for begin in (forwarder.accepted, forwarder.answered)]


@contextlib.contextmanager
def ended(process):
    try:
        yield process
    finally:
        process.kill()
        process.wait()


class Pipe:
    """The players write their sound into a pipe."""

    def __init__(self, folder):
        self.fifo = os.path.join(folder, "sound")
        os.mkfifo(self.fifo)
        disk = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": self.fifo, "SDL_DISKAUDIODELAY": "20"}
        self.players = players(folder, disk, ["--ao=pcm", "--ao-pcm-waveheader=no", f"--ao-pcm-file={self.fifo}"])

    @contextlib.contextmanager
    def listen(self, start):
        with ended(start()), open(self.fifo, "rb", buffering=0) as pipe:
            yield pipe


class Server:
    """The players play through a sound server, whose device is listened to."""

    def __init__(self, folder, server):
        self.env = server.env
        self.players = players(folder, server.env, ["--ao=pulse"])

    @contextlib.contextmanager
    def listen(self, start):
        with ended(subprocess.Popen(["parec", "--latency-msec=1", "--device=null.monitor"],
                                    env=dict(os.environ, **self.env), stdin=subprocess.DEVNULL,
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, bufsize=0)) as listener:
            listener.stdout.read(1)
            with ended(start()):
                yield listener.stdout


def players(folder, more, output):
    return {
        "wavelark": ([str(PROGRAM), "/url=URL"], environment(os.path.join(folder, "data"), **more)),
        "mpv": (["mpv", "--no-config", "--really-quiet", "--no-video", *output, "URL"], dict(os.environ, **more)),
        "ffplay": (["ffplay", "-nodisp", "-v", "quiet", "URL"], dict(os.environ, **more)),
    }


def main():
    need_build()
    signal.signal(signal.SIGALRM, raise_too_long)
    arguments, has_server = arguments_and_flag("--server")
    runs = int(arguments[0]) if arguments else 10
    names = arguments[1:] or FORMATS
    with Radio([name for name in names if name != "hls"]) as radio, Segments() as segments, \
            tempfile.TemporaryDirectory() as folder, \
            (SoundServer() if has_server else contextlib.nullcontext()) as server:
        output = Server(folder, server) if server else Pipe(folder)
        for name in names:
            url, port = (segments.url, segments.port) if name == "hls" else (radio.url(name), radio.port)
            times = {}
            for _ in range(runs):
                for who, player in output.players.items():
                    times.setdefault(who, []).append(first_sound(player, url, port, output.listen))
            for who, runs_of in times.items():
                if None in runs_of:
                    print(f"{name:5} {who} gave no sound in {runs_of.count(None)} of {runs} runs")
            if None in times["wavelark"]:
                sys.exit(1)
            for n, begin in enumerate(["accept", "first bytes"]):
                of = {who: median([pair[n] for pair in pairs if pair]) for who, pairs in times.items()}
                print(f"{name:5} {begin} to first sound, median of {runs}: "
                      + ", ".join(f"{who} {value:.0f} ms" for who, value in of.items())
                      + f"; ratio to the fastest other {of['wavelark'] / min(of['mpv'], of['ffplay']):.2f}", flush=True)


main()
