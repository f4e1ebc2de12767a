#!/usr/bin/env python3
"""Times whole kiv runs on a 16 MiB image and compares them with objcopy.

Usage: bench_process.py path/to/kiv
Each figure is the best of three runs. Nothing here fails: it only prints.
"""
import filecmp
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

SIZE = 16 * 1024 * 1024


def intel_hex(data, path):
    """16 data bytes a line, type 04 records at every 64 KiB."""
    out = []
    for base in range(0, len(data), 16):
        if base % 0x10000 == 0:
            hi = base >> 16
            rec = bytes([2, 0, 0, 4, hi >> 8, hi & 0xFF])
            out.append(":%s%02X\n" % (rec.hex().upper(), (-sum(rec)) & 0xFF))
        chunk = data[base:base + 16]
        rec = bytes([len(chunk), (base >> 8) & 0xFF, base & 0xFF, 0]) + chunk
        out.append(":%s%02X\n" % (rec.hex().upper(), (-sum(rec)) & 0xFF))
    out.append(":00000001FF\n")
    with open(path, "w") as f:
        f.write("".join(out))


PEAK = {}  # command text -> peak resident memory in MiB of its last run


def best(cmd, cwd, runs=3, stdout=None):
    """Best wall time of `runs` runs; PEAK keeps the peak memory of the last.

    The peak is taken by /usr/bin/time where it exists: a child forked from
    this (large) Python process would otherwise inherit its high-water mark.
    """
    times = []
    timer = shutil.which("time") or (os.path.exists("/usr/bin/time") and "/usr/bin/time")
    peak_file = os.path.join(cwd, ".peak")
    for _ in range(runs):
        full = [timer, "-f", "%M", "-o", peak_file] + cmd if timer else cmd
        with open(stdout, "wb") if stdout else open(os.devnull, "wb") as out:
            t = time.perf_counter()
            r = subprocess.run(full, cwd=cwd, stdout=out, stderr=subprocess.DEVNULL)
            times.append(time.perf_counter() - t)
        if timer:
            with open(peak_file) as f:
                PEAK[" ".join(cmd)] = int(f.read().split()[-1]) / 1024.0
        if r.returncode not in (0, 1):
            return None
    return min(times)


def records(path, size):
    """Short "address=value" records, as a patch list has them."""
    rnd = random.Random(2)
    lines = []
    total = 0
    while total < size:
        line = "%X=%02X\n" % (rnd.randrange(1 << 24), rnd.randrange(256))
        lines.append(line)
        total += len(line)
    with open(path, "w") as f:
        f.write("".join(lines))


GRAMMAR = ("<r>*#<r>=!<adr>.{a}=<wert>.{w}\\n%setze\\({a}, /, {w}\\)\\n"
           "#<adr>=[0-9A-F]+#<wert>=[0-9A-F][0-9A-F]\n")
SED = r"s/^([0-9A-F]+)=([0-9A-F]{2})$/setze(\1, \/, \2)/"


def translation(kiv, work):
    """umsetze on 5 and 50 MB of records against sed -E, with peak memory."""
    with open(os.path.join(work, "r.gram"), "w") as f:
        f.write(GRAMMAR)
    for mb in (5, 50):
        src = os.path.join(work, "rec%d.txt" % mb)
        records(src, mb * 1000 * 1000)
        with open(os.path.join(work, "t.kiv"), "w") as f:
            f.write("umsetze(rec%d.txt, DAT, ./r.gram, rec%d.kiv)\nexit" % (mb, mb))
        cmd = [kiv, "-b", "t.kiv"]
        tk = best(cmd, work, runs=2)
        peak = PEAK.get(" ".join(cmd), 0)
        ts = best(["sed", "-E", SED, "rec%d.txt" % mb], work, runs=2, stdout=os.path.join(work, "sed%d.kiv" % mb))
        same = filecmp.cmp(os.path.join(work, "rec%d.kiv" % mb), os.path.join(work, "sed%d.kiv" % mb), shallow=False)
        if tk is None or ts is None:
            print("umsetze %d MB: failed" % mb)
            continue
        print("%-52s %8.3f s   peak %.1f MiB   sed -E %.3f s   ratio %.2f   same output: %s" % (
            "kiv: umsetze of %d MB of records" % mb, tk, peak, ts, tk / ts, "yes" if same else "NO"))


