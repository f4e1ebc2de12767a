#!/usr/bin/env python3
"""The prompt as a person meets it: kiv under a pseudo-terminal.

Types at the program as a user would (arrow keys, Tab, Ctrl-C) and checks
what the terminal receives. Waits for text rather than for time.

    terminal_test.py --kiv build/kiv --examples examples [--editor ON|OFF]

Exit status 77 (skipped) when the program was built without line editing.
"""
import argparse
import os
import pty
import select
import shutil
import sys
import tempfile
import termios
import time

WARTEN = 20.0   # seconds for any expected text; a slow shared machine


class Sitzung:
    def __init__(self, kiv, verzeichnis, umgebung):
        self.puffer = b""
        self.pos = 0
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.chdir(verzeichnis)
            os.execve(kiv, [kiv], umgebung)

    def lies(self, frist):
        r, _, _ = select.select([self.fd], [], [], max(0.0, frist))
        if not r:
            return False
        try:
            daten = os.read(self.fd, 65536)
        except OSError:
            daten = b""
        if not daten:
            raise EOFError
        self.puffer += daten
        return True

    def erwarte(self, text, was):
        """Waits for `text` behind what was matched before."""
        ende = time.monotonic() + WARTEN
        while True:
            i = self.puffer.find(text, self.pos)
            if i >= 0:
                self.pos = i + len(text)
                return
            try:
                if not self.lies(ende - time.monotonic()) and time.monotonic() >= ende:
                    raise AssertionError
            except (EOFError, AssertionError):
                raise AssertionError("%s: %r not seen; the terminal got:\n%r"
                                     % (was, text, self.puffer[self.pos:][-600:]))

    def tippe(self, text):
        """Types once the editor reads: the library shows its prompt before
        it takes the terminal out of echo mode, and keys typed in between
        would be echoed twice."""
        ende = time.monotonic() + WARTEN
        while termios.tcgetattr(self.fd)[3] & termios.ECHO:
            if time.monotonic() >= ende:
                raise AssertionError("the editor never took the terminal; it got:\n%r" % self.puffer[-600:])
            try:
                self.lies(0.01)
            except EOFError:
                raise AssertionError("kiv ended early; the terminal got:\n%r" % self.puffer[-600:])
        os.write(self.fd, text)

    def ende(self):
        """Waits for the program to end; gives its exit status."""
        frist = time.monotonic() + WARTEN
        while time.monotonic() < frist:
            try:
                self.lies(0.2)
            except EOFError:
                pass
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                return os.waitstatus_to_exitcode(status)
        os.kill(self.pid, 9)
        os.waitpid(self.pid, 0)
        raise AssertionError("kiv did not end; the terminal got:\n%r" % self.puffer[-600:])


def umgebung(tmp, **mehr):
    u = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "TERM": "xterm", "HOME": tmp}
    u.update(mehr)
    return u


