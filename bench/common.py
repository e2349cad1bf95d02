"""What the measuring scripts share: the scripted station, and runs of a program with the operating system's own
accounting. The real server is in radio.py."""

import os
import pathlib
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = pathlib.Path(os.environ.get("WAVELARK_PROGRAM", ROOT / "build" / "release" / "wavelark"))
STATION = ROOT / "build" / "release" / "wavelark-demo-station"

def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class DemoStation:
    """The scripted station with tones of its own."""

    def __init__(self, speed=1, seconds=20, count=3):
        self.speed, self.seconds, self.count = speed, seconds, count

    def __enter__(self):
        self.folder = tempfile.mkdtemp()
        tracks = []
        for n in range(1, self.count + 1):
            path = f"{self.folder}/Artist {n} - Song {n}.mp3"
            subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i",
                            f"sine=frequency={n * 200}:duration={self.seconds}:sample_rate=44100", "-ac", "2", "-c:a",
                            "libmp3lame", "-b:a", "128k", "-write_xing", "0", "-id3v2_version", "0", path], check=True)
            tracks.append(path)
        self.process = subprocess.Popen([STATION, "--port", "0", "--speed", str(self.speed), "--bitrate", "128000", *tracks],
                                        stdout=subprocess.PIPE, text=True)
        self.url = self.process.stdout.readline().strip()
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def can_connect(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


def wait_for(condition, complaint, limit=15):
    end = time.monotonic() + limit
    while not condition():
        if time.monotonic() > end:
            sys.exit(complaint)
        time.sleep(0.05)


def environment(data, **more):
    result = dict(os.environ, WAVELARK_DATA=str(data), QT_QPA_PLATFORM="offscreen", SDL_AUDIODRIVER="dummy")
    result.update(more)
    return result


def put_settings(folder, lines):
    """The settings of a program whose data is in this folder."""
    path = pathlib.Path(folder, "Brindlecove", "Wavelark.ini")
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(lines)


def ticks(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def resident_mb(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) / 1024
    return 0.0


QUIET = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}


class Cost:
    """What programs that run beside each other need, run by run."""

    def __init__(self):
        self.cpu = {}  # by program: seconds a minute
        self.memory = {}  # MB

    def measure(self, players, seconds, settle=10):
        """players: by name, command and environment. They are given `settle` seconds until all play."""
        running = {who: subprocess.Popen(command, env=env, **QUIET) for who, (command, env) in players.items()}
        try:
            time.sleep(settle)
            start = time.monotonic()
            before = {who: ticks(process.pid) for who, process in running.items()}
            time.sleep(seconds)
            scale = 60 / (time.monotonic() - start) / os.sysconf("SC_CLK_TCK")
            for who, process in running.items():
                if process.poll() is not None:
                    sys.exit(f"{who} has ended")
                self.cpu.setdefault(who, []).append((ticks(process.pid) - before[who]) * scale)
                self.memory.setdefault(who, []).append(resident_mb(process.pid))
        finally:
            for process in running.values():
                process.kill()
                process.wait()

    def seconds(self, who):
        return median(self.cpu[who])

    def resident(self, who):
        return median(self.memory[who])


class SoundServer:
    """A private one whose only device is nowhere, but paced and asked as a real one."""

    def __enter__(self):
        self.folder = tempfile.mkdtemp()
        socket_path = f"{self.folder}/native"
        self.env = {"PULSE_SERVER": f"unix:{socket_path}", "SDL_AUDIODRIVER": "pulseaudio"}
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--load=module-null-sink sink_name=null",
             f"--load=module-native-protocol-unix socket={socket_path} auth-anonymous=1"],
            env=dict(os.environ, HOME=self.folder, XDG_RUNTIME_DIR=self.folder), **QUIET)
        wait_for(lambda: os.path.exists(socket_path), "the sound server does not start")
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def arguments_and_flag(flag):
    """The command line without the flag, and whether it was there."""
    arguments = sys.argv[1:]
    return [argument for argument in arguments if argument != flag], flag in arguments


def median(values):
    return statistics.median(values)


def need_build():
    if not PROGRAM.exists():
        sys.exit("build first: tools/build.sh release")
