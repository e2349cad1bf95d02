#!/usr/bin/env python3
"""Six mounts of a real Icecast recorded and split at the same time: messages of `ffmpeg -v error` on the files, and
samples lost or doubled between them. What was sent is known, so the decode of the files, laid end to end, is looked for
in the decode of what was sent. Usage: bench/recording_exact.py [SECONDS [MOUNT...]]"""

import pathlib
import subprocess
import sys
import tempfile

from common import PROGRAM, environment, need_build
from radio import FORMATS, Radio, decoded, recorded_files

FRAME = 4  # bytes


def record(radio, name, folder, seconds):
    return subprocess.Popen([str(PROGRAM), f"/url={radio.url(name)}", "/name=Bench", "/action=Record (Split)",
                             f"/duration={seconds}", "/end_action=1"],
                            env=environment(folder), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def reference(mount, folder):
    """Decodes of what was sent. A link of Ogg begins anew; the other streams are one for the decoder."""
    if mount.is_ogg:
        parts = []
        for track in mount.tracks:
            path = pathlib.Path(folder, "link")
            path.write_bytes(track)
            parts.append(decoded(path)[0])
        return b"".join(parts * 4)
    path = pathlib.Path(folder, "sent")
    path.write_bytes(b"".join(mount.tracks * 4))
    return decoded(path)[0]


def compare(mount, files, folder):
    """Samples of the recording; samples that are not where they belong; messages."""
    sound = [decoded(path) for path in files]
    messages = sum(1 for _, said in sound if said)
    # a decoder of Opus that joins within a link only comes near to one that was there from its beginning
    first = 1 if mount.name == "opus" else 0
    joined = b"".join(samples for samples, _ in sound[first:])
    sent = reference(mount, folder)
    # where the recording joined the stream the decoder had to find its way in, and at its end it stopped
    skipped = 8192 * FRAME if first == 0 else 0
    needle = joined[skipped:len(joined) - 8192 * FRAME]
    probe = needle[:4096]
    best = 0
    at = sent.find(probe)
    while at >= 0:
        best = max(best, common_length(sent, at, needle))
        at = sent.find(probe, at + FRAME)
    return len(needle) // FRAME, (len(needle) - best) // FRAME, messages


def common_length(sent, at, needle):
    low, high = 0, min(len(needle), len(sent) - at)
    while low < high:
        middle = (low + high + 1) // 2
        if sent[at:at + middle] == needle[:middle]:
            low = middle
        else:
            high = middle - 1
    return low


def main():
    need_build()
    seconds = int(sys.argv[1]) if len(sys.argv) > 1 else 40
    names = sys.argv[2:] or list(FORMATS)
    with Radio(names) as radio, tempfile.TemporaryDirectory() as folder:
        runs = {}
        for name in names:
            pathlib.Path(folder, name).mkdir()
            runs[name] = record(radio, name, pathlib.Path(folder, name), seconds)
        for run in runs.values():
            run.wait()
        for name, mount in radio.mounts.items():
            files = recorded_files(pathlib.Path(folder, name))
            samples, wrong, messages = compare(mount, files, folder)
            print(f"{name:7} files {len(files)}, seconds {samples / mount.rate:.1f}, decoder messages {messages}, "
                  f"samples lost or doubled {wrong}", flush=True)


main()
