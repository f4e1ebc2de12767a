#!/usr/bin/env python3
"""Times whole kiv runs on a 16 MiB image against a peer tool for each job.

Usage: bench_process.py path/to/kiv [--runs N]
Each figure is the median of N (default 5) whole-process runs; each kiv run
writes to a file that does not exist yet. Peers come from Debian packages
(binutils, xxd, diffutils, grep, srecord); missing ones are installed with
apt-get where possible, and a row whose peer is absent is skipped. Nothing
here fails: it only prints.
"""
import filecmp
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

SIZE = 16 * 1024 * 1024
RUNS = 5


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


def srec_s3(data, path):
    """S3 records of 16 data bytes, S7 at the end."""
    out = []
    for base in range(0, len(data), 16):
        chunk = data[base:base + 16]
        rec = bytes([len(chunk) + 5]) + base.to_bytes(4, "big") + chunk
        out.append("S3%s%02X\n" % (rec.hex().upper(), (~sum(rec)) & 0xFF))
    out.append("S70500000000FA\n")
    with open(path, "w") as f:
        f.write("".join(out))


PEAK = {}  # command text -> peak resident memory in MiB of its last run


def timed(cmd, cwd, runs=RUNS, stdout=None, before=None):
    """Median wall time of `runs` runs; PEAK keeps the peak memory of the last.

    The peak is taken by /usr/bin/time where it exists: a child forked from
    this (large) Python process would otherwise inherit its high-water mark.
    `before` runs ahead of each run, untimed (to remove an output file).
    A pipe as stdout is drained by cat, as a reader at the console would.
    """
    times = []
    timer = shutil.which("time") or (os.path.exists("/usr/bin/time") and "/usr/bin/time")
    peak_file = os.path.join(cwd, ".peak")
    for _ in range(runs):
        if before:
            before()
        full = [timer, "-f", "%M", "-o", peak_file] + cmd if timer else cmd
        if stdout == "pipe":
            t = time.perf_counter()
            p = subprocess.Popen(full, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            c = subprocess.Popen(["cat"], stdin=p.stdout, stdout=subprocess.DEVNULL)
            p.stdout.close()
            c.wait()
            rc = p.wait()
            times.append(time.perf_counter() - t)
        else:
            with open(stdout, "wb") if stdout else open(os.devnull, "wb") as out:
                t = time.perf_counter()
                rc = subprocess.run(full, cwd=cwd, stdout=out, stderr=subprocess.DEVNULL).returncode
                times.append(time.perf_counter() - t)
        if timer:
            with open(peak_file) as f:
                PEAK[" ".join(cmd)] = int(f.read().split()[-1]) / 1024.0
        if rc not in (0, 1):
            return None
    return statistics.median(times)


def best(cmd, cwd, runs=3, stdout=None):
    return timed(cmd, cwd, runs, stdout)


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


PEERS = {"objcopy": "binutils", "xxd": "xxd", "cmp": "diffutils", "grep": "grep", "srec_cat": "srecord"}


def install_peers():
    missing = sorted({pkg for tool, pkg in PEERS.items() if not shutil.which(tool)})
    if not missing or not shutil.which("apt-get"):
        return
    sudo = [] if os.geteuid() == 0 else ["sudo", "-n"]
    print("installing peers:", " ".join(missing))
    quiet = dict(stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    subprocess.run(sudo + ["apt-get", "update", "-q"], **quiet)
    subprocess.run(sudo + ["apt-get", "install", "-y", "-q"] + missing, **quiet)


def kiv_job(kiv, work, lines, output=None, stdout=None):
    """Median of a kiv batch run; `output` is removed before each run."""
    with open(os.path.join(work, "p.kiv"), "w") as f:
        f.write("\n".join(lines) + "\nexit")

    def clean():
        if output and os.path.exists(os.path.join(work, output)):
            os.remove(os.path.join(work, output))
    cmd = [kiv, "-b", "p.kiv"]
    t = timed(cmd, work, stdout=stdout, before=clean)
    return t, PEAK.get(" ".join(cmd), 0.0)


def peer_job(cmd, work, stdout=None):
    if not shutil.which(cmd[0]):
        return None, 0.0
    t = timed(cmd, work, stdout=stdout)
    return t, PEAK.get(" ".join(cmd), 0.0)


def main():
    if len(sys.argv) < 2:
        print("usage: bench_process.py KIV [--runs N]")
        return 0
    global RUNS
    if "--runs" in sys.argv:
        RUNS = int(sys.argv[sys.argv.index("--runs") + 1])
    kiv = os.path.abspath(sys.argv[1])
    install_peers()
    work = tempfile.mkdtemp(prefix="kivbench-")
    try:
        rnd = random.Random(1)
        data = rnd.randbytes(SIZE)
        other = bytearray(data)
        for i in range(1000):
            other[rnd.randrange(SIZE)] ^= 0xFF
        intel_hex(data, os.path.join(work, "big.hex"))
        srec_s3(data, os.path.join(work, "big.s37"))
        with open(os.path.join(work, "big.bin"), "wb") as f:
            f.write(data)
        with open(os.path.join(work, "other.bin"), "wb") as f:
            f.write(other)
        print("16 MiB random image; Intel hex %.1f MB; median of %d whole-process runs" % (
            os.path.getsize(os.path.join(work, "big.hex")) / 1e6, RUNS))

        pattern = "01 02 03 04"
        with open(os.path.join(work, "pattern"), "wb") as f:
            f.write(bytes.fromhex(pattern.replace(" ", "")))
        jobs = [
            ("Intel hex -> binary", 0.5,
             ["oeffne(Intel, big.hex)", "schreibe(Binaer, out.bin)"], "out.bin", None,
             ["objcopy", "-I", "ihex", "-O", "binary", "big.hex", "o.bin"], None),
            ("S3 records -> binary", 0.5,
             ["oeffne(Motorola, big.s37)", "schreibe(Binaer, out.bin)"], "out.bin", None,
             ["objcopy", "-I", "srec", "-O", "binary", "big.s37", "o.bin"], None),
            ("binary -> Intel hex", 0.8,
             ["oeffne(Binaer, big.bin)", "schreibe(Intel, out.hex)"], "out.hex", None,
             ["objcopy", "-I", "binary", "-O", "ihex", "big.bin", "o.hex"], None),
            ("binary -> binary", 2.0,
             ["oeffne(Binaer, big.bin)", "schreibe(Binaer, out.bin)"], "out.bin", None,
             ["objcopy", "-I", "binary", "-O", "binary", "big.bin", "o.bin"], None),
            ("anzeige() of 16 MiB to a pipe", 1.0,
             ["oeffne(Binaer, big.bin)", "anzeige(/, /)"], None, "pipe",
             ["xxd", "big.bin"], "pipe"),
            ("vergleiche, 1,000 differences", 10.0,
             # Both list the differences to a reader. cmp must not write to
             # /dev/null: it notices, and stops at the first difference.
             ["oeffne(Binaer, other.bin)", "-", "oeffne(Binaer, big.bin)",
              "vergleiche(/, /, /, other_bin)"], None, "pipe",
             ["cmp", "-l", "big.bin", "other.bin"], "pipe"),
            ("suche of a 4-byte pattern", 3.0,
             ["oeffne(Binaer, big.bin)", "suche(\"%s\", hex)" % pattern], None, None,
             ["grep", "-c", "-a", "-F", "-f", "pattern", "big.bin"], None),
            ("load + CRC-32", 0.2,
             ["oeffne(Intel, big.hex)", "checksummeCRC()"], None, None,
             ["srec_cat", "big.hex", "-Intel", "-crc32-b-e", "0x1000000", "-crop", "0x1000000", "0x1000004",
              "-o", "crc.hex", "-Intel"], None),
        ]
        print("%-32s %9s %9s %7s %6s %9s %9s  peer" % ("job", "kiv s", "peer s", "ratio", "goal", "kiv MiB", "peer MiB"))
        for name, goal, lines, output, kout, peer, pout in jobs:
            tk, mk = kiv_job(kiv, work, lines, output, kout)
            tp, mp = peer_job(peer, work, pout)
            if tk is None:
                print("%-32s kiv failed" % name)
                continue
            if tp is None:
                print("%-32s %9.3f %9s %7s %6s %9.1f %9s  %s absent: skipped" % (name, tk, "-", "-", "-", mk, "-", peer[0]))
                continue
            print("%-32s %9.3f %9.3f %7.2f %6s %9.1f %9.1f  %s" % (
                name, tk, tp, tk / tp, "<=%g" % goal, mk, mp, peer[0]))
        translation(kiv, work)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
