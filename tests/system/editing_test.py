"""Users of the real program make music: one with mouse and keys, one through a screen reader."""

import itertools
import json
import math
import re
import unittest
import wave

import numpy

from desktop import Recording, await_that
from studio_case import StudioCase

PITCHES = {"Kick": 36, "Snare": 38, "Closed Hat": 42}
ACCENT, MISTAKE = ("Snare", 5), ("Kick", 12)
BEAT = [("Kick", 1), ACCENT, ("Kick", 9), MISTAKE, ("Snare", 13), ("Closed Hat", 3)]
KEYS_WIDTH, BEAT_WIDTH, ROW_HEIGHT, TOP_PITCH = 48, 160, 18, 71  # of the piano roll
LANE_BEAT, LANE_HEIGHT, KNOB_SIDE = 48, 64, 38
LOUD = 0.01  # a sample of a sound
note_numbers = itertools.count(1000)


def center(element):
    left, top, width, height = element["box"]
    return left + width // 2, top + height // 2


def cell(sound, step):
    return f"{sound}, bar 1, step {step}"


def some_id(number):
    return f"00000000-0000-0000-0000-{number:012}"


def note(pitch, start, velocity=100, duration=0.25):
    return {"id": some_id(next(note_numbers)), "pitch": pitch, "startBeat": start, "durationBeats": duration,
            "velocity": velocity}


def but_for_ids(song):
    """The song with its ids numbered in the order of their appearance."""
    numbers = {}
    text = re.sub(r"[0-9A-F-]{36}", lambda found: numbers.setdefault(found[0], f"#{len(numbers)}"),
                  json.dumps(song, sort_keys=True))
    return json.loads(text)


def new_track(number, name, kind, color, pattern, **mix):
    flat = {"delayMix": 0, "highGainDB": 0, "lowGainDB": 0, "midGainDB": 0, "reverbMix": 0}
    return {"id": some_id(number), "name": name, "kind": kind, "color": color, "selectedPatternID": some_id(pattern),
            "volume": 0.8, "pan": 0, "isMuted": False, "isSoloed": False, "fx": flat, **mix}


def new_pattern(number, track, *notes):
    return {"id": some_id(number), "trackID": some_id(track), "name": "Pattern 1", "lengthBeats": 4,
            "notes": list(notes)}


def new_clip(number, track, pattern, start, length=4):
    return {"id": some_id(number), "trackID": some_id(track), "source": {"pattern": {"_0": some_id(pattern)}},
            "startBeat": start, "lengthBeats": length}


def new_song(name, **parts):
    return {"id": some_id(0), "name": name, "bpm": 128, "masterVolume": 0.9, "audioAssets": [], "tracks": [],
            "patterns": [], "clips": [], **parts}


def song_by_hand():
    hits = [note(PITCHES[hit[0]], (hit[1] - 1) / 4, 120 if hit == ACCENT else 100) for hit in BEAT if hit != MISTAKE]
    tones = [note(71, 0), note(67, 1.5), note(67, 2, duration=0.75)]
    drums = new_track(1, "Drums 1", {"drums": {}}, "blue", 100)
    drums["fx"]["lowGainDB"] = 12
    return new_song("Untitled Beat",
                    tracks=[drums, new_track(2, "Synth 1", {"synth": {"_0": "keys"}}, "orange", 200, volume=0.3)],
                    patterns=[new_pattern(100, 1, *hits), new_pattern(200, 2, *tones)],
                    clips=[new_clip(11, 1, 100, 0, 8), new_clip(12, 2, 200, 2)])


