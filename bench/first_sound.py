#!/usr/bin/env python3
"""From the server's accept to the first sound, against mpv on the same Icecast mount, in turn.

Both players write their sound into a pipe; the time is taken when the first sample that is not silent
arrives. A forwarder in front of Icecast notes when the player's connection was accepted.
Usage: bench/first_sound.py [RUNS]"""

import array
import os
import select
import socket
import subprocess
import sys
import tempfile
import threading
import time

from common import Icecast, PROGRAM, environment, free_port, median, need_build


class Forwarder(threading.Thread):
    """Passes one connection on to the server and remembers when it was accepted."""

    def __init__(self, target):
        super().__init__(daemon=True)
        self.target = target
        self.accepted = None
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]

    def run(self):
        client, _ = self.listener.accept()
        self.accepted = time.monotonic()
        server = socket.create_connection(("127.0.0.1", self.target))
        peers = {client: server, server: client}
        while True:
            for ready in select.select(list(peers), [], [])[0]:
                try:
                    data = ready.recv(65536)
                    if not data:
                        return
                    peers[ready].sendall(data)
                except OSError:
                    return


def first_sound(command, target, env, fifo):
    forwarder = Forwarder(target)
    forwarder.start()
    process = subprocess.Popen([part.replace("URL", f"http://127.0.0.1:{forwarder.port}/live") for part in command],
                               env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    with open(fifo, "rb", buffering=0) as pipe:
        header = True
        while True:
            data = pipe.read(4096)
            if not data:
                sys.exit(f"{command[0]} gave no sound")
            if header and data[:4] == b"RIFF":
                data = data[64:]
            header = False
            if any(data):
                at = time.monotonic()
                break
    process.kill()
    process.wait()
    return (at - forwarder.accepted) * 1000


def main():
    need_build()
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 10
    ours, theirs = [], []
    with Icecast() as icecast, tempfile.TemporaryDirectory() as folder:
        fifo = os.path.join(folder, "sound")
        os.mkfifo(fifo)
        data = os.path.join(folder, "data")
        env = environment(data, SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=fifo, SDL_DISKAUDIODELAY="20")
        for _ in range(runs):
            ours.append(first_sound([str(PROGRAM), "/url=URL"], icecast.port, env, fifo))
            theirs.append(first_sound(["mpv", "--no-config", "--really-quiet", "--no-video", "--ao=pcm", "--ao-pcm-waveheader=no",
                                       f"--ao-pcm-file={fifo}", "URL"], icecast.port, dict(os.environ), fifo))
    print(f"accept to first sound, median of {runs}: wavelark {median(ours):.0f} ms, mpv {median(theirs):.0f} ms, "
          f"ratio {median(ours) / median(theirs):.2f}")
    print("wavelark:", " ".join(f"{v:.0f}" for v in ours))
    print("mpv:     ", " ".join(f"{v:.0f}" for v in theirs))


main()
