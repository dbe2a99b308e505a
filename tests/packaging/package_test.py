"""Packs the built programs as a Debian package, unpacks it below a folder and looks at it as a desktop would."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SOURCE, BUILD, VERSION = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
ID = "com.halvenor.Velmora"
PROGRAMS = ["velmora", "velmora-render"]
NEEDS = ["libqt6core6", "libqt6dbus6", "libqt6gui6", "libqt6network6", "libqt6widgets6", "libsndfile1", "libcubeb0",
         "fonts-quicksand", "fonts-jetbrains-mono", "fonts-material-design-icons-iconfont"]


def run(*command, **environment):
    done = subprocess.run(list(map(str, command)), env={**os.environ, **environment}, capture_output=True, text=True)
    assert done.returncode == 0, f"{command}: {done.stdout}{done.stderr}"
    return done.stdout


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="velmora-package-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        os.umask(0o022)
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder)
        architecture = run("dpkg", "--print-architecture").strip()
        cls.package = cls.folder / f"velmora_{VERSION}_{architecture}.deb"
        cls.root = cls.folder / "root"
        run("dpkg-deb", "-x", cls.package, cls.root)
        cls.share = cls.root / "usr" / "share"

    def test_is_what_install_puts_in_place_readable_for_all(self):
        installed = self.folder / "installed"
        run("cmake", "--install", BUILD, "--prefix", "/usr", DESTDIR=str(installed))
        names = [sorted(path.relative_to(top) for path in top.rglob("*")) for top in (installed, self.root)]
        self.assertEqual(*names)
        for path in self.root.rglob("*"):
            self.assertEqual(path.stat().st_mode & 0o444, 0o444, path)
            self.assertEqual(path.stat().st_mode & 0o111 != 0, path.is_dir() or path.name in PROGRAMS, path)
        for name in ("doc/velmora/ThirdPartyNotices.txt", *(f"man/man1/{program}.1" for program in PROGRAMS)):
            self.assertTrue((self.share / name).is_file(), name)

    def test_tells_what_it_needs(self):
        depends = run("dpkg-deb", "-f", self.package, "Depends")
        self.assertLessEqual(set(NEEDS), set(re.findall(r"[a-z0-9.+-]+(?= \(|,|$)", depends.strip())))

    def test_is_known_to_the_desktop(self):
        entry_file = self.share / "applications" / f"{ID}.desktop"
        run("desktop-file-validate", "--warn-kde", entry_file)
        run("appstreamcli", "validate", "--no-net", self.share / "metainfo" / f"{ID}.metainfo.xml")
        self.assertLessEqual({"Exec=velmora", f"Icon={ID}"}, set(entry_file.read_text().splitlines()))
        icons = list((self.share / "icons/hicolor").glob(f"*/apps/{ID}.*"))
        self.assertEqual(len(icons), 8)
        for icon in icons:
            content, folder = icon.read_bytes(), icon.parents[1].name
            width = int.from_bytes(content[16:20], "big")
            self.assertTrue(b"<svg" in content if folder == "scalable" else folder == f"{width}x{width}", icon)

    def test_runs_from_where_it_stands(self):
        for program in PROGRAMS:
            path = self.root / "usr" / "bin" / program
            self.assertNotRegex(run("readelf", "-d", path), "R(UN)?PATH")
            self.assertNotIn(os.fsencode(SOURCE), path.read_bytes())
        self.assertEqual(run(self.root / "usr/bin/velmora", "--version", QT_QPA_PLATFORM="offscreen"),
                         f"Velmora {VERSION}\n")
        run(self.root / "usr/bin/velmora-render", "--seconds", "0.1", "--demo", self.folder / "demo.wav")
        self.assertGreater((self.folder / "demo.wav").stat().st_size, 44)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
