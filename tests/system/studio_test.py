"""The real program on a desktop of its own: it plays, saves, survives its sound server and quits in order."""

import signal
import subprocess
import sys
import time
import unittest

import numpy

from desktop import Recording, await_that
from studio_case import PROGRAM, RENDER, StudioCase

BEAT = 60 / 128  # seconds of the demo song


def low_passed(samples, rate, limit=180):
    """What lies below `limit` Hz: of the demo, its kick."""
    spectrum = numpy.fft.rfft(samples)
    spectrum[numpy.fft.rfftfreq(len(samples), 1 / rate) > limit] = 0
    return numpy.fft.irfft(spectrum, len(samples))


def best_shift(template, samples):
    """Where in `samples` the template fits best, and how well, from 0 to 1."""
    windows = numpy.lib.stride_tricks.sliding_window_view(samples, len(template))
    norms = numpy.linalg.norm(windows, axis=1) * numpy.linalg.norm(template) + 1e-12
    fits = windows @ template / norms
    return int(numpy.argmax(fits)), float(numpy.max(fits))


class StudioTest(StudioCase):
    def kick_errors(self, recording, beats):
        """How far, in seconds, each of the recorded kicks lies from where the first one says it belongs."""
        reference = self.desktop.folder / "reference.wav"
        subprocess.run([RENDER, "--demo", str(reference)], check=True, capture_output=True)
        raw = subprocess.run(["sox", str(reference), "-r", str(Recording.RATE), "-c", "1", "-t", "f32", "-"], check=True,
                             capture_output=True).stdout
        rate = Recording.RATE
        expected, heard = (low_passed(samples, rate) for samples in (numpy.frombuffer(raw, "<f4"), recording))
        length, reach = int(0.12 * rate), int(0.05 * rate)
        first, fit = best_shift(expected[:length], heard)
        self.assertGreater(fit, 0.9, "the first kick")
        errors = []
        for beat in range(1, beats):
            at = int(beat * BEAT * rate)
            start = first + at - reach
            shift, fit = best_shift(expected[at:at + length], heard[start:start + 2 * reach + length])
            self.assertGreater(fit, 0.9, f"the kick of beat {beat}")
            errors.append((shift - reach) / rate)
        return errors

    def test_plays_the_demo_in_time_and_opens_the_same_project_again(self):
        self.desktop.start_sound()
        studio = self.start()
        self.await_song(lambda song: song["name"] == "Demo", "the demo is the first project")
        self.await_name("Audio engine running")
        recording = self.desktop.record()
        studio.press("space")
        recording.await_seconds(6)
        studio.press("space")
        errors = self.kick_errors(recording.finish(), 10)
        print("errors of the kicks in ms:", *("%.2f" % (1000 * error) for error in errors))
        self.assertLess(max(map(abs, errors)), 0.005)

        self.act("Tempo", "Increase")
        self.await_song(lambda song: song["bpm"] == 129, "the tempo is saved")
        first = self.song()
        self.act("Tempo", "Increase")  # its save is still to come
        self.assertEqual(studio.quit(signal.SIGTERM), 0)
        self.assertEqual(self.song(), {**first, "bpm": 130})
        again = self.start()
        self.await_name("Audio engine running")
        self.assertIn("130", self.read()["Tempo"]["description"] + str(self.read()["Tempo"]["value"]))
        self.assertEqual(again.quit(signal.SIGINT), 0)

    def test_opens_without_a_sound_server_and_survives_its_loss(self):
        studio = self.start()
        self.await_name("Audio engine stopped")
        names = await_that(lambda: [n for n in self.read() if n.startswith("Audio engine failed to start: ")], "why")
        self.assertGreater(len(names[0]), len("Audio engine failed to start: "))
        self.desktop.start_sound()
        self.await_name("Audio engine running", 5)
        studio.focus()
        studio.press("space")
        time.sleep(1.5)  # of play: the position must move on
        self.desktop.kill_sound()
        self.await_name("Audio engine stopped", 5)
        held = self.read()["Position"]["description"]
        self.desktop.start_sound()
        returned = time.monotonic()
        self.await_name("Audio engine running", 5)
        took = time.monotonic() - returned
        print("sound again after %.2f s" % took)
        recording = self.desktop.record()
        recording.await_seconds(1)
        self.assertGreater(float(numpy.abs(recording.finish()).max()), 0.05)
        self.assertGreater(self.read()["Position"]["description"], held)
        self.assertEqual(studio.quit(signal.SIGHUP), 0)

    def test_a_second_process_leaves_the_projects_alone(self):
        studio = self.start()
        self.await_song(lambda song: song["name"] == "Demo", "the demo is the first project")
        before = sorted((path, path.stat().st_mtime_ns) for path in self.desktop.projects.rglob("*"))
        second = subprocess.run([PROGRAM], env=self.desktop.environment, capture_output=True, text=True, timeout=20)
        self.assertEqual(second.returncode, 1)
        self.assertEqual(second.stderr, "Velmora is already open with these projects.\n")
        self.assertEqual(before, sorted((path, path.stat().st_mtime_ns) for path in self.desktop.projects.rglob("*")))
        self.assertEqual(studio.quit(), 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