class EditingTest(StudioCase):
    def setUp(self):
        super().setUp()
        self.desktop.start_sound()
        self.studio = self.start()
        self.await_name("Audio engine running")
        self.await_song(lambda song: song["name"] == "Demo", "the demo is the first project")

    def settled(self, name):
        """The visible elements once the one of the name is among them and all of them stand still."""
        seen = [None, None]

        def stands_still():
            elements = self.read()
            seen[:] = seen[1], {each: element["box"] for each, element in elements.items()}
            return name in elements and seen[0] == seen[1] and elements
        return await_that(stands_still, f"{name} stands still")

    def add_track(self, row):
        self.studio.click(center(self.settled("Add track")["Add track"]))
        self.studio.press(*["Down"] * row, "Return")

    def make_beat(self):
        cells = self.settled(cell("Kick", 1))
        for hit in BEAT:
            self.studio.click(center(cells[cell(*hit)]))
        x, y = center(cells[cell(*ACCENT)])
        self.studio.pointer((x, y))
        bubble = x - 15, y - 44, 30, 20  # over the pressed cell
        before = self.studio.pixels(*bubble)
        self.studio.pointer("mousedown", "1")
        await_that(lambda: self.studio.pixels(*bubble) != before, "the held cell shows its velocity")
        self.studio.pointer((x, y - 20), "mouseup", "1")
        self.studio.click(center(cells[cell(*MISTAKE)]))

    def make_melody(self):
        def at(pitch, beat):
            left, top = roll["box"][:2]
            return left + KEYS_WIDTH + round(BEAT_WIDTH * beat), top + round(ROW_HEIGHT * (TOP_PITCH - pitch + 0.5))
        roll = self.settled("Piano roll")["Piano roll"]
        self.studio.click(at(71, 0.1))
        self.await_name("Note velocity")
        roll = self.settled("Piano roll")["Piano roll"]  # under the note's own controls
        for place in (at(69, 1.1), at(67, 2.1), at(70, 3.1)):
            self.studio.click(place)
        self.studio.press("Delete")
        self.studio.drag(at(69, 1.1), BEAT_WIDTH // 2, 2 * ROW_HEIGHT)
        self.studio.drag(at(67, 2.22), BEAT_WIDTH // 2, 0)

    def arrange(self):
        lanes = self.settled("Arrangement")["Arrangement"]

        def at(lane, beat):
            left, top = lanes["box"][:2]
            return left + round(LANE_BEAT * beat), top + round(LANE_HEIGHT * (lane + 0.5))
        self.studio.click(at(0, 0.5))
        self.studio.click(at(1, 4.5))
        self.await_name("Clip on Synth 1, beat 5")
        lanes = self.settled("Arrangement")["Arrangement"]
        self.studio.drag(at(0, 3.9), 4 * LANE_BEAT, 0)
        self.studio.drag(at(1, 5), -2 * LANE_BEAT, 0)

    def turn_knobs(self):
        self.studio.press("ctrl+alt+3")
        knobs = self.settled("Drums 1 LOW")
        for name, down in (("Drums 1 LOW", -KNOB_SIDE // 2), ("Synth 1 volume", KNOB_SIDE // 2)):
            self.studio.drag(center(knobs[name]), 0, down)

    def test_mouse_and_keys_make_a_song_from_an_empty_project(self):
        self.studio.press("ctrl+n")
        await_that(lambda: self.read()["Rename project"]["description"] == "Untitled Beat", "the new project is open")
        self.studio.press("ctrl+shift+Delete")
        self.await_song(lambda song: song["name"] == "Untitled Beat" and not song["tracks"], "the project is empty")
        self.add_track(1)
        self.make_beat()
        self.add_track(6)
        self.make_melody()
        self.arrange()
        self.turn_knobs()
        self.await_song(lambda song: song["tracks"][1]["volume"] < 0.8, "the last change is saved")
        song = self.song()
        self.assertEqual(but_for_ids(song), but_for_ids(song_by_hand()))
        sound = self.render_song(song_by_hand())
        self.assertGreater(len(set(sound)), 200, "the render is no silence")
        self.assertEqual(self.render(self.desktop.projects / song["id"]), sound)

    def render_song(self, song):
        project = self.desktop.folder / "expected" / song["id"]
        project.mkdir(parents=True)
        (project / "song.json").write_text(json.dumps(song))
        return self.render(project)

    def hear(self, key):
        """The pitch in Hz of what is heard once the key is pressed, and not before."""
        recording = self.desktop.record()
        silent = int(recording.seconds() * Recording.RATE)
        self.act(key, "Press")
        await_that(lambda: numpy.abs(recording.samples()).max() > LOUD, f"{key} sounds")
        recording.await_seconds(0.5)
        samples = recording.finish()
        onset = int(numpy.argmax(numpy.abs(samples) > LOUD))
        self.assertGreater(onset, silent)
        tone = samples[onset:onset + Recording.RATE // 5]
        return int(numpy.argmax(numpy.abs(numpy.fft.rfft(tone * numpy.hanning(len(tone)), Recording.RATE))))

    def await_expected(self, expected, what):
        try:
            self.await_song(lambda song: but_for_ids(song) == but_for_ids(expected), what)
        except AssertionError:
            self.assertEqual(but_for_ids(self.song()), but_for_ids(expected), what)

    def follow(self, steps, expected):
        """Does each step: of an element an action or a number, and what it makes of the song."""
        for name, doing, *change in steps:
            for each in change:
                each()
            self.act(name, doing) if isinstance(doing, str) else self.set_number(name, doing)
            if change:
                self.await_expected(expected, f"{name}: {doing}")

    def test_a_screen_reader_makes_a_song_from_nothing(self):
        expected = new_song("By Ear")
        tracks, patterns, clips = (expected[part] for part in ("tracks", "patterns", "clips"))
        self.follow([("File", "ShowMenu"), ("New Project", "Press")], expected)
        await_that(lambda: self.read()["Rename project"]["description"] == "Untitled Beat", "the new project is open")
        self.act("Rename project", "Press")
        self.write("Project name", "By Ear")
        self.follow([("Rename", "Press"), ("Track", "ShowMenu"), ("Delete Track", "Press", lambda: None)], expected)

        drums = new_track(1, "Drums 1", {"drums": {}}, "blue", 100)
        hits = new_pattern(100, 1)
        beat = hits["notes"]
        snare = cell("Snare", 9)
        self.follow([
            ("Add track", "Press"),
            ("Drums", "Press", lambda: (tracks.append(drums), patterns.append(hits))),
            (cell("Kick", 5), "Toggle", lambda: beat.append(note(36, 1))),
            (cell("Kick", 12), "Toggle", lambda: beat.append(note(36, 2.75))),
            (snare, "Toggle", lambda: beat.append(note(38, 2))),
            (snare, "Increase", lambda: beat[-1].update(velocity=108)),
            (snare, 64, lambda: beat[-1].update(velocity=64)),
            (cell("Kick", 12), "Toggle", lambda: beat.pop(1)),
        ], expected)

        synth = new_track(2, "Synth 1", {"synth": {"_0": "keys"}}, "orange", 200)
        melody = new_pattern(200, 2)
        tones = melody["notes"]
        self.follow([
            ("Add track", "Press"),
            ("Keys", "Press", lambda: (tracks.append(synth), patterns.append(melody))),
            ("Synth preset", "Decrease", lambda: synth["kind"]["synth"].update(_0="lead")),
            ("Add Note", "Press", lambda: tones.append(note(60, 0))),
            ("C4, beat 1.00", "Delete", lambda: tones.pop()),
            ("Add Note", "Press", lambda: tones.append(note(60, 0))),
            ("C4, beat 1.00", "Move up a semitone", lambda: tones[0].update(pitch=61)),
            ("C♯4, beat 1.00", "Move later", lambda: tones[0].update(startBeat=0.25)),
            ("C♯4, beat 1.25", "Move later", lambda: tones[0].update(startBeat=0.5)),
            ("Lengthen", "Press", lambda: tones[0].update(durationBeats=0.5)),
            ("Note velocity", 90, lambda: tones[0].update(velocity=90)),
            ("Add Note", "Press", lambda: tones.append(note(60, 0))),
            ("Pitch", 67, lambda: tones[1].update(pitch=67)),
        ], expected)

        bass = new_track(3, "Synth 2", {"synth": {"_0": "bass"}}, "red", 300)
        line = new_pattern(300, 3)
        self.follow([
            ("Add track", "Press"),
            ("Bass", "Press", lambda: (tracks.append(bass), patterns.append(line))),
            ("Add Note", "Press", lambda: line["notes"].append(note(60, 0))),
            ("Place Pattern", "Press", lambda: clips.append(new_clip(13, 3, 300, 0))),
            ("Mute Synth 2", "Toggle", lambda: bass.update(isMuted=True)),
            ("Drums 1, Drums track", "Press"),
            ("Place Pattern", "Press", lambda: clips.append(new_clip(11, 1, 100, 0))),
            ("Beats", 8, lambda: clips[1].update(lengthBeats=8)),
            ("Synth 1, Lead track", "Press"),
            ("Timeline position", 6),
            ("Place Pattern", "Press", lambda: clips.append(new_clip(12, 2, 200, 6))),
            ("Start", "Decrease", lambda: clips[2].update(startBeat=5)),
            ("Place Pattern", "Press", lambda: clips.append(new_clip(14, 2, 200, 6))),
            ("Clip on Synth 1, beat 7", "Delete", lambda: clips.pop()),
            ("Loop", "Press"),
            ("End beat", 8),
            ("Start beat", 4, lambda: expected.update(loop={"startBeat": 4, "endBeat": 8})),
        ], expected)
        self.studio.press("Escape")

        self.follow([
            ("Mixer", "Press"),
            ("Drums 1 LOW", 6, lambda: drums["fx"].update(lowGainDB=6)),
            ("Synth 1 DELAY", 0.5, lambda: synth["fx"].update(delayMix=0.5)),
            ("Synth 1 REVERB", 0.25, lambda: synth["fx"].update(reverbMix=0.25)),
            ("Synth 1 volume", 0.5, lambda: synth.update(volume=0.5)),
            ("Synth 1 pan", -0.5, lambda: synth.update(pan=-0.5)),
            ("Solo Drums 1", "Toggle", lambda: drums.update(isSoloed=True)),
            ("Solo Drums 1", "Toggle", lambda: drums.update(isSoloed=False)),
            ("Master volume", 0.75, lambda: expected.update(masterVolume=0.75)),
        ], expected)
        self.assert_export(expected)

    def assert_export(self, expected):
        exported = self.desktop.folder / "By Ear.wav"
        self.follow([("Project actions", "Press"), ("Export WAV", "Press")], expected)
        self.write("File name:", str(exported))
        self.act("Save", "Press")
        await_that(exported.exists, "the exported file")
        sound = exported.read_bytes()
        self.assertEqual(sound, self.render_song(expected))

        with wave.open(str(exported)) as file:
            rate, width = file.getframerate(), file.getnchannels()
            samples = numpy.frombuffer(file.readframes(file.getnframes()), "<i2").reshape(-1, width)
        frames = int(60 / expected["bpm"] * rate)  # of a beat
        self.assertEqual(numpy.abs(samples[:frames]).max(), 0, "what is muted is silent")
        for beat in (1, 2, 5, 5.5, 6):
            start = round(beat * frames)
            self.assertGreater(numpy.abs(samples[start:start + frames // 4]).max(), LOUD * 2 ** 15, f"beat {beat}")

    def test_a_screen_reader_plays_the_keyboard(self):
        self.act("Chords, Pad track", "Press")
        pitch = self.hear("MIDI note 69")
        print(f"heard {pitch} Hz")
        self.assertLess(abs(12 * math.log2(pitch / 440)), 0.5)


if __name__ == "__main__":
    unittest.main(argv=["editing_test.py"], verbosity=2)
