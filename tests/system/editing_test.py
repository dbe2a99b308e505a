"""Users of the real program make music: one with mouse and keys, one through a screen reader."""

import copy
import json
import math
import unittest

import numpy

from desktop import Recording, await_that
from studio_case import StudioCase

PITCHES = {"Kick": 36, "Snare": 38, "Closed Hat": 42}
ACCENT, MISTAKE = ("Snare", 5), ("Kick", 12)
BEAT = [("Kick", 1), ACCENT, ("Kick", 9), MISTAKE, ("Snare", 13), ("Closed Hat", 3)]
KEYS_WIDTH, BEAT_WIDTH, ROW_HEIGHT, TOP_PITCH = 48, 160, 18, 71  # of the piano roll
LANE_BEAT, LANE_HEIGHT, KNOB_SIDE = 48, 64, 38
LOUD = 0.01  # a sample of a sound


def center(element):
    left, top, width, height = element["box"]
    return left + width // 2, top + height // 2


def cell(sound, step):
    return f"{sound}, bar 1, step {step}"


def note(pitch, start, velocity=100, duration=0.25):
    return {"pitch": pitch, "startBeat": start, "durationBeats": duration, "velocity": velocity}


def without_note_ids(song):
    song = copy.deepcopy(song)
    for pattern in song["patterns"]:
        for each in pattern["notes"]:
            each.pop("id", None)
    return song


def with_ids(values, found):
    """The expected values with the ids that the program gave."""
    return [{**value, "id": each["id"]} for value, each in zip(values, found, strict=True)]


def expected_song(found):
    """The session's song, but for the ids."""
    drums, synth = (track["id"] for track in found["tracks"])
    beat, melody = (pattern["id"] for pattern in found["patterns"])
    flat = {"delayMix": 0, "highGainDB": 0, "lowGainDB": 0, "midGainDB": 0, "reverbMix": 0}
    track = {"isMuted": False, "isSoloed": False, "pan": 0}
    hits = [note(PITCHES[hit[0]], (hit[1] - 1) / 4, 120 if hit == ACCENT else 100) for hit in BEAT if hit != MISTAKE]
    tones = [note(71, 0), note(67, 1.5), note(67, 2, duration=0.75)]
    return {
        "id": found["id"], "name": "Untitled Beat", "bpm": 128, "masterVolume": 0.9, "audioAssets": [],
        "tracks": [
            {**track, "id": drums, "name": "Drums 1", "kind": {"drums": {}}, "color": "blue",
             "selectedPatternID": beat, "volume": 0.8, "fx": {**flat, "lowGainDB": 12}},
            {**track, "id": synth, "name": "Synth 1", "kind": {"synth": {"_0": "keys"}}, "color": "orange",
             "selectedPatternID": melody, "volume": 0.3, "fx": flat}],
        "patterns": [
            {"id": beat, "trackID": drums, "name": "Pattern 1", "lengthBeats": 4,
             "notes": with_ids(hits, found["patterns"][0]["notes"])},
            {"id": melody, "trackID": synth, "name": "Pattern 1", "lengthBeats": 4,
             "notes": with_ids(tones, found["patterns"][1]["notes"])}],
        "clips": with_ids(
            [{"trackID": drums, "source": {"pattern": {"_0": beat}}, "startBeat": 0, "lengthBeats": 8},
             {"trackID": synth, "source": {"pattern": {"_0": melody}}, "startBeat": 2, "lengthBeats": 4}],
            found["clips"])}


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
        expected = expected_song(song)
        self.assertEqual(song, expected)

        project = self.desktop.folder / "expected" / song["id"]
        project.mkdir(parents=True)
        (project / "song.json").write_text(json.dumps(expected))
        sound = self.render(project)
        self.assertGreater(len(set(sound)), 200, "the render is no silence")
        self.assertEqual(self.render(self.desktop.projects / song["id"]), sound)

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

    def test_a_screen_reader_edits_the_song(self):
        expected = self.song()
        drums, chords = expected["tracks"]
        beat, melody = (pattern["notes"] for pattern in expected["patterns"])
        clips = expected["clips"]
        kick = cell("Kick", 1)
        steps = [  # of an element an action or a number, and what it makes of the song
            (kick, "Toggle", lambda: beat.pop(0)),
            (kick, "Toggle", lambda: beat.append(note(36, 0))),
            (kick, "Increase", lambda: beat[-1].update(velocity=108)),
            (kick, 64, lambda: beat[-1].update(velocity=64)),
            ("Chords, Pad track", "Press", None),
            ("Synth preset", "Increase", lambda: chords["kind"]["synth"].update(_0="lead")),
            ("Add Note", "Press", lambda: melody.append(note(60, 0))),
            ("C4, beat 1.00", "Move up a semitone", lambda: melody[-1].update(pitch=61)),
            ("C♯4, beat 1.00", "Delete", lambda: melody.pop()),
            ("Clip on Drums, beat 1", "Press", None),
            ("Start", "Increase", lambda: clips[0].update(startBeat=1)),
            ("Clip on Drums, beat 2", "Delete", lambda: clips.pop(0)),
            ("Mute Chords", "Toggle", lambda: chords.update(isMuted=True)),
            ("Unmute Chords", "Toggle", lambda: chords.update(isMuted=False)),
            ("Solo Drums", "Toggle", lambda: drums.update(isSoloed=True)),
            ("Mixer", "Press", None),
            ("Drums LOW", 6, lambda: drums["fx"].update(lowGainDB=6)),
            ("Chords pan", "Decrease", lambda: chords.update(pan=-0.02)),
            ("Master volume", 0.5, lambda: expected.update(masterVolume=0.5)),
        ]
        for name, doing, change in steps:
            if change:
                change()
            self.act(name, doing) if isinstance(doing, str) else self.set_number(name, doing)
            self.await_song(lambda song: without_note_ids(song) == without_note_ids(expected), f"{name}: {doing}")

    def test_a_screen_reader_plays_the_keyboard(self):
        self.act("Chords, Pad track", "Press")
        pitch = self.hear("MIDI note 69")
        print(f"heard {pitch} Hz")
        self.assertLess(abs(12 * math.log2(pitch / 440)), 0.5)


if __name__ == "__main__":
    unittest.main(argv=["editing_test.py"], verbosity=2)
