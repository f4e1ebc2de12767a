#!/usr/bin/env python3
"""End-to-end runner: each case file drives the real kiv binary once.

A case file (tests/e2e/cases/**/*.case) looks like this:

    subject: one line that names what the case proves
    args: -b proc.kiv p1 "p 2"        (shell-like quoting; optional)
    status: 0                         (expected exit status; default 0)
    --- file proc.kiv                 (an input file, written before the run)
    setze(1000, /, FF)
    --- stdin
    ...
    --- stdout                        (byte-exact expectation, see below)
    --- stderr
    --- kiv.log
    --- expect-file out.hex           (a file the run must leave behind)
    --- stdout contains               (a required fragment; may repeat)
    --- kiv.log contains
    --- file:out.hex contains
    --- expect-absent out.hex         (a file the run must not leave)
    --- run status=1 -x proc.kiv      (one more run, see below)

What every run prints is implied, so that a case states only what it is
about: the banner in front of stdout, the start line in front of stderr and
the message statistics behind it, with the counts of the boxed messages the
case expects. A body that itself begins with the banner or the start line,
or contains the statistics, states its own. "(whole)" on a stdout or stderr
header turns the implied parts off. kiv.log must equal stderr unless the
case has a kiv.log section of its own. In stderr and kiv.log bodies and
fragments, the line " " that follows every command echo ("%KIV-S-CMD 7: ...")
is implied too: write the echo line alone.

A case may run the program more than once: a "run" section, whose header
holds the arguments (and "status=N" when the status differs), starts a new
run in a fresh directory. It keeps every section of the run before (inputs
and expectations alike) except those it states again by name.

Section bodies are the lines up to the next section; every line ends with a
newline. Add "(noeol)" to a section header to drop the final newline, and
"(hex)" to give a body as hexadecimal bytes (white space ignored). A body line
that itself starts with "--- " is written as "\\--- ".

Outcomes: PASS, FAIL (with a diff), and NORESULT when the case itself is
broken (unreadable, unknown section), so a bad fixture never looks like a
product fault. The last line reads "N passed, N failed".
"""
import argparse
import difflib
import os
import re
import shlex
import subprocess
import sys
import tempfile

TIMEOUT = 60


class CaseError(Exception):
    pass


def parse_case(path):
    with open(path, "rb") as f:
        raw = f.read()
    head = {}
    sections = []
    cur = None
    for line in raw.split(b"\n")[:-1] if raw.endswith(b"\n") else raw.split(b"\n"):
        if line.startswith(b"--- "):
            header = line[4:].decode("latin-1").strip()
            flags = set()
            while header.endswith(("(noeol)", "(hex)", "(whole)")):
                flags.add(header[header.rindex("("):])
                header = header[: header.rindex("(")].strip()
            cur = [header, flags, []]
            sections.append(cur)
            continue
        if cur is None:
            text = line.decode("latin-1")
            if not text.strip() or text.startswith("#"):
                continue
            if ":" not in text:
                raise CaseError("header line without colon: %r" % text)
            k, v = text.split(":", 1)
            head[k.strip()] = v.strip()
            continue
        if line.startswith(b"\\--- "):
            line = line[1:]
        cur[2].append(line)
    out = []
    for name, flags, lines in sections:
        if "(hex)" in flags:
            body = bytes.fromhex("".join(l.decode("ascii") for l in lines).replace(" ", "").replace("\t", ""))
        else:
            body = b"".join(l + b"\n" for l in lines)
            if "(noeol)" in flags and body.endswith(b"\n"):
                body = body[:-1]
        if name.split(" ")[0] in ("stderr", "kiv.log"):
            body = ECHO.sub(b"\\1 \n", body)
        if name in ("stdout", "stderr") and "(whole)" not in flags:
            body = framed(name, body)
        out.append((name, body))
    return head, out


VERSION = b"V1.11-2"
BANNER = b"\nKIV++ Version " + VERSION + b"\n----------------------------------- \n\n"
START = b"VOR-S-KIV-STARTED " + VERSION + b" \n"
LEVELS = b"FEWI"
ECHO = re.compile(rb"(?m)(^%KIV-S-CMD \d+: .*\n)")


def statistics(body):
    """The closing statistics for the boxed messages in `body`."""
    counts = {l: 0 for l in LEVELS}
    for line in body.split(b"\n"):
        if line.startswith(b"| %KIV-") and len(line) > 8 and line[7] in LEVELS and line[8:9] == b"-":
            counts[line[7]] += 1
    out = b"%KIV-S-FEHLSTAT   Fehlerstatistik: \n"
    for l in LEVELS:
        out += b"%%KIV-S-ANZFEHL-%c  %d \n" % (l, counts[l])
    return out


def framed(name, body):
    """A stdout or stderr body with what every run prints around it."""
    if name == "stdout":
        return body if body.startswith(b"\nKIV++ Version ") else BANNER + body
    if not body.startswith(b"VOR-S-KIV-STARTED"):
        body = START + body
    if b"%KIV-S-FEHLSTAT" not in body:
        body += statistics(body)
    return body


def show(data):
    return data.decode("latin-1").splitlines(keepends=True)


