"""Code built for wide vectors must not leak: a symbol that the linker may share with other files, defined where wide
instructions are allowed, could replace the plain one and stop older processors."""

import re
import subprocess
import sys

library, wide_file = sys.argv[1:]
# Lanes of 32 bytes in the mangled name; or no code at all, but the address of the exception tables' handler.
OWN = re.compile(r"Li32E|Dv8_f|Dv4_d|^DW\.ref\.")

listing = subprocess.run(["nm", "--defined-only", library], capture_output=True, text=True, check=True).stdout
members = re.split(r"\n(?=\S+\.o:\n)", "\n" + listing)
wide = [m for m in members if m.strip().startswith(wide_file)]
shared = [line.split()[-1] for m in wide for line in m.splitlines() if re.search(r" [WVu] ", line)]
leaks = [name for name in shared if not OWN.search(name)]
if not wide:
    print(f"{wide_file} isn't in {library}")
print("\n".join(leaks) or f"{len(shared)} shared symbols, all of wide lanes.")
sys.exit(1 if leaks or not wide else 0)
