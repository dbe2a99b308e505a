"""Keeps the arrows between the rooms: who may include whom, read off the #include lines."""

import pathlib
import re
import sys

STANDARD = {"standard"}
QT = {"standard", "qt"}
LIBRARIES = {"standard", "qt", "system", "library"}

# One row a room, the first that fits: what its files may include besides themselves.
ROOMS = [
    ("VelmoraCore/Song", STANDARD | {"json"}, []),
    ("VelmoraCore/Instruments", STANDARD | {"lock"}, ["VelmoraCore/"]),
    ("VelmoraCore", STANDARD, ["VelmoraCore/"]),
    ("Tonic", STANDARD, []),
    ("Waveform", QT, ["Tonic/", "VelmoraCore/Render/AudioSample.h"]),
    ("Controls", QT, ["Tonic/"]),
    ("Keyboard", QT, ["Tonic/"]),
    ("Platform", LIBRARIES, ["Platform/"]),
    ("Velmora/Audio", QT, ["VelmoraCore/", "Platform/"]),
    ("Velmora/Projects", QT, ["VelmoraCore/", "Platform/"]),
    ("Velmora/Theme", QT, ["VelmoraCore/Song/Track.h"]),
    ("Velmora/Model", QT, ["VelmoraCore/", "Platform/", "Velmora/Audio/", "Velmora/Projects/"]),
    ("Velmora/Studio/Shell", QT, ["VelmoraCore/", "Velmora/Model/", "Velmora/Theme/", "Velmora/Studio/", "Tonic/",
                                  "Waveform/", "Controls/", "Keyboard/"]),
    ("Velmora/Studio", QT, ["VelmoraCore/", "Velmora/Model/", "Velmora/Theme/", "Velmora/Studio/Parts/", "Tonic/",
                            "Waveform/", "Controls/", "Keyboard/"]),
    ("Velmora/Online", QT | {"json"}, ["VelmoraCore/", "Platform/", "Velmora/Model/", "Velmora/Audio/",
                                     "Velmora/Theme/"]),
    ("Velmora", QT, ["VelmoraCore/", "Platform/", "Velmora/"]),
    ("tools", LIBRARIES, ["VelmoraCore/", "Platform/", "Velmora/Audio/", "Velmora/Projects/"]),
]

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
LIBRARY_HEADERS = ("sndfile.h", "cubeb/", "libsecret/", "sodium.h")
CPP_STANDARD = re.compile(r"^[a-z_0-9]+$")
C_STANDARD = {"pthread.h": "lock"}


def kind(header):
    if header.startswith("nlohmann/"):
        return "json"
    if header.startswith("Q"):
        return "qt"
    if header.startswith(LIBRARY_HEADERS):
        return "library"
    if header in C_STANDARD:
        return C_STANDARD[header]
    return "standard" if CPP_STANDARD.match(header) else "system"


def faults(root):
    seen = 0
    for room, kinds, rooms in ROOMS:
        for path in sorted((root / room).rglob("*")) if (root / room).is_dir() else []:
            name = path.relative_to(root).as_posix()
            first = next(r for r, _, _ in ROOMS if name.startswith(r + "/"))
            if path.suffix not in {".h", ".cpp"} or first != room:
                continue
            seen += 1
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                quote, header = match.groups()
                if quote == "<":
                    is_allowed = kind(header) in kinds and not (kind(header) == "json" and path.suffix == ".h")
                else:
                    is_allowed = header.startswith((room + "/", *rooms)) or header == path.stem + ".moc"
                if not is_allowed:
                    yield f"{name}:{number}: {room} may not include {header}"
                if first.startswith("Velmora/Studio") and first != "Velmora/Studio/Shell" and quote == '"':
                    family = "/".join(name.split("/")[:3]) + "/"
                    if header.startswith("Velmora/Studio/") and not header.startswith((family, "Velmora/Studio/Parts/")):
                        yield f"{name}:{number}: a view may not include another family's {header}"
    if seen < 40:
        yield f"only {seen} files were read: is {root} the project's root?"


if __name__ == "__main__":
    found = list(faults(pathlib.Path(sys.argv[1])))
    print("\n".join(found) or "The arrows hold.")
    sys.exit(1 if found else 0)
