"""Drives velmora-render as a user would: good projects, bad ones, and what is left on the disk."""

import array
import json
import math
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import uuid
import wave

TOOL = sys.argv.pop(1)
INVALID = "This project contains invalid or unsupported data.\n"
RATE = 44100


def new_id():
    return str(uuid.uuid4()).upper()


def run(*arguments, **options):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, text=True, timeout=60, **options)


def write_wav(path, channels, rate, frames, sample=lambda n: 0):
    with wave.open(str(path), "wb") as file:
        file.setparams((channels, 2, rate, 0, "NONE", ""))
        file.writeframes(array.array("h", (int(32767 * sample(n)) for n in range(frames) for _ in range(channels))))


def read_float_wav(path):
    """Both sides of a stereo file of 32-bit floats."""
    data = path.read_bytes()
    start = data.index(b"data") + 8
    values = array.array("f", data[start:start + (len(data) - start) // 8 * 8])
    return values[0::2], values[1::2]


def peak(samples):
    return max(map(abs, samples), default=0)


class Project:
    """A hand-made project on the disk."""

    def __init__(self, root, bpm=120):
        self.song = {"id": new_id(), "name": "Test", "bpm": bpm, "tracks": [], "patterns": [], "clips": [],
                     "audioAssets": [], "masterVolume": 1}
        self.folder = pathlib.Path(root) / self.song["id"]
        (self.folder / "audio").mkdir(parents=True)

    def track(self, kind, **fields):
        track = {"id": new_id(), "name": "", "kind": kind, "color": "blue", "volume": 1, "pan": 0, "isMuted": False,
                 "isSoloed": False, "fx": dict.fromkeys(
                     ("lowGainDB", "midGainDB", "highGainDB", "delayMix", "reverbMix"), 0), **fields}
        self.song["tracks"].append(track)
        return track

    def pattern(self, track, length, notes, start, clip_length):
        pattern = {"id": new_id(), "trackID": track["id"], "name": "", "lengthBeats": length, "notes": [
            {"pitch": p, "startBeat": s, "durationBeats": d, "velocity": 100} for p, s, d in notes]}
        self.song["patterns"].append(pattern)
        self.clip(track, {"pattern": {"_0": pattern["id"]}}, start, clip_length)

    def audio(self, track, file_name, start, length):
        asset = {"id": new_id(), "fileName": file_name, "sampleRate": 22050, "frameCount": 1, "channelCount": 1}
        self.song["audioAssets"].append(asset)
        self.clip(track, {"audio": {"_0": asset["id"]}}, start, length)

    def clip(self, track, source, start, length):
        self.song["clips"].append({"id": new_id(), "trackID": track["id"], "source": source, "startBeat": start,
                                   "lengthBeats": length})

    def save(self, text=None):
        (self.folder / "song.json").write_text(json.dumps(self.song) if text is None else text)
        return self.folder


class RenderToolTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.out = self.root / "out.wav"

    def tearDown(self):
        shutil.rmtree(self.root)

    def assert_fails(self, result, line, code=1):
        self.assertEqual((result.returncode, result.stderr), (code, line))
        self.assertFalse(self.out.exists())
        self.assert_no_strays()

    def assert_fails_with(self, result, *parts):
        """In one line that has these parts, and without a file."""
        self.assertEqual((result.returncode, result.stderr.count("\n")), (1, 1), result.stderr)
        for part in parts:
            self.assertIn(part, result.stderr)
        self.assert_fails(result, result.stderr)

    def assert_no_strays(self):
        self.assertEqual([p.name for p in self.root.iterdir() if p.name.startswith(".")], [])

    def render(self, project, *options):
        result = run("--float", *options, project.save(), self.out)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        return read_float_wav(self.out)

    def test_the_demo_is_the_same_on_every_road(self):
        self.assertEqual(run("--demo", self.out).returncode, 0)
        with wave.open(str(self.out)) as file:
            self.assertEqual((file.getnchannels(), file.getsampwidth(), file.getframerate(), file.getnframes()),
                             (2, 2, RATE, 463050))
        written = run("--write-demo", self.root / "projects")
        folder = written.stdout.strip()
        self.assertEqual(run("--check", folder).stdout, "Demo: 2 tracks, 16 beats at 128 bpm, 0 audio files\n")
        again = self.root / "again.wav"
        self.assertEqual(run("--threads", 1, folder + "/", again).returncode, 0)
        self.assertEqual(again.read_bytes(), self.out.read_bytes())

    def test_wrong_usage(self):
        for arguments in ([], ["a"], ["a", "b", "c"], ["--seconds", "x", "a", "b"], ["--seconds"], ["--fast", "a", "b"],
                          ["--demo"], ["--check"], ["--demo", "--check", "a"], ["--threads", "0", "a", "b"],
                          ["--float", "--check", "a"], ["--seconds", "nan", "--demo", "a"]):
            result = run(*arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertIn("usage: velmora-render", result.stderr)

    def test_a_project_of_everything(self):
        project = Project(self.root, bpm=127.5)
        write_wav(project.folder / "audio" / "tone.wav", 2, 22050, 11025, lambda n: 0.5 * math.sin(n / 22050 * 440 * 2 * math.pi))
        drums = project.track({"drums": {}}, pan=-1)
        project.pattern(drums, 0.75, [(36, 0, 0.1)], 0, 4.5)
        for number, preset in enumerate(("miniSynth", "bass", "pad", "lead", "keys")):
            synth = project.track({"synth": {"_0": preset}}, volume=0.5)
            project.pattern(synth, 3.3, [(48 + number, 0.3, 1), (60, 1.7, 1.6)], 4 + number, 5.1)
        tone = project.track({"audio": {}})
        project.audio(tone, "tone.wav", 3, 8)
        whole = self.render(project)
        self.assertEqual(len(whole[0]), math.ceil(16 * 60 / 127.5 * RATE) + 3 * RATE)
        for threads in (1, 2, 3):
            self.assertEqual(self.render(project, "--threads", threads), whole)

        parts = []
        for track in project.song["tracks"]:
            track["isSoloed"] = True
            parts.append(self.render(project))
            track["isSoloed"] = False
        for side in (0, 1):
            for n in range(0, len(whole[side]), 997):
                self.assertAlmostEqual(whole[side][n], sum(part[side][n] for part in parts), delta=1e-5)
        for part in parts[1:6]:
            self.assertGreater(peak(part[0]), 0.05)

        beat = 60 / 127.5 * RATE
        kick_left, kick_right = parts[0]
        self.assertLess(peak(kick_right), 1e-6)
        for turn in range(6):
            start = round(turn * 0.75 * beat)
            self.assertGreater(peak(kick_left[start:start + 300]), 0.3)
        tone_left = parts[6][0]
        start, end = round(3 * beat), round(3 * beat) + RATE // 2
        self.assertEqual(peak(tone_left[:start]), 0)
        self.assertEqual(peak(tone_left[end + 2:]), 0)
        crossings = sum(a < 0 <= b for a, b in zip(tone_left[start:end], tone_left[start + 1:end]))
        self.assertAlmostEqual(crossings, 220, delta=1)

        drums["isMuted"] = drums["isSoloed"] = True
        self.assertEqual(peak(self.render(project)[0]), 0)

    def test_documents_that_are_no_projects(self):
        minimal = '{"id":"%s","name":"","bpm":120,"tracks":[],"patterns":[],"clips":[],"audioAssets":[],"masterVolume":1}'
        own = minimal % "ID"
        for text, line in ((minimal % new_id(), INVALID), (own.replace("120", "39.9"), INVALID),
                           (own + " " * 33554432, INVALID), ("", "JSON"), ("[" * 200000, ""),
                           ('{"id":' * 50000, ""), ("\xff\xfe", "JSON"), (own.replace('"name":"",', ""), "name")):
            folder = Project(self.root).save("")
            (folder / "song.json").write_bytes(text.replace("ID", folder.name).encode("latin-1"))
            self.assert_fails_with(run(folder, self.out), line)

    def test_folders_that_are_no_projects(self):
        project = Project(self.root)
        folder = project.save()
        renamed = folder.with_name(new_id())
        folder.rename(renamed)
        self.assert_fails(run(renamed, self.out), INVALID)
        self.assert_fails(run(self.root / new_id(), self.out), "song.json: No such file or directory\n")
        self.assert_fails(run(self.root, self.out), f"{self.root.name}: Not a project's folder\n")
        (renamed / "song.json").unlink()
        (renamed / "song.json").mkdir()
        self.assert_fails(run(renamed, self.out), "song.json: Is a directory\n")
        (renamed / "song.json").rmdir()
        os.mkfifo(renamed / "song.json")
        self.assert_fails(run(renamed, self.out), "song.json: Not a regular file\n")

    def test_audio_that_cannot_be_read(self):
        unsupported = "Choose a mono or stereo audio file up to 10 minutes long."
        for name, make, reason in (
                ("missing.wav", lambda path: None, "missing.wav: No such file or directory"),
                ("folder.wav", lambda path: path.mkdir(), "folder.wav: "),
                ("pipe.wav", os.mkfifo, "pipe.wav: "),
                ("empty.wav", lambda path: path.write_bytes(b""), "empty.wav: "),
                ("text.wav", lambda path: path.write_text("not a sound" * 99), "text.wav: "),
                ("cut.wav", lambda path: path.write_text("RIFF"), "cut.wav: "),
                ("damaged.mp3", lambda path: path.write_bytes((b"\xff\xfb\x90\x64" + bytes(400)) * 3), ""),
                ("header.wav", lambda path: write_wav(path, 1, RATE, 0), unsupported),
                ("three.wav", lambda path: write_wav(path, 3, RATE, 10), unsupported),
                ("slow.wav", lambda path: write_wav(path, 1, 7999, 10), unsupported)):
            project = Project(self.root)
            project.audio(project.track({"audio": {}}), name, 0, 4)
            make(project.folder / "audio" / name)
            self.assert_fails_with(run(project.save(), self.out), "Some audio could not be loaded: ", reason)

    def test_what_cannot_be_written_leaves_the_old_file(self):
        self.assertEqual(run("--demo", self.root / "no" / "out.wav").stderr, "out.wav: No such file or directory\n")
        self.out.write_text("old")
        for options in ([], ["--float"]):
            full = run(*options, "--demo", self.out, restore_signals=False,
                       preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000)))
            self.assertEqual((full.returncode, full.stderr), (1, "out.wav: File too large\n"))
            self.assertEqual(self.out.read_text(), "old")
            self.assert_no_strays()

    def test_an_interrupt_removes_the_unfinished_file(self):
        project = Project(self.root)
        for _ in range(20):
            project.pattern(project.track({"synth": {"_0": "pad"}}), 16, [(50, 0, 16)], 0, 3600)
        process = subprocess.Popen([TOOL, project.save(), self.out], stderr=subprocess.PIPE, text=True)
        deadline = time.monotonic() + 20
        while not any(p.suffix == ".wav" for p in self.root.iterdir()) and time.monotonic() < deadline:
            time.sleep(0.01)
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.communicate(timeout=20)[1], "The operation was cancelled.\n")
        self.assertEqual(process.returncode, 1)
        self.assertFalse(self.out.exists())
        self.assert_no_strays()


if __name__ == "__main__":
    unittest.main()
