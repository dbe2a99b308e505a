"""A user records: the take is what the microphone heard, the computer stays awake, and no crash loses a take."""

import signal
import subprocess
import sys
import unittest

import gi
import numpy

from desktop import await_that
from studio_case import StudioCase

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

RATE = 44100
PORTAL = """<node><interface name="org.freedesktop.portal.Inhibit"><method name="Inhibit">
  <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="a{sv}" direction="in"/>
  <arg type="o" direction="out"/></method></interface>
  <interface name="org.freedesktop.portal.Request"><method name="Close"/></interface></node>"""


class Portal:
    """The part of a desktop portal that keeps the computer awake."""

    def __init__(self, address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        inhibit, request = Gio.DBusNodeInfo.new_for_xml(PORTAL).interfaces
        self.bus.register_object("/org/freedesktop/portal/desktop", inhibit, self._inhibit)
        self.bus.register_object("/org/freedesktop/portal/desktop/request/one", request, self._close)
        Gio.bus_own_name_on_connection(self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE)
        self.held = None

    def _inhibit(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        _window, flags, options = arguments.unpack()
        self.held = (flags, options["reason"])
        answer = GLib.Variant("(o)", ("/org/freedesktop/portal/desktop/request/one",))
        invocation.return_value(answer)

    def _close(self, _bus, _sender, _path, _interface, _method, _arguments, invocation):
        self.held = None
        invocation.return_value(None)

    def await_held(self, held):
        def look():
            while GLib.MainContext.default().iteration(False):
                pass
            return self.held == held
        await_that(look, f"asked of the portal: {held}")


def sound_of(path):
    """What another program reads from the file, as samples at 44100 Hz."""
    raw = subprocess.run(["sox", str(path), "-t", "f32", "-c", "1", "-"], check=True, capture_output=True).stdout
    return numpy.frombuffer(raw, "<f4")


def pitch_of(samples):
    spectrum = numpy.abs(numpy.fft.rfft(samples * numpy.hanning(len(samples))))
    return numpy.argmax(spectrum) * RATE / len(samples)


class RecordingTest(StudioCase):
    def setUp(self):
        super().setUp()
        self.takes = self.desktop.folder / "takes"
        self.takes.mkdir()
        self.desktop.environment["TMPDIR"] = str(self.takes)
        self.desktop.start_sound()
        # the microphone hears a tone for as long as the test runs
        tone = self.desktop.folder / "tone.wav"
        subprocess.run(["sox", "-n", "-r", str(RATE), "-c", "1", str(tone), "synth", "120", "sine", "441", "vol", "0.5"],
                       check=True)
        self.desktop.run("pactl", "load-module", "module-null-sink", "sink_name=microphone", "rate=48000")
        self.desktop.run("pactl", "set-default-sink", "studio")
        self.desktop.run("pactl", "set-default-source", "microphone.monitor")
        self.desktop.spawn("paplay", "-d", "microphone", str(tone))

    def start_taking(self):
        studio = self.start()
        self.await_name("Audio engine running")
        self.act("Record microphone", "Press")
        take = await_that(lambda: next(self.takes.glob("*.caf"), None), "the take's file")
        return studio, take

    def recordings(self):
        """The recorded assets of the project on the disk, and the beats of their clips."""
        song = self.song()
        beats = {clip["source"]["audio"]["_0"]: clip["startBeat"] for clip in song["clips"] if "audio" in clip["source"]}
        return [(asset, beats[asset["id"]]) for asset in song["audioAssets"] if asset["name"] == "Recording"]

    def asset_file(self, asset):
        return self.desktop.projects / self.song()["id"] / "audio" / asset["fileName"]

    def assert_tone(self, samples, seconds):
        self.assertGreater(len(samples) / RATE, seconds)
        for second in range(int(seconds)):
            self.assertAlmostEqual(pitch_of(samples[second * RATE:(second + 1) * RATE]), 441, delta=1)

    def test_a_take_becomes_a_clip_and_the_computer_stays_awake(self):
        portal = Portal(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        studio, take = self.start_taking()
        portal.await_held((4, "Recording"))
        await_that(lambda: take.stat().st_size > 3 * RATE * 4, "three seconds of sound")
        self.act("Stop recording", "Press")
        portal.await_held(None)
        await_that(self.recordings, "the project has the take")
        (asset, _beat), = self.recordings()
        self.assert_tone(sound_of(self.asset_file(asset)), 3)
        await_that(lambda: not list(self.takes.iterdir()), "nothing is left of the take")
        self.assertEqual(studio.quit(), 0)

    def test_the_next_start_offers_the_take_of_a_killed_process(self):
        studio, take = self.start_taking()
        await_that(lambda: take.stat().st_size > 4 * RATE * 4, "four seconds of sound")
        written = take.stat().st_size / 4 / RATE
        self.assertLess(studio.quit(signal.SIGKILL), 0)
        samples = sound_of(take)
        print("of %.2f s in the file %.2f s are in its header" % (written, len(samples) / RATE))
        self.assert_tone(samples, written - 1)
        self.assertEqual(take.stat().st_mode & 0o777, 0o600)

        again = self.start()
        self.await_name("Your recorded take is waiting to be saved.")
        self.assertTrue(take.exists())
        self.assertEqual(again.quit(signal.SIGKILL), -signal.SIGKILL)  # unasked nothing is done to it
        last = self.start()
        self.act("Retry Save", "Press")
        await_that(self.recordings, "the project has the take")
        (asset, beat), = self.recordings()
        self.assertEqual(beat, 0)
        self.assertTrue(numpy.array_equal(sound_of(self.asset_file(asset)), samples))
        await_that(lambda: not list(self.takes.iterdir()), "nothing is left of the take")
        self.assertEqual(last.quit(), 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