def kiv_run(kiv, work, lines, runs=3):
    with open(os.path.join(work, "p.kiv"), "w") as f:
        f.write("\n".join(lines) + "\nexit")
    return best([kiv, "-b", "p.kiv"], work, runs)


def show(name, t, base=None, base_name=""):
    if t is None:
        print("%-52s failed" % name)
        return
    line = "%-52s %8.3f s" % (name, t)
    if base:
        line += "   ratio to %s %.2f" % (base_name, t / base)
    print(line)


def main():
    if len(sys.argv) < 2:
        print("usage: bench_process.py KIV")
        return 0
    kiv = os.path.abspath(sys.argv[1])
    work = tempfile.mkdtemp(prefix="kivbench-")
    try:
        rnd = random.Random(1)
        data = bytes(rnd.getrandbits(8) for _ in range(SIZE))
        intel_hex(data, os.path.join(work, "big.hex"))
        other = bytearray(data)
        for i in range(1000):
            other[rnd.randrange(SIZE)] ^= 0xFF
        intel_hex(bytes(other), os.path.join(work, "other.hex"))
        print("16 MiB image, Intel hex %.1f MB" % (os.path.getsize(os.path.join(work, "big.hex")) / 1e6))

        load = kiv_run(kiv, work, ["oeffne(Intel, big.hex)"])
        show("kiv: load Intel hex", load)
        print("%-52s %8.1f MiB" % ("kiv: peak memory of that run", PEAK[kiv + " -b p.kiv"]))
        if shutil.which("objcopy"):
            ob = best(["objcopy", "-I", "ihex", "-O", "binary", "big.hex", "o.bin"], work)
            os_ = best(["objcopy", "-I", "ihex", "-O", "srec", "big.hex", "o.srec"], work)
            show("objcopy -I ihex -O binary", ob)
            show("objcopy -I ihex -O srec", os_)
        else:
            ob = os_ = None
            print("objcopy not found: no ratios")
        kb = kiv_run(kiv, work, ["oeffne(Intel, big.hex)", "schreibe(Binaer, out.bin, /, /, /, /, YES)"])
        show("kiv: Intel hex -> binary", kb, ob, "objcopy")
        ks = kiv_run(kiv, work, ["oeffne(Intel, big.hex)", "schreibe(Motorola_S3S7, out.s37, /, /, /, /, YES)"])
        show("kiv: Intel hex -> Motorola S3", ks, os_, "objcopy")

        ops = [
            ("vergleiche, 1000 differing bytes", ["oeffne(Intel, other.hex)", "-", "oeffne(Intel, big.hex)",
                                                  "vergleiche(/, /, /, other_hex, cmp.txt)"]),
            ("suche of a 4-byte pattern", ["oeffne(Intel, big.hex)", "suche(\"01 02 03 04\", hex)"]),
            ("fuelle of 16 MiB with gaps", ["oeffne(Intel, big.hex)", "loescheBereich(0)",
                                            "definiereBereich(0, FFFFFF)", "fuelle(0, FFFFFF, 5A)"]),
            ("kopiere of 8 MiB", ["oeffne(Intel, big.hex)", "kopiere(0, 7FFFFF, 800000)"]),
            ("anzeige of 1 MiB to a file", ["oeffne(Intel, big.hex)", "anzeige(0, FFFFF, hex, dump.txt, neueDatei)"]),
        ]
        for name, lines in ops:
            t = kiv_run(kiv, work, lines, runs=2)
            if t is not None and load:
                print("%-52s %8.3f s   beyond the load %.3f s" % ("kiv: " + name, t, max(0.0, t - load)))
            else:
                show("kiv: " + name, t)
        translation(kiv, work)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
