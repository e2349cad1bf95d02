"""An Icecast whose mounts are fed with known bytes at the pace of the audio, so that what is recorded can be compared
with what was sent: MP3 (constant and variable bitrate) and AAC with titles beside the stream, Vorbis, Opus and FLAC
in Ogg with a link for each title. And a live station of segments."""

import base64
import functools
import http.server
import os
import pathlib
import shutil
import socket
import stat
import subprocess
import tempfile
import threading
import time
import urllib.parse
import urllib.request

from common import can_connect, free_port, wait_for

ICECAST = """<icecast><limits><clients>50</clients><sources>8</sources><burst-size>65536</burst-size></limits>
<authentication><source-password>hackme</source-password><admin-user>admin</admin-user>
<admin-password>hackme</admin-password></authentication><hostname>localhost</hostname>
<listen-socket><port>{port}</port><bind-address>127.0.0.1</bind-address></listen-socket>
<fileserve>0</fileserve><paths><logdir>{folder}</logdir><webroot>/usr/share/icecast2/web</webroot>
<adminroot>/usr/share/icecast2/admin</adminroot></paths>
<logging><accesslog>a.log</accesslog><errorlog>e.log</errorlog><loglevel>1</loglevel></logging>
<security><chroot>0</chroot><changeowner><user>nobody</user><group>nogroup</group></changeowner></security>
</icecast>"""

FORMATS = {
    "mp3": (["-ar", "44100", "-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0", "-id3v2_version", "0", "-f", "mp3"],
            "audio/mpeg"),
    "mp3vbr": (["-c:a", "libmp3lame", "-q:a", "4", "-write_xing", "0", "-id3v2_version", "0", "-f", "mp3"], "audio/mpeg"),
    "aac": (["-c:a", "aac", "-aac_pns", "0", "-b:a", "96k", "-f", "adts"], "audio/aac"),
    "vorbis": (["-c:a", "libvorbis", "-q:a", "3", "-f", "ogg"], "application/ogg"),
    "opus": (["-c:a", "libopus", "-b:a", "64k", "-f", "ogg"], "application/ogg"),
    "flac": (["-c:a", "flac", "-f", "ogg"], "application/ogg"),
}
TRACKS = 5
SOURCE_RATE = 48000


