"""A desktop of one's own for the real program: a screen, a sound server and a home, gone when the test ends."""

import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

SCREEN = "1280x800x24"


def await_that(condition, what, seconds=20.0):
    """The condition's first true value; fails with `what` after the time."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.01)
    raise AssertionError(f"not within {seconds} s: {what}")


class Desktop(contextlib.ExitStack):
    """Xvfb, a session bus, PulseAudio with a null sink, and folders below a temporary one."""

    def __init__(self, screen=SCREEN):
        super().__init__()
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora-system-"))
        self.callback(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = self.folder / "home"
        runtime = self.folder / "run"
        for folder in (self.home, runtime):
            folder.mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_RUNTIME_DIR": str(runtime),
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        self.projects = self.home / "data" / "Velmora" / "Projects"
        self.sound = None
        self._start_screen(screen)
        self._start_bus()

    def spawn(self, *command, **options):
        """A process that ends with the desktop at the latest."""
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options}
        process = subprocess.Popen(command, env=self.environment, **options)
        self.callback(self._end, process)
        return process

    def run(self, *command):
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True).stdout

    @staticmethod
    def _end(process):
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        for pipe in filter(None, (process.stdout, process.stderr)):
            pipe.close()

    def _start_screen(self, screen):
        read, write = os.pipe()
        # A server that resets after its last client would refuse the one that comes just then.
        self.spawn("Xvfb", "-displayfd", str(write), "-screen", "0", screen, "-noreset", "-nolisten", "tcp",
                   pass_fds=(write,))
        os.close(write)
        with os.fdopen(read) as pipe:
            self.environment["DISPLAY"] = ":" + pipe.readline().strip()

    def _start_bus(self):
        bus = self.spawn("dbus-daemon", "--session", "--print-address", "--nofork", stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def start_sound(self):
        """A sound server whose null sink is called "studio"."""
        self.sound = self.spawn(
            "pulseaudio", "-n", "--exit-idle-time=-1", "--daemonize=no", "--use-pid-file=no",
            "-L", "module-null-sink sink_name=studio rate=48000", "-L", "module-native-protocol-unix")
        await_that(self._has_sound, "the sound server answers")

    def _has_sound(self):
        return subprocess.run(["pactl", "info"], env=self.environment, capture_output=True).returncode == 0

    def kill_sound(self):
        self.sound.kill()
        self.sound.wait()

    def record(self):
        """Starts to record what the null sink plays; `finish` gives the samples."""
        return Recording(self)


class Recording:
    RATE = 48000

    def __init__(self, desktop):
        self.path = desktop.folder / f"recording-{time.monotonic_ns()}.raw"
        with open(self.path, "wb") as file:
            self.process = desktop.spawn("parec", "-d", "studio.monitor", "--format=float32le", f"--rate={self.RATE}",
                                         "--channels=1", "--latency-msec=10", stdout=file)
        await_that(lambda: self.path.stat().st_size > 0, "the recorder runs")

    def samples(self):
        import numpy
        return numpy.fromfile(self.path, dtype="<f4")

    def seconds(self):
        return self.path.stat().st_size / 4 / self.RATE

    def await_seconds(self, seconds):
        start = self.seconds()
        await_that(lambda: self.seconds() - start >= seconds, f"{seconds} s of sound", seconds * 3 + 10)

    def finish(self):
        self.process.send_signal(signal.SIGINT)
        self.process.wait()
        return self.samples()


class Studio:
    """The program under test and its main window."""

    def __init__(self, desktop, program):
        self.desktop = desktop
        self.process = desktop.spawn(program, stderr=subprocess.PIPE, text=True)
        self.window = await_that(self._find_window, "the studio's window").split()[-1]
        self.focus()

    def _find_window(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the studio ended with {self.process.returncode}: {self.process.stderr.read()}")
        search = ["xdotool", "search", "--onlyvisible", "--name", "^Velmora by Orrin$"]
        return subprocess.run(search, env=self.desktop.environment, capture_output=True, text=True).stdout

    def focus(self):
        self.desktop.run("xdotool", "windowfocus", "--sync", self.window)

    def press(self, *keys):
        self.desktop.run("xdotool", "key", *keys)

    def pointer(self, *commands):
        """xdotool's commands of the pointer; a pair of numbers is a place to move to."""
        words = [["mousemove", *map(str, each)] if isinstance(each, tuple) else [each] for each in commands]
        self.desktop.run("xdotool", *sum(words, []))

    def click(self, place):
        self.pointer(place, "click", "1")

    def drag(self, start, right, down):
        x, y = start
        self.pointer(start, "mousedown", "1", (x + right, y + down), "mouseup", "1")

    def resize(self, width, height):
        self.desktop.run("xdotool", "windowmove", self.window, "0", "0", "windowsize", "--sync", self.window, str(width),
                         str(height))

    def screenshot(self, path):
        self.desktop.run("import", "-window", self.window, str(path))

    def pixels(self, left, top, width, height):
        area = f"{width}x{height}+{left}+{top}"
        return subprocess.run(["import", "-window", self.window, "-crop", area, "-depth", "8", "rgb:-"],
                              env=self.desktop.environment, check=True, capture_output=True).stdout

    def quit(self, how=signal.SIGTERM, seconds=10):
        self.process.send_signal(how)
        return self.process.wait(seconds)

    def processor_seconds(self):
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def resident_mebibytes(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.split("VmRSS:")[1].split()[0]) / 1024
