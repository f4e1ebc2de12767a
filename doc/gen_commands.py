#!/usr/bin/env python3
"""Fills the generated parts of the manual page from the program's own help.

The page marks each generated part with a pair of comment lines:

    .\\" {{hilfe NAME
    ... generated, never edited by hand ...
    .\\" }}hilfe

NAME is a command of the root or of an image, and the part is the synopsis
and argument list that `NAME ?` prints; the name `?` stands for the general
help. The program is asked for its two command lists first, so a command
that has no marked place in the page, or a marked place whose command is
gone, is an error too.

    gen_commands.py --kiv build/kiv            rewrite doc/kiv.1
    gen_commands.py --kiv build/kiv --check    fail if doc/kiv.1 is not current
"""

import argparse
import os
import re
import subprocess
import sys
import tempfile

HIER = os.path.dirname(os.path.abspath(__file__))
ANFANG = re.compile(r'^\.\\" \{\{hilfe (\S+)$')
ENDE = '.\\" }}hilfe'

# Columns of the command help: type, argument name, default.
STOPS = (10, 25, 45)


def frage(kiv, zeilen):
    """Runs the program on a procedure of the given lines; its standard output."""
    with tempfile.TemporaryDirectory() as tmp:
        proc = os.path.join(tmp, "hilfe.kiv")
        with open(proc, "w", encoding="latin-1") as f:
            f.write("".join(z + "\n" for z in zeilen))
        r = subprocess.run([os.path.abspath(kiv), "-b", proc], cwd=tmp, stdout=subprocess.PIPE,
                           stderr=subprocess.PIPE, timeout=60)
    if r.returncode != 0:
        sys.exit("gen_commands: %s ended with status %d:\n%s"
                 % (kiv, r.returncode, r.stderr.decode("latin-1")))
    return r.stdout.decode("latin-1").split("\n")


def kommandolisten(zeilen):
    """The names under each "Kommandoliste X" heading of the `?` output."""
    listen = {}
    i = 0
    while i < len(zeilen):
        m = re.match(r"^Kommandoliste (\S+)$", zeilen[i])
        i += 1
        if not m:
            continue
        namen = listen.setdefault(m.group(1), [])
        while i < len(zeilen) and re.match(r"^[A-Za-z_]\w*$", zeilen[i]):
            namen.append(zeilen[i])
            i += 1
    return listen


def allgemeineHilfe(zeilen):
    """The general help: from its first line to the line before the object name."""
    anf = zeilen.index("?                  Hilfe")
    ende = anf
    while not zeilen[ende].startswith("<Kiv>Kiv"):
        ende += 1
    return zeilen[anf:ende]


def laeufe(zeile):
    """(column, text) of each run of non-blank characters."""
    return [(m.start(), m.group()) for m in re.finditer(r"\S+", zeile)]


def argumente(block):
    """Splits the lines of `cmd ?` into (type, name, default) triples.

    The help places the three fields at fixed stops. A field that reaches
    past the next stop ends the line and its neighbour starts the next line
    at its own stop; a field that ends exactly at a stop has its neighbour
    glued to it.
    """
    felder = []          # (field index, text) in reading order
    for n, zeile in enumerate(block):
        folgend = None
        if n + 1 < len(block) and block[n + 1].strip():
            folgend = laeufe(block[n + 1])[0][0]
        i = laeufe(zeile)[0][0]
        while True:
            if i not in STOPS:
                raise ValueError("unexpected help layout: %r" % zeile)
            f = STOPS.index(i)
            if f == 2:
                felder.append((2, zeile[i:].rstrip()))
                break
            lauf = re.match(r"\S+", zeile[i:]).group()
            breite = STOPS[f + 1] - i
            if len(lauf) > breite:
                if not zeile[i + len(lauf):].strip() and folgend == STOPS[f + 1]:
                    felder.append((f, lauf))      # overflow: the neighbour starts the next line
                    break
                felder.append((f, lauf[:breite]))  # the neighbour is glued on at the stop
                i = STOPS[f + 1]
                continue
            felder.append((f, lauf))
            weiter = re.search(r"\S", zeile[i + len(lauf):])
            if not weiter:
                break
            i = i + len(lauf) + weiter.start()
    tripel = []
    for f, text in felder:
        if f == 0:
            tripel.append(["", "", ""])
        if not tripel:
            raise ValueError("argument without a type in %r" % block)
        tripel[-1][f] = text
    return [tuple(t) for t in tripel]


