#!/usr/bin/env python3
"""Plant single faults in src/ and see whether the test suite notices.

With a fixed seed the same sample of faults is drawn every time, so two runs
on different test suites (before and after a change to the tests) can be
compared fault by fault. The sample is spread over the subsystems in
proportion to their size (non-blank lines of their .cpp files).

For each fault: write the changed file, rebuild incrementally, run ctest
(stopping at the first failure) under a timeout and a file-size limit, and
put the file back. A fault that does not compile is replaced by the next draw
of the same subsystem; it does not count.

Operators: relational flip, arithmetic swap, constant +-1, && / || swap,
dropped negation, a statement dropped, a return value replaced by a default.
Comments, string and character literals, preprocessor lines and everything
at file scope (declarations, signatures, tables) are left alone.

    tools/mutate.py [--sample 150] [--seed 1] [--build build-mutate]
    tools/mutate.py --list            # show the sample, run nothing
    tools/mutate.py --rerun R.json [--survivors]
                                      # the faults of an earlier run again
"""
import argparse
import json
import os
import random
import re
import resource
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SUBSYSTEMS = ["foundation", "reporting", "language", "image", "commands",
              "checksums", "grammar", "frame"]


def code_mask(text):
    """One bool per character: True where the character is code, False in
    comments, string and character literals and preprocessor lines."""
    mask = [True] * len(text)
    i, n = 0, len(text)
    line_start = True
    while i < n:
        c = text[i]
        if line_start and c == "#":
            j = text.find("\n", i)
            j = n if j < 0 else j
            # A preprocessor line may continue with a backslash.
            while j > 0 and text[j - 1] == "\\" and j < n:
                k = text.find("\n", j + 1)
                j = n if k < 0 else k
            for k in range(i, j):
                mask[k] = False
            i = j
            continue
        if c == "\n":
            line_start = True
            i += 1
            continue
        if c not in " \t":
            line_start = False
        if text.startswith("//", i):
            j = text.find("\n", i)
            j = n if j < 0 else j
            for k in range(i, j):
                mask[k] = False
            i = j
        elif text.startswith("/*", i):
            j = text.find("*/", i + 2)
            j = n if j < 0 else j + 2
            for k in range(i, j):
                mask[k] = False
            i = j
        elif c == 'R' and text.startswith('R"', i) and (i == 0 or not (text[i - 1].isalnum() or text[i - 1] == "_")):
            m = re.match(r'R"([^(\s]*)\(', text[i:])
            if not m:
                i += 1
                continue
            end = text.find(")" + m.group(1) + '"', i)
            j = n if end < 0 else end + len(m.group(1)) + 2
            for k in range(i, j):
                mask[k] = False
            i = j
        elif c in "\"'":
            # A digit separator such as 0x1'0000 is not a character literal.
            if c == "'" and i > 0 and text[i - 1].isalnum() and i + 1 < n and text[i + 1].isalnum():
                i += 1
                continue
            j = i + 1
            while j < n and text[j] != c and text[j] != "\n":
                j += 2 if text[j] == "\\" else 1
            j = min(j + 1, n)
            for k in range(i, j):
                mask[k] = False
            i = j
        else:
            i += 1
    return mask


def brace_depths(text, mask):
    """Brace depth at every character, counting only braces in code, and
    whether the innermost enclosing brace opens a function-like body (after
    a ')' or 'else'/'do'/'try') rather than a class, namespace or table."""
    depth = [0] * len(text)
    in_body = [False] * len(text)
    stack = []
    d = 0
    for i, c in enumerate(text):
        if mask[i] and c == "{":
            before = text[max(0, i - 200):i].rstrip()
            # Strip trailing qualifiers between ')' and '{'.
            before = re.sub(r"(\bconst\b|\bnoexcept\b|\boverride\b|\bfinal\b|->\s*[\w:<>&*, ]+|\bmutable\b|\s)+$", "", before)
            body = bool(before) and (before.endswith(")") or re.search(r"\b(else|do|try)$", before) is not None
                                     or (stack and stack[-1] and before.endswith((";", "{", "}", ":"))))
            stack.append(body)
            d += 1
        elif mask[i] and c == "}":
            if stack:
                stack.pop()
            d = max(0, d - 1)
        depth[i] = d
        in_body[i] = bool(stack) and stack[-1]
    return depth, in_body