def diff(label, want, got):
    lines = difflib.unified_diff(show(want), show(got), "expected " + label, "actual " + label, n=3)
    text = "".join(l if l.endswith("\n") else l + "\n\\ no newline\n" for l in lines)
    return text.replace("\t", "\\t")


def runs(head, sections):
    """The runs of a case: each "run" section starts one more, which keeps
    every section of the run before except those it states again."""
    run = [shlex.split(head.get("args", "")), int(head.get("status", "0")), []]
    out = [run]
    for name, body in sections:
        if name == "run" or name.startswith("run "):
            words = shlex.split(name[4:])
            status = run[1]
            if words and words[0].startswith("status="):
                status = int(words.pop(0)[7:])
            run = [words, status, []]
            out.append(run)
        else:
            run[2].append((name, body))
    for before, run in zip(out, out[1:]):
        names = {n for n, _ in run[2]}
        run[2] = [(n, b) for n, b in before[2] if n not in names] + run[2]
    return out


def run_case(kiv, path):
    head, sections = parse_case(path)
    all_runs = runs(head, sections)
    problems = []
    for i, (args, want_status, own) in enumerate(all_runs):
        found = run_once(kiv, args, want_status, own)
        if found and len(all_runs) > 1:
            found.insert(0, "run %d (%s):" % (i + 1, shlex.join(args)))
        problems += found
    return problems


def run_once(kiv, args, want_status, sections):
    stdin = b""
    problems = []
    with tempfile.TemporaryDirectory(prefix="kive2e-") as work:
        checks = []
        own_log = any(n == "kiv.log" or n.startswith("kiv.log ") for n, _ in sections)
        for name, body in sections:
            if name.startswith("file "):
                target = os.path.join(work, name[5:].strip())
                os.makedirs(os.path.dirname(target), exist_ok=True)
                with open(target, "wb") as f:
                    f.write(body)
            elif name == "stdin":
                stdin = body
            elif name in ("stdout", "stderr", "kiv.log") or name.startswith(("expect-file ", "expect-absent ")) \
                    or name.endswith(" contains"):
                checks.append((name, body))
            elif name.startswith("readonly "):
                os.chmod(os.path.join(work, name[9:].strip()), 0o444)
            else:
                raise CaseError("unknown section %r" % name)
        try:
            proc = subprocess.run([kiv] + args, input=stdin, cwd=work, capture_output=True, timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            return ["timed out after %d s" % TIMEOUT]

        def content(what):
            if what == "stdout":
                return proc.stdout
            if what == "stderr":
                return proc.stderr
            name = what[5:] if what.startswith("file:") else what
            p = os.path.join(work, name)
            if not os.path.exists(p):
                return None
            with open(p, "rb") as f:
                return f.read()

        if not own_log and content("kiv.log") != proc.stderr:
            log = content("kiv.log")
            problems.append("kiv.log differs from stderr" if log is not None else "kiv.log: missing")
            if log is not None:
                problems.append(diff("kiv.log (as stderr)", proc.stderr, log))
        if proc.returncode != want_status:
            problems.append("exit status %d, expected %d" % (proc.returncode, want_status))
        for name, body in checks:
            if name.endswith(" contains"):
                what = name[: -len(" contains")].strip()
                got = content(what)
                if got is None:
                    problems.append("%s: missing" % what)
                elif body.rstrip(b"\n") not in got:
                    problems.append("%s lacks the fragment:\n%s\n--- %s was:\n%s" % (
                        what, body.decode("latin-1"), what, got.decode("latin-1")))
            elif name.startswith("expect-absent "):
                if content(name[14:].strip()) is not None:
                    problems.append("file %s exists but must not" % name[14:].strip())
            else:
                what = name[12:].strip() if name.startswith("expect-file ") else name
                got = content(what)
                if got is None:
                    problems.append("%s: missing" % what)
                elif got != body:
                    problems.append(diff(what, body, got))
    return problems


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--kiv", required=True)
    ap.add_argument("--cases", required=True)
    ap.add_argument("filter", nargs="*", help="run only cases whose path contains one of these")
    a = ap.parse_args()
    kiv = os.path.abspath(a.kiv)
    files = []
    for root, _, names in os.walk(a.cases):
        files += [os.path.join(root, n) for n in names if n.endswith(".case")]
    files.sort()
    if a.filter:
        files = [f for f in files if any(s in f for s in a.filter)]
    passed = failed = noresult = 0
    for path in files:
        rel = os.path.relpath(path, a.cases)
        try:
            problems = run_case(kiv, path)
        except (CaseError, ValueError, OSError) as e:
            noresult += 1
            print("NORESULT %s: %s" % (rel, e))
            continue
        if problems:
            failed += 1
            print("FAIL %s" % rel)
            for p in problems:
                print("  " + p.replace("\n", "\n  "))
        else:
            passed += 1
            print("PASS %s" % rel)
    if noresult:
        print("%d cases gave no result (broken case files)" % noresult)
    print("%d passed, %d failed" % (passed, failed + noresult))
    return 0 if failed == 0 and noresult == 0 and files else 1


if __name__ == "__main__":
    sys.exit(main())
