"""Measures the studio as its user meets it: how soon its window is on the screen, what it takes while it stands and
plays, and whether sound ever comes late.

usage: studio_goals.py PROGRAM
"""

import argparse
import ctypes
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "system"))
from desktop import Desktop, Studio, await_that  # noqa: E402

STARTS = 15
MEASURED_SECONDS = 10

# In the window of the first start.
WINDOW_PLACE = (270, 240)
CLIP_PLACE = (900, 190)
MIXER_BUTTON = (1228, 50)


class Screen:
    """Sees a window come, its place on the screen turning from black to the studio's own colours, and clicks on it."""

    def __init__(self, display):
        self.x = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XGetImage"):
            getattr(self.x, name).restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XGetPixel.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(display.encode()))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        self.test = ctypes.CDLL("libXtst.so.6")

    def color(self, x, y):
        image = ctypes.c_void_p(self.x.XGetImage(self.display, self.root, x, y, 1, 1, ctypes.c_ulong(-1 & 0xFFFFFFFF), 2))
        pixel = self.x.XGetPixel(image, 0, 0) & 0xFFFFFF
        self.x.XFree(image)
        return pixel

    def click(self, x, y):
        self.test.XTestFakeMotionEvent(self.display, -1, x, y, ctypes.c_ulong(0))
        for is_down in (1, 0):
            self.test.XTestFakeButtonEvent(self.display, 1, is_down, ctypes.c_ulong(0))
        self.x.XFlush(self.display)


def await_color(screen, place, is_wanted, begin):
    """The milliseconds since `begin`."""
    while not is_wanted(screen.color(*place)):
        if time.monotonic() - begin > 20:
            raise AssertionError(f"nothing new at {place}")
        time.sleep(0.001)
    return 1000 * (time.monotonic() - begin)


def start_milliseconds(desktop, screen, program):
    """Until the window is on the screen, and until a click in it, made at once, has shown its effect."""
    begin = time.monotonic()
    process = desktop.spawn(program)
    shown = await_color(screen, WINDOW_PLACE, lambda color: color != 0, begin)
    arrangement = screen.color(*CLIP_PLACE)
    screen.click(*MIXER_BUTTON)
    answered = await_color(screen, CLIP_PLACE, lambda color: color != arrangement, begin)
    time.sleep(1)
    process.terminate()
    process.wait()
    return shown, answered


def load_percent(studio, seconds):
    before = studio.processor_seconds()
    time.sleep(seconds)
    return 100 * (studio.processor_seconds() - before) / seconds


def row(what, figure, unit, goal):
    print(f"{what:<44}{figure:>9.2f} {unit:<4} goal {goal:g} {'met' if figure <= goal else 'MISSED'}", flush=True)


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    options = arguments.parse_args()
    with Desktop() as desktop:
        desktop.start_sound()
        screen = Screen(desktop.environment["DISPLAY"])
        starts = [start_milliseconds(desktop, screen, options.program) for _ in range(STARTS)]
        shown, answered = map(statistics.median, zip(*starts[1:]))
        row("window on the screen, median", shown, "ms", 200)
        row("a click into it answered, median", answered, "ms", 350)
        studio = Studio(desktop, options.program)
        await_that(lambda: (desktop.projects / "current.txt").exists(), "the project")
        time.sleep(3)
        row("processor while it stands", load_percent(studio, MEASURED_SECONDS), "%", 1)
        studio.press("space")
        time.sleep(2)
        row("processor while the demo plays", load_percent(studio, MEASURED_SECONDS), "%", 4)
        row("resident memory", studio.resident_mebibytes(), "MiB", 100)
        studio.quit()


main()