RELATIONAL = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
ARITH = {"+": "-", "-": "+", "*": "/", "/": "*"}

OPERATOR_PATTERNS = [
    ("relational", re.compile(r"(?<=\s)(<=|>=|==|!=|<|>)(?=\s)"), lambda m: RELATIONAL[m.group(1)]),
    ("arithmetic", re.compile(r"(?<=\s)([-+*/])(?=\s)"), lambda m: ARITH[m.group(1)]),
    ("logical", re.compile(r"(?<=\s)(&&|\|\|)(?=\s)"), lambda m: "||" if m.group(1) == "&&" else "&&"),
    ("negation", re.compile(r"(?<![\w)\]!=<>])(!)(?=[\w(*])"), lambda m: ""),
]
CONSTANT = re.compile(r"(?<![\w.])(0[xX][0-9A-Fa-f']+|\d[\d']*)([uUlL]*)(?![\w.])")


def mutants_of(path):
    """All candidate faults of one file: (offset, length, replacement, kind, line)."""
    text = open(path, encoding="latin-1").read()
    mask = code_mask(text)
    depth, in_body = brace_depths(text, mask)
    out = []

    def ok(a, b):
        return all(mask[a:b]) and depth[a] > 0 and in_body[a]

    def line_of(pos):
        return text.count("\n", 0, pos) + 1

    for kind, pat, rep in OPERATOR_PATTERNS:
        for m in pat.finditer(text):
            a, b = m.start(1), m.end(1)
            if not ok(a, b):
                continue
            ln = text[text.rfind("\n", 0, a) + 1:text.find("\n", a)]
            if kind in ("relational", "arithmetic") and re.search(r"\btemplate\b|<<|>>|static_cast|std::", ln):
                # Angle brackets and streams make operator spotting unreliable.
                if kind == "relational" and m.group(1) in ("<", ">"):
                    continue
            out.append((a, b - a, rep(m), kind, line_of(a)))
    for m in CONSTANT.finditer(text):
        a, b = m.start(1), m.end(1)
        if not ok(a, b):
            continue
        lit = m.group(1).replace("'", "")
        val = int(lit, 16) if lit.lower().startswith("0x") else int(lit, 10 if lit == "0" or not lit.startswith("0") else 8)
        new = val + 1 if val == 0 or random_sign(a) else val - 1
        rep = (hex(new) if lit.lower().startswith("0x") else str(new))
        out.append((a, b - a, rep, "constant", line_of(a)))
    # Statements: whole lines that are one expression statement or a return.
    pos = 0
    for ln in text.split("\n"):
        a = pos
        pos += len(ln) + 1
        s = ln.strip()
        if not s or a >= len(text) or not ok(a + len(ln) - len(ln.lstrip()), a + len(ln)):
            continue
        if not s.endswith(";") or s.count(";") != 1:
            continue
        start = a + len(ln) - len(ln.lstrip())
        if s.startswith("return ") and s != "return 0;":
            out.append((start, len(s), "return {};", "return", line_of(start)))
        elif re.match(r"^[\w:.\->\[\]]+(\(|\s*[-+*/|&]?=\s)", s) and not re.match(
                r"^(const|auto|static|unsigned|int|char|bool|long|short|double|float|std::|String\b|size_t)\b", s) \
                and not re.match(r"^\w[\w:<>]*\s+[*&]?\w+\s*[=({;]", s):
            out.append((start, len(s), ";", "statement", line_of(start)))
    return text, out


def random_sign(offset):
    return offset % 2 == 0


