#!/usr/bin/env python3
"""Checks that the users' documentation still tells the truth.

    check_doc.py commands --page doc/kiv.1 --src src
        every command of the two command tables, and every statement of the
        general help, is documented in the manual page
    check_doc.py groff --page doc/kiv.1
        the page renders without a single groff warning (status 77, which
        ctest counts as skipped, when groff is not installed)
    check_doc.py readme --kiv build/kiv --readme README.md --examples examples
        every session in the README marked <!-- check: ... --> is what the
        program prints today

Exit status 0 when all is well, 1 with the list of faults otherwise.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile


def lies(pfad, kodierung="utf-8"):
    with open(pfad, encoding=kodierung) as f:
        return f.read()


# ---------------------------------------------------------------------------
# Commands and statements

def tabellenKommandos(src):
    """Names of the commands in the command tables of the root and of an image."""
    namen = []
    for datei in ("commands/KivObjekt.cpp", "commands/KivEpromTabelle.cpp"):
        text = lies(os.path.join(src, datei), "latin-1")
        # An entry opens with the name, then the signature (a text or a constant).
        namen += re.findall(r'\{\s*"(\w+)",\s*(?:"|\w+::signatur)', text)
    # The checksum commands take their names from constants of their own.
    text = lies(os.path.join(src, "commands/ChecksumKommandos.h"), "latin-1")
    namen += re.findall(r'\w+Name\s*=\s*"(\w+)"', text)
    return namen


def hilfeAnweisungen(src):
    """The statements named in the general help of the command language."""
    text = lies(os.path.join(src, "language/CompilerHilfe.cpp"), "latin-1")
    m = re.search(r"void Compiler::hilfe\(int mitObjekt\)\s*\{(.*?)\n\}", text, re.S)
    if not m:
        return []
    namen = set()
    for quelle in m.group(1).split("\n"):
        # Adjacent literals on one source line form one help line.
        zeile = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', quelle))
        namen.update(re.findall(r"^([a-z][A-Za-z]+)\b", zeile))
        namen.update(re.findall(r"(?:bzw\. |=)([a-z][A-Za-z]+)\(", zeile))
    return sorted(namen)


def pruefeKommandos(a):
    seite = lies(a.page)
    tabelle = tabellenKommandos(a.src)
    anweisungen = hilfeAnweisungen(a.src)
    fehler = []
    if len(tabelle) < 20:
        fehler.append("only %d commands found in the tables under %s: has their form changed?"
                      % (len(tabelle), a.src))
    if len(anweisungen) < 10:
        fehler.append("only %d statements found in the general help: has its form changed?"
                      % len(anweisungen))
    ueberschriften = set(re.findall(r'^\.SS "(\w+)\(', seite, re.M))
    for n in tabelle:
        if n not in ueberschriften:
            fehler.append("command %s has no section in %s" % (n, a.page))
    fett = set()
    for zeile in seite.split("\n"):
        if re.match(r"^\.(B|BI|BR|IB|RB)\s", zeile):
            fett.update(re.findall(r"[A-Za-z]+", zeile))
        for lauf in re.findall(r"\\fB(.*?)(?:\\f[RIP]|$)", zeile):
            fett.update(re.findall(r"[A-Za-z]+", lauf))
    for n in anweisungen:
        if n not in fett:
            fehler.append("statement %s is not described in %s" % (n, a.page))
    return fehler, "%d commands and %d statements documented" % (len(tabelle), len(anweisungen))


# ---------------------------------------------------------------------------
# groff

def pruefeGroff(a):
    groff = shutil.which("groff")
    if not groff:
        print("check_doc: groff is not installed (apt-get install groff); the check is skipped")
        sys.exit(77)
    r = subprocess.run([groff, "-man", "-Tutf8", "-ww", "-z", a.page],
                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120)
    meldungen = r.stderr.decode("utf-8", "replace").strip()
    fehler = []
    if r.returncode != 0 or meldungen:
        fehler.append("groff -man -Tutf8 -ww %s:\n%s" % (a.page, meldungen or "status %d" % r.returncode))
    return fehler, "groff renders %s without warnings" % a.page


# ---------------------------------------------------------------------------
# README sessions

def sitzungen(readme):
    """(check line, block lines) for every fenced block behind a check mark."""
    zeilen = readme.split("\n")
    aus = []
    for i, z in enumerate(zeilen):
        m = re.match(r"^<!-- check: (.*) -->$", z)
        if not m:
            continue
        if i + 1 >= len(zeilen) or zeilen[i + 1] != "```":
            aus.append((m.group(1), None))
            continue
        ende = zeilen.index("```", i + 2)
        aus.append((m.group(1), zeilen[i + 2:ende]))
    return aus


def lauf(kiv, beispiele, angabe):
    """Output of one run in a scratch copy of the examples, both streams in order."""
    kiv = os.path.abspath(kiv)
    with tempfile.TemporaryDirectory() as tmp:
        if angabe == "demo":
            befehl, ort = ["sh", os.path.join(os.path.abspath(beispiele), "demo.sh"), kiv], tmp
        else:
            ordner, *argumente = angabe.split()
            kopie = os.path.join(tmp, "beispiele")
            shutil.copytree(beispiele, kopie)
            befehl, ort = [kiv] + argumente, os.path.join(kopie, ordner)
        r = subprocess.run(befehl, cwd=ort, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           stdin=subprocess.DEVNULL, timeout=120)
    return r.stdout.decode("latin-1")


def enthalten(block, ausgabe):
    """Whether the block's lines occur as consecutive output lines, trailing blanks aside."""
    b = [z.rstrip() for z in block]
    o = [z.rstrip() for z in ausgabe.split("\n")]
    return any(o[i:i + len(b)] == b for i in range(len(o) - len(b) + 1))


def pruefeReadme(a):
    fehler = []
    liste = sitzungen(lies(a.readme))
    if not liste:
        fehler.append("%s has no session marked <!-- check: ... -->" % a.readme)
    ausgaben = {}
    for angabe, block in liste:
        if block is None:
            fehler.append("the mark 'check: %s' is not followed by a fenced block" % angabe)
            continue
        if angabe not in ausgaben:
            ausgaben[angabe] = lauf(a.kiv, a.examples, angabe)
        if not enthalten(block, ausgaben[angabe]):
            fehler.append("this session of %s (check: %s) is no longer what the program prints:\n    %s"
                          % (a.readme, angabe, "\n    ".join(block[:4] + ["..."])))
    return fehler, "%d sessions of %s match the program" % (len(liste), a.readme)


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("was", choices=("commands", "groff", "readme"))
    ap.add_argument("--page")
    ap.add_argument("--src")
    ap.add_argument("--kiv")
    ap.add_argument("--readme")
    ap.add_argument("--examples")
    a = ap.parse_args()
    fehler, erfolg = {"commands": pruefeKommandos, "groff": pruefeGroff,
                      "readme": pruefeReadme}[a.was](a)
    if fehler:
        print("check_doc %s: %d fault(s)" % (a.was, len(fehler)))
        for f in fehler:
            print("  " + f)
        sys.exit(1)
    print("check_doc %s: %s" % (a.was, erfolg))


if __name__ == "__main__":
    main()
