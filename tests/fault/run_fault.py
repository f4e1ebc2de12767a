#!/usr/bin/env python3
"""Fault injection against the real binary: a full disk (a file-size limit
with SIGXFSZ ignored) for every kind of written file, a kill in the middle of
a large save, a reader of standard output that goes away, and too little
address space for three commands that ask for gigabytes.

    run_fault.py --kiv build/kiv [--ohne-as]

--ohne-as leaves out the address-space cases (sanitizer builds reserve more
address space than any limit that would make sense). Exit status 0 when all
hold, 1 with the list of failures.
"""
import argparse
import os
import resource
import signal
import subprocess
import sys
import tempfile
import time

ALT = b"old content\n"
fehler = []


def pruefe(bedingung, text):
    if not bedingung:
        fehler.append(text)


def lauf(kiv, verz, proc, limit=None, **kw):
    with open(os.path.join(verz, "p.kiv"), "w") as f:
        f.write(proc)

    def grenzen():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        if limit:
            resource.setrlimit(limit[0], (limit[1], limit[1]))

    return subprocess.run([kiv, "-b", "p.kiv"], cwd=verz, preexec_fn=grenzen, capture_output=True,
                          timeout=120, **kw)


def inhalt(verz, name):
    pfad = os.path.join(verz, name)
    if not os.path.exists(pfad):
        return None
    with open(pfad, "rb") as f:
        return f.read()


def reste(verz):
    return [n for n in os.listdir(verz) if ".kiv-" in n]


def begonnen(verz):
    """Whether a temporary file already holds data (it may be renamed meanwhile)."""
    for n in reste(verz):
        try:
            if os.path.getsize(os.path.join(verz, n)) > 0:
                return True
        except FileNotFoundError:
            pass
    return False


# Each writer against a disk that fills up after `platz` bytes of a file:
# the old file stays, the failure is reported, and a written image stays
# unsaved (status 1).
VOLL = [
    ("Intel", "schreibe(Intel, z, /, /, /, /, YES)", 100),
    ("Motorola", "schreibe(Motorola_S3S7, z, /, /, /, /, YES)", 100),
    ("binary", "schreibe(Binaer, z, /, /, /, /, YES)", 100),
    ("even/odd", "schreibeEvenOdd(Intel, z, z2, /, /, /, /, YES)", 100),
    ("display file", "anzeige(/, /, hex, z)", 100),
    ("display appended", "anzeige(/, /, hex, z, anhaengen)", 100),
    ("checksum file", "checksumme(/, /, /, NO, NO, 1, 2, NO, z)", 0),
    ("checksum appended", "checksumme(/, /, /, NO, NO, 1, 2, NO, z, anhaengen)", 0),
    ("comparison file", "vergleiche(/, /, /, Neu1, z)", 0),
]


def vollePlatte(kiv):
    for name, befehl, platz in VOLL:
        with tempfile.TemporaryDirectory() as verz:
            for datei in ("z", "z2"):
                with open(os.path.join(verz, datei), "wb") as f:
                    f.write(ALT)
            r = lauf(kiv, verz, "neu(/)\nsetze(0, FFF, AA)\n" + befehl + "\n", (resource.RLIMIT_FSIZE, platz))
            err = r.stderr.decode("latin-1")
            pruefe(inhalt(verz, "z") == ALT and inhalt(verz, "z2") == ALT, name + ": old file changed")
            pruefe("FILE-WRITE-ERROR" in err, name + ": no FILE-WRITE-ERROR\n" + err)
            pruefe(r.returncode == 1, "%s: status %d" % (name, r.returncode))
            pruefe(not reste(verz), name + ": temporary file left: %r" % reste(verz))
    with tempfile.TemporaryDirectory() as verz:
        for datei, text in (("in.txt", "a" * 4000), ("g.txt", "a*\n"), ("z", ALT.decode())):
            with open(os.path.join(verz, datei), "w") as f:
                f.write(text)
        r = lauf(kiv, verz, "umsetze(in.txt, DAT, ./g.txt, z)\n", (resource.RLIMIT_FSIZE, 100))
        pruefe(inhalt(verz, "z") == ALT, "umsetze: old file changed")
        pruefe(b"FILE-WRITE-ERROR" in r.stderr, "umsetze: failure not reported\n" + r.stderr.decode("latin-1"))
        pruefe(not reste(verz), "umsetze: temporary file left")