def subsystem_of(path):
    rel = os.path.relpath(path, os.path.join(ROOT, "src"))
    return rel.split(os.sep)[0]


def nonblank(path):
    with open(path, encoding="latin-1") as f:
        return sum(1 for ln in f if ln.strip())


def plan(sample, seed):
    files = {s: [] for s in SUBSYSTEMS}
    for d, _, names in os.walk(os.path.join(ROOT, "src")):
        for nm in sorted(names):
            if nm.endswith((".cpp", ".cxx")):
                p = os.path.join(d, nm)
                s = subsystem_of(p)
                if s in files:
                    files[s].append(p)
    sizes = {s: sum(nonblank(p) for p in ps) for s, ps in files.items()}
    total = sum(sizes.values())
    quota = {s: max(1, round(sample * sizes[s] / total)) for s in SUBSYSTEMS if files[s]}
    rng = random.Random(seed)
    draws = {}
    for s in SUBSYSTEMS:
        if not files[s]:
            continue
        cands = []
        for p in sorted(files[s]):
            _, ms = mutants_of(p)
            cands += [(os.path.relpath(p, ROOT),) + m for m in ms]
        # Draw the operator kind first, so that the many constants do not
        # crowd out the rarer operators.
        by_kind = {}
        for c in cands:
            by_kind.setdefault(c[4], []).append(c)
        for k in sorted(by_kind):
            rng.shuffle(by_kind[k])
        order = []
        while by_kind:
            k = rng.choice(sorted(by_kind))
            order.append(by_kind[k].pop())
            if not by_kind[k]:
                del by_kind[k]
        draws[s] = order
    return quota, draws, sizes


