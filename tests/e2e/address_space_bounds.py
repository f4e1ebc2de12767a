#!/usr/bin/env python3
"""Images whose few bytes lie far apart in the address space: each run must
stay within a small time and memory bound and still give the full listing.

Reads across the untouched middle once created storage for it (gigabytes,
minutes). The bounds are generous on purpose; they catch that behaviour,
not a slow machine. Usage: address_space_bounds.py KIV [--no-memory-limit]
(sanitizer builds reserve far more address space than they use).
"""
import os
import resource
import subprocess
import sys
import tempfile
import time

SECONDS = 5
ADDRESS_SPACE = 512 << 20   # virtual; resident memory is checked below
RESIDENT_KIB = 32 << 10

CASES = [
    ("records high, then low", {
        "two.s37": "S315FFF00100000102030405060708090A0B0C0D0E0F82\n"
                   "S31500000000000102030405060708090A0B0C0D0E0F72\n"
                   "S70500000000FA\n",
        "p.kiv": "oeffne(Motorola, two.s37)\n"},
     ["[00000 .. 0000f] -> 1\n[00010 .. fff000ff] -> 0\n[fff00100 .. fff0010f] -> 1\n",
      "NOT-OCCUPIED-BYTES\n|   4293918960 \n"]),
    ("both ends of the address space", {
        "p.kiv": "neu(/)\nsetze(FFFFFFFE,/,1)\nsetze(0,/,1)\npruefeMehrfachbelegung()\n"},
     ["[00000 .. 00000] -> 1\n[00001 .. fffffffd] -> 0\n[fffffffe .. fffffffe] -> 1\n",
      "NOT-OCCUPIED-BYTES\n|   4294967293 \n"]),
]


def main():
    kiv = os.path.abspath(sys.argv[1])
    limit = "--no-memory-limit" not in sys.argv
    failed = 0
    for name, files, expected in CASES:
        with tempfile.TemporaryDirectory(prefix="kivbound-") as work:
            for fname, text in files.items():
                with open(os.path.join(work, fname), "w") as f:
                    f.write(text)

            def bound():
                if limit:
                    resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))

            start = time.monotonic()
            try:
                proc = subprocess.run([kiv, "-b", "p.kiv"], cwd=work, capture_output=True,
                                      timeout=SECONDS, preexec_fn=bound)
            except subprocess.TimeoutExpired:
                print(f"FAIL {name}: more than {SECONDS} s")
                failed += 1
                continue
            took = time.monotonic() - start
            out = proc.stdout.decode("latin-1") + proc.stderr.decode("latin-1")
            problems = [f"missing {e!r}" for e in expected if e not in out]
            if "bad_alloc" in out or proc.returncode < 0:
                problems.append(f"died (status {proc.returncode})")
            rss = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
            if limit and rss > RESIDENT_KIB:
                problems.append(f"peak resident memory {rss} KiB")
            print(f"{'FAIL' if problems else 'PASS'} {name}: {took:.2f} s, {rss} KiB peak so far")
            for p in problems:
                print("   ", p)
            failed += bool(problems)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
