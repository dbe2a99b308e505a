"""What the tests of the real program share: a desktop, a user at it and the project that is saved there."""

import json
import pathlib
import subprocess
import sys
import unittest

from desktop import Desktop, Studio, await_that

HERE = pathlib.Path(__file__).resolve().parent
PROGRAM, RENDER = sys.argv[1:3]


class StudioCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.close)

    def start(self):
        return Studio(self.desktop, PROGRAM)

    def screen_reader(self, *command):
        return subprocess.run([sys.executable, "-W", "ignore", HERE / "screen_reader.py", *command],
                              env=self.desktop.environment, capture_output=True, text=True)

    def read(self):
        """The visible elements by name; of several, the first."""
        lines = self.screen_reader("list").stdout.splitlines()
        return {line["name"]: line for line in map(json.loads, reversed(lines))}

    def act(self, name, action):
        """Once the element is there and can do it."""
        await_that(lambda: self.screen_reader("act", name, action).returncode == 0, f"{name}: {action}")

    def set_number(self, name, number):
        await_that(lambda: self.screen_reader("set", name, str(number)).returncode == 0, f"{name}: {number}")

    def write(self, name, text):
        await_that(lambda: self.screen_reader("write", name, text).returncode == 0, f"{name}: {text}")

    def await_name(self, name, seconds=20.0):
        return await_that(lambda: self.read().get(name), name, seconds)

    def song(self):
        current = self.desktop.projects / "current.txt"
        return json.loads((self.desktop.projects / current.read_text() / "song.json").read_text())

    def await_song(self, condition, what):
        return await_that(lambda: (self.desktop.projects / "current.txt").exists() and condition(self.song()), what)

    def render(self, project):
        """The bytes of the project's sound."""
        sound = self.desktop.folder / "render.wav"
        subprocess.run([RENDER, str(project), str(sound)], check=True, capture_output=True)
        return sound.read_bytes()