class Mount:
    """One source client. `tracks`: the bytes of each title."""

    def __init__(self, port, name, seconds, folder):
        self.port, self.name, self.seconds = port, name, seconds
        self.codec, self.type = FORMATS[name]
        self.is_ogg = self.type == "application/ogg"
        self.rate = 44100 if "44100" in self.codec else SOURCE_RATE
        self.tracks = [self.encode(n, folder) for n in range(1, TRACKS + 1)]
        self.is_over = False
        self.thread = threading.Thread(target=self.run, daemon=True)
        self.thread.start()

    def encode(self, n, folder):
        path = pathlib.Path(folder, f"{self.name}{n}")
        source = f"sine=frequency={250 * n}:duration={self.seconds}:sample_rate={SOURCE_RATE}"
        noise = f"anoisesrc=amplitude=0.05:duration={self.seconds}:sample_rate={SOURCE_RATE}:seed={n}"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", source, "-f", "lavfi", "-i", noise,
                        "-filter_complex", "amix=inputs=2", "-ac", "2", "-metadata", "artist=Bench",
                        "-metadata", f"title=Song {n}", *self.codec, str(path)], check=True)
        return path.read_bytes()

    def run(self):
        with socket.create_connection(("127.0.0.1", self.port)) as link:
            login = base64.b64encode(b"source:hackme").decode()
            link.sendall((f"PUT /{self.name} HTTP/1.1\r\nHost: localhost\r\nAuthorization: Basic {login}\r\n"
                          f"Content-Type: {self.type}\r\n\r\n").encode())
            due = time.monotonic()
            n = 0
            try:
                while not self.is_over:
                    due = self.send(link, n % TRACKS, due)
                    n += 1
            except OSError:
                pass  # the server has gone

    def send(self, link, n, due):
        if not self.is_ogg:
            threading.Thread(target=self.tell, args=(n,), daemon=True).start()
        track = self.tracks[n]
        steps = int(self.seconds * 20)
        for step in range(steps):
            link.sendall(track[len(track) * step // steps:len(track) * (step + 1) // steps])
            due += 0.05
            time.sleep(max(0.0, due - time.monotonic()))
        return due

    def tell(self, n):
        query = urllib.parse.urlencode({"mount": f"/{self.name}", "mode": "updinfo", "song": f"Bench - Song {n + 1}"})
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}/admin/metadata?{query}")
        request.add_header("Authorization", "Basic " + base64.b64encode(b"admin:hackme").decode())
        try:
            urllib.request.urlopen(request, timeout=5).read()
        except OSError:
            pass  # the mount is not there yet


class Radio:
    def __init__(self, names=FORMATS, seconds=6):
        self.names, self.seconds = names, seconds

    def __enter__(self):
        self.port = free_port()
        self.folder = tempfile.mkdtemp()
        os.chmod(self.folder, 0o777)
        config = pathlib.Path(self.folder, "icecast.xml")
        config.write_text(ICECAST.format(port=self.port, folder=self.folder))
        self.server = subprocess.Popen(["icecast2", "-c", config], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: can_connect(self.port), "icecast2 does not answer")
        self.mounts = {name: Mount(self.port, name, self.seconds, self.folder) for name in self.names}
        time.sleep(6)  # the burst buffers fill
        return self

    def __exit__(self, *_):
        for mount in self.mounts.values():
            mount.is_over = True
        self.server.kill()
        self.server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def url(self, name):
        return f"http://127.0.0.1:{self.port}/{name}"


class QuietPages(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True  # as other servers do; else the second request of a connection waits 40 ms

    def log_message(self, *_):
        pass


class QuietServer(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):
        pass  # listeners come and go


class Segments:
    """A live station of AAC in segments of two seconds (RFC 8216)."""

    def __enter__(self):
        self.folder = tempfile.mkdtemp()
        self.feed = subprocess.Popen(
            ["ffmpeg", "-v", "quiet", "-re", "-f", "lavfi", "-i", "anoisesrc=amplitude=0.3:sample_rate=48000", "-ac", "2",
             "-c:a", "aac", "-b:a", "96k", "-f", "hls", "-hls_time", "2", "-hls_list_size", "6",
             "-hls_flags", "delete_segments", f"{self.folder}/live.m3u8"], stdin=subprocess.DEVNULL)
        self.server = QuietServer(
            ("127.0.0.1", 0), functools.partial(QuietPages, directory=self.folder))
        self.port = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        wait_for(lambda: len(os.listdir(self.folder)) > 5, "no segments", 30)
        return self

    def __exit__(self, *_):
        self.feed.kill()
        self.feed.wait()
        self.server.shutdown()
        shutil.rmtree(self.folder, ignore_errors=True)

    @property
    def url(self):
        return f"http://127.0.0.1:{self.port}/live.m3u8"


def decoded(path):
    """Samples of a file as 16 bits, and what the decoder had to say."""
    done = subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), "-f", "s16le", "-"], stdin=subprocess.DEVNULL,
                          capture_output=True)
    return done.stdout, done.stderr.decode(errors="replace").strip()


def recorded_files(folder):
    """In the order in which they were finished."""
    found = []
    for path in pathlib.Path(folder, "Recordings").rglob("*"):
        try:
            status = path.stat()
        except FileNotFoundError:
            continue  # has just got its name
        if stat.S_ISREG(status.st_mode) and path.suffix not in (".m3u", ".tagging"):
            found.append((status.st_mtime_ns, path))
    return [path for _, path in sorted(found)]
