"""The song that the pictures show, written below a folder of projects."""

import json
import math
import random
import uuid
import wave

BPM = 112
RATE = 22050
DRUMS = {"kick": 36, "rim": 37, "snare": 38, "clap": 39, "closed hat": 42, "low tom": 45, "open hat": 46, "perc": 47}

# A character is a sixteenth; its digit tells how hard it is hit.
BEAT = {"kick": "9...9.....9.9...", "snare": "....9.......8..3", "closed hat": "8.5.8.5.8.5.8.5.", "open hat": "..............6.",
        "rim": "...4......4.....", "perc": "......5......4.."}
FILL = {"kick": "9...9...9.......", "snare": "....9...6.7.8.9.", "closed hat": "8.5.8.5.........", "low tom": "..........8.7.6.",
        "clap": "....7.......7..."}

# Notes as pitch, start and length in beats.
CHORDS = [(pitch, 4 * bar + start, length)
          for bar, chord in enumerate([(57, 60, 64, 67), (57, 60, 65, 69), (60, 64, 67, 71), (59, 62, 67, 71)])
          for start, length in ((0, 1.5), (1.5, 0.5), (2.5, 1.25)) for pitch in chord[start == 1.5:]]
BASS = [(root + 12 * (step % 4 == 3), 4 * bar + 0.5 * step, 0.375) for bar, root in enumerate([33, 29, 36, 31]) for step in range(8)
        if step != 6]


def drum_notes(rows):
    return [(DRUMS[name], step / 4, 0.25, 14 * int(hit)) for name, row in rows.items() for step, hit in enumerate(row) if hit != "."]


def synth_notes(notes):
    return [(pitch, start, length, 70 + 13 * index % 45) for index, (pitch, start, length) in enumerate(notes)]


class Song:
    def __init__(self):
        self.numbers = random.Random(1)  # the same ids every time
        self.document = {"audioAssets": [], "bpm": BPM, "clips": [], "id": self.id(), "loop": {"startBeat": 0, "endBeat": 16},
                         "masterVolume": 0.9, "name": "Night Drive", "patterns": [], "tracks": []}

    def id(self):
        return str(uuid.UUID(int=self.numbers.getrandbits(128), version=4)).upper()

    def add_track(self, name, color, kind, volume, pan=0, patterns=(), **effects):
        fx = {"delayMix": 0, "highGainDB": 0, "lowGainDB": 0, "midGainDB": 0, "reverbMix": 0, **effects}
        track = {"id": self.id(), "name": name, "color": color, "kind": kind, "volume": volume, "pan": pan, "isMuted": False,
                 "isSoloed": False, "fx": fx}
        for title, length, notes, places in patterns:
            pattern = {"id": self.id(), "trackID": track["id"], "name": title, "lengthBeats": length,
                       "notes": [{"id": self.id(), "pitch": pitch, "startBeat": start, "durationBeats": long, "velocity": velocity}
                                 for pitch, start, long, velocity in notes]}
            self.document["patterns"].append(pattern)
            track.setdefault("selectedPatternID", pattern["id"])
            for start, long in places:
                self.add_clip(track, {"pattern": {"_0": pattern["id"]}}, start, long)
        self.document["tracks"].append(track)
        return track

    def add_clip(self, track, source, start, length):
        self.document["clips"].append({"id": self.id(), "trackID": track["id"], "source": source, "startBeat": start,
                                       "lengthBeats": length})

    def add_take(self, track, name, samples, start):
        asset = {"id": self.id(), "name": name, "fileName": name.lower() + ".wav", "sampleRate": RATE, "channelCount": 1,
                 "frameCount": len(samples)}
        self.document["audioAssets"].append(asset)
        self.add_clip(track, {"audio": {"_0": asset["id"]}}, start, len(samples) / RATE * BPM / 60)
        return asset["fileName"]


def sung_phrases():
    """Something that looks like a voice: words that swell and fade, a breath between the phrases."""
    numbers = random.Random(7)
    samples = []
    for phrase in range(3):
        for _ in range(6):
            length, level = numbers.uniform(0.16, 0.42), numbers.uniform(0.35, 0.95)
            count = int(length * RATE)
            pitch = numbers.choice((220, 247, 262, 294))
            for n in range(count):
                swell = math.sin(math.pi * n / count) ** 0.6 * (1 - 0.4 * n / count)
                tone = math.sin(2 * math.pi * pitch * n / RATE) + 0.4 * math.sin(4 * math.pi * pitch * n / RATE) + numbers.uniform(-0.3, 0.3)
                samples.append(0.55 * level * swell * tone)
            samples += [0.0] * int(numbers.uniform(0.01, 0.08) * RATE)
        samples += [0.0] * int(0.5 * RATE)
    return [max(-1.0, min(1.0, sample)) for sample in samples]


def write(projects, first):
    """Writes the song as the project to open; the track of the name `first` comes first, so that it is selected."""
    song = Song()
    song.add_track("Drums", "blue", {"drums": {}}, 0.82, highGainDB=1.5, reverbMix=0.08, patterns=[
        ("Beat", 4, drum_notes(BEAT), [(0, 12), (16, 12)]), ("Fill", 4, drum_notes(FILL), [(12, 4), (28, 4)])])
    song.add_track("Chords", "orange", {"synth": {"_0": "keys"}}, 0.66, -0.2, lowGainDB=-3, reverbMix=0.35, patterns=[
        ("Turnaround", 16, synth_notes(CHORDS), [(0, 32)])])
    song.add_track("Bass line", "red", {"synth": {"_0": "bass"}}, 0.74, lowGainDB=2, patterns=[
        ("Walk", 16, synth_notes(BASS), [(2, 14), (16, 16)])])
    voice = song.add_track("Voice", "pink", {"audio": {}}, 0.7, highGainDB=2, delayMix=0.12, reverbMix=0.25)
    samples = sung_phrases()
    file = song.add_take(voice, "Verse", samples, 4)
    song.document["tracks"].sort(key=lambda track: track["name"] != first)

    folder = projects / song.document["id"]
    (folder / "audio").mkdir(parents=True)
    (folder / "song.json").write_text(json.dumps(song.document))
    (projects / "current.txt").write_text(song.document["id"])
    with wave.open(str(folder / "audio" / file), "wb") as sound:
        sound.setnchannels(1)
        sound.setsampwidth(2)
        sound.setframerate(RATE)
        sound.writeframes(b"".join(int(32000 * sample).to_bytes(2, "little", signed=True) for sample in samples))
    return folder