def hilfeBloecke(zeilen, namen):
    """Cuts the output of consecutive `cmd ?` lines into one block per name."""
    bloecke = {}
    folge = iter(namen)
    aktuell = None
    erwartet = next(folge, None)
    for z in zeilen:
        if z == erwartet:
            aktuell = bloecke.setdefault(z, [])
            erwartet = next(folge, None)
        elif aktuell is not None and z.startswith(" "):
            aktuell.append(z)
        else:
            aktuell = None
    fehlend = [n for n in namen if n not in bloecke]
    if fehlend:
        raise ValueError("no help printed for: " + ", ".join(fehlend))
    return bloecke


def troff(text):
    """Text for a troff line: escapes, and Latin-1 letters as named glyphs."""
    aus = []
    for c in text:
        if c == "\\":
            aus.append("\\e")
        elif c == "-":
            aus.append("\\-")
        elif c == "\u00dc":
            aus.append("\\(:U")
        elif c == "\u00fc":
            aus.append("\\(:u")
        elif ord(c) > 126:
            aus.append("\\[u%04X]" % ord(c))
        else:
            aus.append(c)
    s = "".join(aus)
    return "\\&" + s if s[:1] in (".", "'") else s


def kommandoTeil(name, block):
    args = argumente(block)
    kopf = "%s(%s)" % (name, ", ".join(a[1] for a in args))
    aus = ['.SS "%s"' % troff(kopf)]
    if not args:
        aus += [".PP", "No arguments."]
        return aus
    # The page is set ragged right: long enumerations leave too few blanks
    # for a justified line.
    aus += [".PD 0"]
    for typ, arg, vorgabe in args:
        aus += [".TP 25", "\\fI%s\\fR" % troff(arg),
                "%s; %s" % (troff(typ).replace(",", ",\\:"),
                            "default \\fB%s\\fR" % troff(vorgabe) if vorgabe else "empty by default")]
    aus += [".PD"]
    return aus


def allgemeinTeil(hilfe):
    aus = [".PP", ".RS 4", ".nf"]
    aus += [troff(z) if z else ".sp" for z in hilfe]
    aus += [".fi", ".RE"]
    return aus


def erzeuge(kiv):
    erste = frage(kiv, ["?", "neu(/)", "?"])
    listen = kommandolisten(erste)
    for liste in ("KivObjekt", "KivEprom"):
        if not listen.get(liste):
            sys.exit("gen_commands: the program listed no commands of %s" % liste)
    wurzel, bild = listen["KivObjekt"], listen["KivEprom"]
    zweite = frage(kiv, [n + " ?" for n in wurzel] + ["neu(/)"] + [n + " ?" for n in bild])
    bloecke = hilfeBloecke(zweite, wurzel + bild)
    teile = {"?": allgemeinTeil(allgemeineHilfe(erste))}
    for n in wurzel + bild:
        teile[n] = kommandoTeil(n, bloecke[n])
    return teile


def fuelle(seite, teile):
    """The page with every marked part replaced; errors for unmatched names."""
    aus, gesehen, fehler = [], [], []
    zeilen = seite.split("\n")
    i = 0
    while i < len(zeilen):
        m = ANFANG.match(zeilen[i])
        aus.append(zeilen[i])
        i += 1
        if not m:
            continue
        name = m.group(1)
        gesehen.append(name)
        while i < len(zeilen) and zeilen[i] != ENDE:
            i += 1
        if i == len(zeilen):
            fehler.append("part %s has no end mark" % name)
            break
        if name in teile:
            aus += teile[name]
        else:
            fehler.append("the page has a part for %s, which the program does not know" % name)
    for n in teile:
        if n not in gesehen:
            fehler.append("the program's %s has no part in the page" % n)
    doppelt = {n for n in gesehen if gesehen.count(n) > 1}
    fehler += ["part %s appears twice" % n for n in sorted(doppelt)]
    return "\n".join(aus), fehler


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("--kiv", required=True, help="the program to ask")
    ap.add_argument("--page", default=os.path.join(HIER, "kiv.1"))
    ap.add_argument("--check", action="store_true", help="compare only")
    a = ap.parse_args()
    with open(a.page, encoding="utf-8") as f:
        alt = f.read()
    neu, fehler = fuelle(alt, erzeuge(a.kiv))
    if fehler:
        sys.exit("gen_commands: " + "\n  ".join(fehler))
    if a.check:
        if neu != alt:
            sys.exit("gen_commands: %s is not what the program's help gives; "
                     "run doc/gen_commands.py --kiv <kiv> and review the change" % a.page)
        print("gen_commands: %s matches the program's help" % a.page)
        return
    if neu != alt:
        with open(a.page, "w", encoding="utf-8") as f:
            f.write(neu)
        print("gen_commands: %s updated" % a.page)


if __name__ == "__main__":
    main()
