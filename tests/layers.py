#!/usr/bin/env python3
"""Fails on any #include in src/ that points up or across the layer order

    foundation <- reporting <- language, image <- checksums, grammar <- commands <- frame

A file may include its own subsystem and any subsystem on a lower floor;
two subsystems on the same floor know nothing of each other.
Usage: layers.py path/to/src
"""
import os
import re
import sys

FLOOR = {"foundation": 0, "reporting": 1, "language": 2, "image": 2,
         "checksums": 3, "grammar": 3, "commands": 4, "frame": 5}
INCLUDE = re.compile(r'\s*#\s*include\s+"([a-z]+)/')


def violations(src):
    for root, _, files in os.walk(src):
        for name in sorted(files):
            if not name.endswith((".cpp", ".h", ".cxx")):
                continue
            path = os.path.join(root, name)
            own = os.path.relpath(path, src).split(os.sep)[0]
            if own not in FLOOR:
                yield "%s: not in any subsystem" % path
                continue
            with open(path, encoding="latin-1") as f:
                for n, line in enumerate(f, 1):
                    m = INCLUDE.match(line)
                    if not m or m.group(1) == own:
                        continue
                    other = m.group(1)
                    if other not in FLOOR:
                        yield "%s:%d includes unknown %s/" % (path, n, other)
                    elif FLOOR[other] >= FLOOR[own]:
                        yield "%s:%d: %s includes %s/, which is not below it" % (path, n, own, other)


def main():
    found = list(violations(sys.argv[1] if len(sys.argv) > 1 else "src"))
    for v in found:
        print(v)
    print("%d passed, %d failed" % (0 if found else 1, 1 if found else 0))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
