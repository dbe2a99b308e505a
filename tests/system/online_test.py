"""Uses the online services from the real program as a screen reader's user would: an account, a published preview, and
the way out.

usage: online_test.py VELMORA VELMORA_RENDER VELMORA_SERVICE
"""

import subprocess
import sys
import unittest

import numpy

from desktop import await_that
from studio_case import StudioCase

SERVICE = sys.argv[3]
PASSWORD = "a good password"
SILENT, LOUD = 1e-4, 0.1


class OnlineTest(StudioCase):
    def setUp(self):
        super().setUp()
        self.desktop.start_sound()
        self.start_keyring()
        service = self.desktop.spawn(SERVICE, "--port", "0", "--approve", stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                     text=True)
        settings = self.desktop.home / "config" / "Orrin" / "Velmora.conf"
        settings.parent.mkdir(parents=True)
        settings.write_text(f"[General]\nserviceEndpoint={service.stdout.readline().strip()}\n")

    def start_keyring(self):
        keyring = self.desktop.spawn("gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets",
                                     stdin=subprocess.PIPE, text=True)
        keyring.stdin.write("password")
        keyring.stdin.close()
        bus = ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
               "org.freedesktop.DBus.NameHasOwner", "string:org.freedesktop.secrets"]
        await_that(lambda: "true" in self.desktop.run(*bus), "the keyring")

    def open(self, entry):
        self.act("Project actions", "Press")
        self.act(entry, "Press")

    def make_account(self):
        self.open("Sign In…")
        self.act("Create an account", "Press")
        self.write("Username", "lovelace")
        self.write("Password", PASSWORD)
        self.write("Confirm password", PASSWORD)
        self.act("Create Account", "Press")
        self.await_name("Log out")
        self.act("Done", "Press")

    def send_profile(self):
        self.act("Your profile", "Toggle")
        self.write("Public handle", "lovelace")
        self.write("Creator name", "Ada")
        self.act("I accept the rules and want this profile to be public", "Toggle")
        self.act("Send profile for review", "Press")
        self.await_name("Profile sent for review. It will appear after approval.")

    def publish(self):
        self.act("Share", "Toggle")
        self.act("Render 20-second preview", "Press")
        self.await_name("Preview ready. Listen before you publish it.")
        self.write("Beat title", "First light")
        self.act("I made this audio or have permission to share it, and it follows the community rules", "Toggle")
        self.act("Publish preview for review", "Press")
        self.await_name("Preview sent for review. Your project stays on this device.")

    def test_a_preview_goes_from_the_song_to_the_feed(self):
        studio = self.start()
        self.make_account()
        self.open("Velmora Community")
        self.send_profile()
        self.publish()
        self.act("Beat feed", "Toggle")
        self.await_name("First light, @lovelace, 10 sec, 0 upvotes")
        recording = self.desktop.record()
        self.assertLess(numpy.abs(recording.samples()).max(initial=0), SILENT)
        self.act("Play preview", "Press")
        self.await_name("Stop preview")
        await_that(lambda: numpy.abs(recording.samples()).max() > LOUD, "the preview is heard")
        self.act("Stop preview", "Press")
        self.await_name("Play preview")
        self.assertEqual(studio.quit(), 0)

        self.start()
        self.open("Velmora Account")
        self.act("Log out", "Press")
        await_that(lambda: "Log out" not in self.read(), "the sheet closes")
        self.open("Sign In…")
        self.await_name("Sign in to your Velmora account.")


if __name__ == "__main__":
    unittest.main(argv=["online_test.py"], verbosity=2)
