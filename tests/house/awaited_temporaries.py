"""Finds awaited expressions with a temporary among their arguments, which GCC 12 destroys twice: name it first."""

import pathlib
import re
import sys

ROOMS = ["VelmoraCore", "Platform", "Velmora", "tools", "tests"]
TRAP = re.compile(r"co_await\s+[^;]*\((?:[^;]*)(\[[&=\w, ]*\]\s*[({]|\{|\?|std::string\(|std::function)")


def faults(root):
    for room in ROOMS:
        for path in sorted((root / room).rglob("*")):
            if path.suffix not in {".h", ".cpp"}:
                continue
            text = path.read_text()
            for match in TRAP.finditer(text):
                line = text.count("\n", 0, match.start()) + 1
                yield f"{path.relative_to(root)}:{line}: {' '.join(match.group(0).split())}"


if __name__ == "__main__":
    assert TRAP.search("co_await f(Request{1});") and TRAP.search("co_await f([x] { return x; });")
    assert not TRAP.search("co_await task; if (x) { y(); }")
    found = list(faults(pathlib.Path(sys.argv[1])))
    print("\n".join(found) or "Every awaited argument has a name.")
    sys.exit(1 if found else 0)
