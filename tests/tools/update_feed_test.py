"""Drives velmora-update-feed as whoever makes a release would: keys, a feed, what is wrong with others."""

import hashlib
import json
import pathlib
import stat
import subprocess
import sys
import tempfile
import unittest

TOOL = sys.argv.pop(1)


def run(*arguments):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, text=True, timeout=60)


class UpdateFeedTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.secret, self.feed, self.program = (self.folder / name for name in ("secret", "feed", "program"))
        self.program.write_bytes(b"program" * 100000)
        made = run("make-key", self.secret)
        self.assertEqual((made.returncode, made.stderr), (0, ""))
        self.key = made.stdout.strip()
        self.fields = {"key": self.secret, "program": self.program, "application": "com.halvenor.Velmora",
                       "channel": "stable-x86_64", "sequence": 3, "expiry": "2999-01-01T00:00:00Z", "version": "0.2.0",
                       "download": "https://velmora.halvenor.example/program",
                       "page": "https://velmora.halvenor.example/page"}

    def sign(self, **changes):
        fields = {**self.fields, **changes}
        return run("sign", *(word for name, value in fields.items() for word in (f"--{name}", value)), self.feed)

    def check(self, *more, key=None):
        return run("check", "--public-key", key or self.key, *more, self.feed)

    def assert_refused(self, result, line, code=1):
        self.assertEqual((result.returncode, result.stdout, result.stderr.splitlines()[0]), (code, "", line))
        if code == 1:
            self.assertEqual(result.stderr.count("\n"), 1)

    def test_a_feed_is_signed_and_checked(self):
        self.assertEqual(stat.S_IMODE(self.secret.stat().st_mode), 0o600)
        signed = self.sign()
        self.assertEqual((signed.returncode, signed.stdout, signed.stderr), (0, "", ""))
        said = self.check("--program", self.program)
        self.assertEqual((said.returncode, said.stderr), (0, ""))
        expected = {name: self.fields[name] for name in self.fields if name not in ("key", "program")}
        self.assertEqual(json.loads(said.stdout), {**expected, "size": 700000,
                                                   "sha256": hashlib.sha256(self.program.read_bytes()).hexdigest()})

    def test_nothing_is_overwritten_or_made_in_vain(self):
        secret = self.secret.read_text()
        self.assert_refused(run("make-key", self.secret), "secret: File exists")
        self.assertEqual(self.secret.read_text(), secret)
        for name, value, line in [("sequence", 0, 'The update information has no usable "sequence".'),
                                  ("version", "two", 'The update information has no usable "version".'),
                                  ("expiry", "tomorrow", 'The update information has no usable "expiry".'),
                                  ("page", "http://a.example/", 'The update information has no usable "page".'),
                                  ("download", "ftp://a.example/", 'The update information has no usable "download".'),
                                  ("key", self.program, "Not a key."),
                                  ("program", self.folder / "none", "none: No such file or directory")]:
            self.assert_refused(self.sign(**{name: value}), line)
            self.assertFalse(self.feed.exists(), name)

    def test_a_check_says_what_is_wrong(self):
        self.sign()
        other = run("make-key", self.folder / "other").stdout.strip()
        self.assert_refused(self.check(key=other), "The update information isn't signed as it should be.")
        self.assert_refused(self.check(key="abc"), "Not a key.")
        self.assert_refused(self.check("--program", self.feed), "feed: Not the program that the feed offers")
        self.feed.write_bytes(self.feed.read_bytes().replace(b"0.2.0", b"0.2.1"))
        self.assert_refused(self.check(), "The update information isn't signed as it should be.")
        self.sign(expiry="2001-01-01T00:00:00Z")
        self.assert_refused(self.check(), "The update information is out of date.")
        self.feed.write_bytes(b" " * 20000)
        self.assert_refused(self.check(), "The update information is too long.")

    def test_the_command_line_is_told(self):
        told = run("--help")
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertTrue(told.stdout.startswith("usage: velmora-update-feed make-key"))
        self.assert_refused(run(), "Nothing to do.", 2)
        self.assert_refused(run("publish"), "Unknown command: publish", 2)
        self.assert_refused(run("check", self.feed), "There is no --public-key.", 2)
        self.assert_refused(run("check", "--public-key", self.key), "One file has to be named.", 2)
        self.assert_refused(run("make-key", "--force", self.secret), "Unknown option 'force'.", 2)


if __name__ == "__main__":
    unittest.main()