def run(cmd, timeout, limit_fsize=False, cwd=None):
    def pre():
        os.setsid()
        if limit_fsize:
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            lim = 256 << 20
            resource.setrlimit(resource.RLIMIT_FSIZE, (lim, lim))
    p = subprocess.Popen(cmd, cwd=cwd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=pre)
    try:
        return p.wait(timeout=timeout)
    except subprocess.TimeoutExpired:
        os.killpg(p.pid, signal.SIGKILL)
        p.wait()
        return "timeout"


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--sample", type=int, default=150)
    ap.add_argument("--seed", type=int, default=1)
    ap.add_argument("--build", default=os.path.join(ROOT, "build-mutate"))
    ap.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    ap.add_argument("--timeout", type=int, default=120, help="seconds for the test run of one fault")
    ap.add_argument("--list", action="store_true", help="print the sample and stop")
    ap.add_argument("--only", help="only this subsystem")
    ap.add_argument("--json", help="write the results here (default BUILD/mutate.json)")
    ap.add_argument("--rerun", help="run the faults of this earlier results file instead of a new draw")
    ap.add_argument("--survivors", action="store_true", help="with --rerun: only the faults that survived")
    a = ap.parse_args()

    quota, draws, sizes = plan(a.sample, a.seed)
    if a.rerun:
        # The same faults again, found by file, line, operator and text, so
        # that a test written for a survivor can be seen to catch it.
        rec = json.load(open(a.rerun))
        old = rec["results"]
        # A line can hold the same change twice; the draw of the recorded run
        # tells which one was planted.
        _, gezogen, _ = plan(rec.get("sample", a.sample), rec.get("seed", a.seed))
        if a.survivors:
            old = [r for r in old if not r["killed"]]
        draws, quota = {}, {}
        for r in old:
            _, ms = mutants_of(os.path.join(ROOT, r["file"]))
            text = open(os.path.join(ROOT, r["file"]), encoding="latin-1").read()
            hit = [(r["file"],) + m for m in ms
                   if m[4] == r["line"] and m[3] == r["kind"] and m[2] == r["to"]
                   and text[m[0]:m[0] + m[1]] == r["from"]]
            if "offset" in r:
                hit = [h for h in hit if h[1] == r["offset"]] or hit
            else:
                hit = [h for h in gezogen.get(r["subsystem"], []) if h in hit] or hit
            if not hit:
                print("not found any more: %s:%d %r -> %r" % (r["file"], r["line"], r["from"], r["to"]))
                continue
            draws.setdefault(r["subsystem"], []).append(hit[0])
            quota[r["subsystem"]] = quota.get(r["subsystem"], 0) + 1
        quota = {s: quota[s] for s in SUBSYSTEMS if s in quota}
    if a.only:
        quota = {a.only: quota[a.only]}
    if a.list:
        for s, q in quota.items():
            for c in draws[s][:q]:
                f, off, ln, rep, kind, line = c
                print("%-10s %s:%d %s -> %r" % (kind, f, line, open(os.path.join(ROOT, f), encoding="latin-1").read()[off:off + ln], rep))
        return 0

    if not os.path.exists(os.path.join(a.build, "CMakeCache.txt")):
        subprocess.check_call(["cmake", "-S", ROOT, "-B", a.build, "-DCMAKE_BUILD_TYPE=Release"], stdout=subprocess.DEVNULL)
    if run(["cmake", "--build", a.build, "-j%d" % a.jobs], 3600) != 0:
        print("the unchanged tree does not build", file=sys.stderr)
        return 2
    if run(["ctest", "--test-dir", a.build, "-j%d" % a.jobs], a.timeout * 3, True) != 0:
        print("the unchanged tree fails its tests", file=sys.stderr)
        return 2

    results = []
    t0 = time.time()
    for s, q in quota.items():
        done = 0
        for f, off, ln, rep, kind, line in draws[s]:
            if done >= q:
                break
            path = os.path.join(ROOT, f)
            orig = open(path, "rb").read()
            text = orig.decode("latin-1")
            was = text[off:off + ln]
            try:
                with open(path, "wb") as fh:
                    fh.write((text[:off] + rep + text[off + ln:]).encode("latin-1"))
                b = run(["cmake", "--build", a.build, "-j%d" % a.jobs], 900)
                if b != 0:
                    continue
                r = run(["ctest", "--test-dir", a.build, "-j%d" % a.jobs, "--stop-on-failure",
                         "--timeout", str(a.timeout)], a.timeout * 3, True)
            finally:
                with open(path, "wb") as fh:
                    fh.write(orig)
            done += 1
            killed = r != 0
            results.append({"subsystem": s, "file": f, "line": line, "offset": off, "kind": kind,
                            "from": was, "to": rep, "killed": killed,
                            "how": "timeout" if r == "timeout" else ("failed" if killed else "survived")})
            print("%3d %-8s %-10s %s:%d %r -> %r" % (len(results), results[-1]["how"], kind, f, line, was, rep),
                  flush=True)
    run(["cmake", "--build", a.build, "-j%d" % a.jobs], 900)

    what = "rerun of %s" % a.rerun if a.rerun else "seed %d, sample %d" % (a.seed, a.sample)
    print("\nkill rate per subsystem (%s, %.0f s)" % (what, time.time() - t0))
    tot_k = tot = 0
    for s in quota:
        rs = [r for r in results if r["subsystem"] == s]
        k = sum(r["killed"] for r in rs)
        tot_k += k
        tot += len(rs)
        print("  %-11s %3d of %3d  %5.1f%%" % (s, k, len(rs), 100.0 * k / len(rs) if rs else 0))
    print("  %-11s %3d of %3d  %5.1f%%" % ("all", tot_k, tot, 100.0 * tot_k / tot if tot else 0))
    surv = [r for r in results if not r["killed"]]
    if surv:
        print("\nsurvivors:")
        for r in surv:
            print("  %s:%d %s %r -> %r" % (r["file"], r["line"], r["kind"], r["from"], r["to"]))
    out = a.json or os.path.join(a.build, "mutate.json")
    with open(out, "w") as fh:
        json.dump({"seed": a.seed, "sample": a.sample, "results": results}, fh, indent=1)
    print("\nresults in", out)
    return 0


if __name__ == "__main__":
    sys.exit(main())