def editieren_und_vervollstaendigen(kiv, tmp):
    """UTF-8 terminal: history, editing, completion, Ctrl-C, the filter."""
    zustand = os.path.join(tmp, "zustand")
    s = Sitzung(kiv, tmp, umgebung(tmp, LANG="C.UTF-8", XDG_STATE_HOME=zustand))
    s.erwarte(b"<Kiv>Kiv> ", "first prompt")
    # A half-typed line with a completed enumeration value, then Ctrl-C.
    s.tippe(b"oeffne(Mot")
    s.erwarte(b"Mot", "echo")
    s.tippe(b"\t")
    s.erwarte(b"orola", "oeffne(Mot<Tab> completes the file type")
    s.tippe(b"\x03")
    s.erwarte(b"<Kiv>Kiv> ", "a new prompt after Ctrl-C")
    s.tippe(b"oeffne(,firmware.hex)\r")
    s.erwarte(b"<Eprom>firmware_hex> ", "the image's prompt")
    # Recall with the up arrow, edit with the left arrow and backspace.
    s.tippe(b"setze(0, /, 41)\r")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt after setze")
    s.tippe(b"\x1b[A\x1b[D\x7f\x7f42\r")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt after the edited line")
    # Command name and enumeration value by Tab; Latin-1 0xC4 as UTF-8 and
    # a C1 control byte as a point.
    s.tippe(b"setze(1, /, C4)\r")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt")
    # A continuation line gets the prescribed prefix.
    s.tippe(b"setze(2, /, \\\r")
    s.erwarte(b"_<Eprom>firmware_hex> ", "continuation prompt")
    s.tippe(b"85)\r")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt")
    # A typed umlaut reaches the program as its Latin-1 byte C4.
    s.tippe('suche("\u00c4", ascii)\r'.encode("utf-8"))
    s.erwarte(b"[00001]", "the typed umlaut found at 1")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt")
    s.tippe(b"anz\t")
    s.erwarte(b"eige", "anz<Tab> completes to anzeige")
    s.tippe(b"(0, 2, asc\t")
    s.erwarte(b"ii", "asc<Tab> completes to ascii")
    s.tippe(b")\r")
    s.erwarte(b"= B\xc3\x84.\r\n", "the edited setze wrote 42; C4 and 85 shown for a UTF-8 terminal")
    # Help text in UTF-8; a line with a leading blank stays out of the history.
    s.tippe(b" ?\r")
    s.erwarte("\u00dcberpr\u00fcfen".encode("utf-8"), "help in UTF-8")
    s.erwarte(b"<Eprom>firmware_hex> ", "prompt after the help")
    # An image name as argument, from the root.
    s.tippe(b"-\r")
    s.erwarte(b"<Kiv>Kiv> ", "root prompt")
    s.tippe(b"schliesse(firm\t")
    s.erwarte(b"ware_hex", "schliesse(firm<Tab> completes the image name")
    s.tippe(b", YES)\r")
    s.erwarte(b"<Kiv>Kiv> ", "prompt after schliesse")
    s.tippe(b"\x04")   # Ctrl-D on an empty line: end of input
    status = s.ende()
    assert status == 0, "exit status %d after Ctrl-D; the terminal got:\n%r" % (status, s.puffer[-1500:])
    with open(os.path.join(zustand, "kiv", "history"), encoding="latin-1") as f:
        historie = f.read()
    for zeile in ("setze(0,\\040/,\\04042)", "oeffne(,firmware.hex)"):
        assert zeile in historie, "history lacks %r:\n%s" % (zeile, historie)
    assert "oeffne(Mot" not in historie, "the dropped line is in the history"
    assert "\\040?" not in historie and "\n?\n" not in historie, "a line with a leading blank is in the history"


def latin1_und_historie_ohne_ort(kiv, tmp):
    """C locale: the prescribed Latin-1 bytes; an unwritable history warns once."""
    sperre = os.path.join(tmp, "keinVerzeichnis")
    with open(sperre, "w") as f:
        f.write("a file where the history directory should be\n")
    s = Sitzung(kiv, tmp, umgebung(tmp, LANG="C", LC_ALL="C", XDG_STATE_HOME=sperre))
    s.erwarte(b"<Kiv>Kiv> ", "first prompt")
    s.tippe(b"?\r")
    s.erwarte(b"KIV-HISTORY-NOTSAVED", "a warning for the history file")
    s.erwarte(b"\xdcberpr\xfcfen", "help in Latin-1")
    s.erwarte(b"<Kiv>Kiv> ", "prompt")
    s.tippe(b"anzeigeImFehlerfall()\r")
    s.erwarte(b"<Kiv>Kiv> ", "prompt")
    s.tippe(b"exit\r")
    status = s.ende()
    assert status == 0, "exit status %d; the terminal got:\n%r" % (status, s.puffer[-1500:])
    assert s.puffer.count(b"KIV-HISTORY-NOTSAVED") == 1, "the history warning came more than once"


def main():
    a = argparse.ArgumentParser()
    a.add_argument("--kiv", required=True)
    a.add_argument("--examples", required=True)
    a.add_argument("--editor", default="ON")
    o = a.parse_args()
    if o.editor.upper() not in ("ON", "TRUE", "1"):
        print("kiv was built without line editing: skipped")
        return 77
    kiv = os.path.abspath(o.kiv)
    fehler = 0
    for fall in (editieren_und_vervollstaendigen, latin1_und_historie_ohne_ort):
        tmp = tempfile.mkdtemp(prefix="kiv-terminal-")
        try:
            shutil.copy(os.path.join(o.examples, "firmware.hex"), tmp)
            fall(kiv, tmp)
            print("PASS", fall.__name__)
        except AssertionError as e:
            fehler = 1
            print("FAIL", fall.__name__ + ":", e)
        finally:
            shutil.rmtree(tmp, ignore_errors=True)
    return fehler


if __name__ == "__main__":
    sys.exit(main())