# A device is written in place, never replaced by a regular file.
def geraet(kiv):
    with tempfile.TemporaryDirectory() as verz:
        os.symlink("/dev/null", os.path.join(verz, "dn"))
        r = lauf(kiv, verz, "neu(/)\nsetze(0, F, AA)\nschreibe(Intel, dn, /, /, /, /, YES)\n"
                 "checksumme(/, /, /, NO, NO, 1, 2, NO, dn)\n")
        pruefe(r.returncode == 0, "device: status %d" % r.returncode)
        pruefe(os.path.islink(os.path.join(verz, "dn")), "device: the link was replaced")


# A save killed while it writes leaves the old file as it was.
def getoetet(kiv):
    for versuch in range(5):
        with tempfile.TemporaryDirectory() as verz:
            with open(os.path.join(verz, "big.hex"), "wb") as f:
                f.write(ALT)
            with open(os.path.join(verz, "p.kiv"), "w") as f:
                f.write("neu(/)\nsetze(0, FFFFFF, AA)\nschreibe(Intel, big.hex, /, /, /, /, YES)\n")
            p = subprocess.Popen([kiv, "-b", "p.kiv"], cwd=verz, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
            mitten = False
            while p.poll() is None and not mitten:
                mitten = begonnen(verz)
                if not mitten:
                    time.sleep(0.0005)
            # Stopped first, so that a save that ended meanwhile is not
            # taken for one killed in the middle.
            if mitten:
                p.send_signal(signal.SIGSTOP)
                mitten = begonnen(verz)
            p.kill()
            p.wait()
            if mitten:
                pruefe(inhalt(verz, "big.hex") == ALT, "killed save: old file changed")
                return
    fehler.append("killed save: the save never was caught in the middle")


# A reader that goes away must not stop a save or cut its file short.
def geschlossenerPipe(kiv):
    proc = "neu(/)\nsetze(0, 3FFFF, AA)\nschreibe(Intel, a.hex)\nschreibe(Intel, b.hex)\n"
    with tempfile.TemporaryDirectory() as verz:
        r = lauf(kiv, verz, proc)
        voll = inhalt(verz, "a.hex")
        os.remove(os.path.join(verz, "a.hex"))
        os.remove(os.path.join(verz, "b.hex"))
        with open(os.path.join(verz, "p.kiv"), "w") as f:
            f.write(proc)
        p = subprocess.Popen([kiv, "-b", "p.kiv"], cwd=verz, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL)
        p.stdout.close()
        status = p.wait(timeout=120)
        pruefe(status == 0, "closed pipe: status %d" % status)
        a = inhalt(verz, "a.hex")
        pruefe(r.returncode == 0 and a == voll, "closed pipe: a.hex cut short")
        pruefe(inhalt(verz, "b.hex") == voll, "closed pipe: the run stopped")


# Too little memory fails the command alone; the run goes on and ends with
# its statistics. A half-read new image is dropped again. A comparison over
# the whole address space reads without creating storage, so it needs no
# memory to speak of and simply succeeds.
def wenigSpeicher(kiv):
    with tempfile.TemporaryDirectory() as verz:
        r = lauf(kiv, verz, "neu(/)\nsetze(0, F, 1)\nvergleiche(0, FFFFFFFF)\n", (resource.RLIMIT_AS, 600 << 20))
        pruefe(r.returncode == 1 and b"%KIV-S-NO-OF-DIFFERENCES 0" in r.stderr,
               "vergleiche(0, FFFFFFFF) under a memory limit: status %d" % r.returncode)
    for proc in ("neu(/)\nsetze(0, FFFFFFFF, 1)\n", "oeffne(Binaer, /dev/zero)\n"):
        with tempfile.TemporaryDirectory() as verz:
            r = lauf(kiv, verz, proc + "-\nanzeigeKdoObjekte()\n", (resource.RLIMIT_AS, 600 << 20))
            err = r.stderr.decode("latin-1")
            name = proc.splitlines()[-1]
            pruefe(r.returncode in (0, 1), "%s: status %d" % (name, r.returncode))
            pruefe("%KIV-E-CMD-NOMEMORY" in err and "ANZFEHL-E" in err, name + ": no message\n" + err[-600:])
            pruefe(b"Nachfolger:" in r.stdout, name + ": the run did not go on")
            pruefe(b"<Eprom>zero" not in r.stdout, name + ": the half-read image stayed")


def main():
    a = argparse.ArgumentParser()
    a.add_argument("--kiv", required=True)
    a.add_argument("--ohne-as", action="store_true")
    args = a.parse_args()
    kiv = os.path.abspath(args.kiv)
    vollePlatte(kiv)
    geraet(kiv)
    getoetet(kiv)
    geschlossenerPipe(kiv)
    if not args.ohne_as:
        wenigSpeicher(kiv)
    for f in fehler:
        print("FAIL " + f)
    print("%d failures" % len(fehler))
    return 1 if fehler else 0


if __name__ == "__main__":
    sys.exit(main())
