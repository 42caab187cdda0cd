#!/usr/bin/env python3
"""rainfold-cli built for Windows and run under Wine against the same program built here: compute,
chart and explore (--json and text) on the examples and on generated designs, and batch over the
generated designs and the example inventory, must give the same exit codes, the same texts and
numbers equal to within 1e-12 relative. Paths a Windows user has are read there too: a name with
letters beyond ASCII, a path over 260 characters, a read-only file and a file another program
holds open.

usage: compare_cli.py NATIVE_CLI WINDOWS_CLI_EXE EXAMPLES_DIR   (RAINFOLD_WINE: the wine program)
"""
import json
import math
import os
import random
import shutil
import stat
import subprocess
import sys
import tempfile
import time

NATIVE, WINDOWS, EXAMPLES = sys.argv[1:4]
WINE = os.environ.get("RAINFOLD_WINE", "wine")
failures = []
runs = 0


def check(name, good, detail=""):
    if not good:
        failures.append(f"{name}: {detail}")


def run(program, args, cwd):
    global runs
    runs += 1
    command = [WINE, program, *args] if program == WINDOWS else [program, *args]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=cwd,
                          timeout=300)
    # Wine may write its own notices on standard error before the program's: keep the program's.
    return done.returncode, done.stdout.decode("utf-8", "replace"), done.stderr.decode(
        "utf-8", "replace")


def same_values(a, b, where):
    """Numbers within 1e-12 relative, everything else equal; the first difference, or None."""
    if isinstance(a, bool) or isinstance(b, bool) or a is None or b is None:
        return None if a == b else f"{where}: {a!r} / {b!r}"
    if isinstance(a, (int, float)) and isinstance(b, (int, float)):
        if a == b or abs(a - b) <= 1e-12 * max(abs(a), abs(b)):
            return None
        return f"{where}: {a!r} / {b!r}"
    if isinstance(a, str) and isinstance(b, str):
        return None if a.replace("\\", "/") == b.replace("\\", "/") else f"{where}: {a!r} / {b!r}"
    if isinstance(a, list) and isinstance(b, list):
        if len(a) != len(b):
            return f"{where}: {len(a)} / {len(b)} elements"
        for i, (x, y) in enumerate(zip(a, b)):
            found = same_values(x, y, f"{where}[{i}]")
            if found:
                return found
        return None
    if isinstance(a, dict) and isinstance(b, dict):
        if sorted(a) != sorted(b):
            return f"{where}: keys {sorted(a)} / {sorted(b)}"
        for key in a:
            found = same_values(a[key], b[key], f"{where}.{key}")
            if found:
                return found
        return None
    return f"{where}: {a!r} / {b!r}"


def parsed(text):
    """A JSON document or JSON Lines as values; plain text (and CSV) as its lines."""
    try:
        return [json.loads(line) for line in text.splitlines() if line.strip()]
    except ValueError:
        return text.replace("\\", "/").splitlines()


def compare(args, cwd, name=None):
    here = run(NATIVE, args, cwd)
    there = run(WINDOWS, args, cwd)
    name = name or " ".join(args)
    check(f"{name}: exit code", here[0] == there[0], (here[0], there[0], there[2][-300:]))
    diff = same_values(parsed(here[1]), parsed(there[1]), "stdout")
    check(f"{name}: standard output", diff is None, diff)
    check(f"{name}: standard error", here[2].replace("\\", "/") == there[2].replace("\\", "/")[
        -len(here[2]) or len(there[2]):], (here[2][-200:], there[2][-200:]))


def design_bytes(rng, n):
    q = lambda *items: ",".join(f'"{x}"' for x in items) + "\r\n"
    family = rng.choice([0, 1, 2, 3, 4, 5, 6, 7, -1]) if n % 9 else 2
    option = rng.randrange(4)
    text = q(f"Generated design {n}") + q(f"Section {n}") + q("Custer", "NE") + q("JD", "5/1/26")
    text += q(rng.randrange(600, 2700), rng.randrange(350, 1700), round(rng.uniform(0.2, 2.5), 2),
              rng.choice([1, 8, 25, 40, 60, 75, 90, 120]))
    text += f"{family}\r\n"
    if family == 7:
        text += q(round(rng.uniform(5, 40), 3), round(rng.uniform(-0.8, -0.2), 3))
    text += f"{option}\r\n"
    if option in (0, 2):
        text += q(round(rng.uniform(0, 8), 1), rng.randrange(0, 80)) if option == 0 else q(
            round(rng.uniform(0, 0.6), 2), round(rng.uniform(0, 0.2), 2))
    else:
        for _ in range(10):
            text += q(round(rng.uniform(0, 6), 1), rng.randrange(0, 60)) if option == 1 else q(
                round(rng.uniform(0, 0.5), 2), round(rng.uniform(0, 0.1), 2))
    text += q(round(rng.uniform(2, 60), 1), rng.randrange(50, 300), 0.45, round(rng.uniform(0.1,
              0.35), 2), rng.randrange(300, 1500), rng.choice(["0", ".0002", "-0.0001"]))
    return text.encode("cp1252")


work = tempfile.mkdtemp(prefix="rainfold-wine-")
started = time.monotonic()
try:
    designs = os.path.join(work, "designs")
    os.mkdir(designs)
    rng = random.Random(20260522)
    for n in range(60):
        with open(os.path.join(designs, f"g{n:02d}.rfd"), "wb") as f:
            f.write(design_bytes(rng, n))
    examples = sorted(f for f in os.listdir(EXAMPLES) if f.endswith(".rfd"))
    for f in examples:
        shutil.copy(os.path.join(EXAMPLES, f), os.path.join(work, f))
    shutil.copy(os.path.join(EXAMPLES, "inventory.csv"), os.path.join(work, "inventory.csv"))

    # One command line per design and command, on the examples and a few generated designs.
    for f in examples + [f"designs/g{n:02d}.rfd" for n in range(0, 60, 12)]:
        for args in (["compute", f, "--json"], ["compute", f], ["compute", f, "--json",
                     "--green-ampt"], ["chart", f, "--json", "--case", "1", "--position", "7"],
                     ["chart", f], ["explore", f, "--json", "--target", "2"]):
            compare(args, work)
    # Every generated design, both models, in JSON and CSV, and the example inventory.
    for args in (["batch", "designs", "--json"], ["batch", "designs", "--green-ampt"],
                 ["batch", "inventory.csv", "--json"], ["batch", "inventory.csv"]):
        compare(args, work)

    # Paths a Windows user has. Each opens as the same design does under a plain name.
    plain = examples[0]
    expected = run(NATIVE, ["compute", plain, "--json"], work)
    deep = os.path.join(work, *(["a folder name of forty characters, with x"] * 7))
    os.makedirs(deep)
    cases = {
        "letters beyond ASCII": "Müller’s Feld – Nord é.rfd",
        "path over 260 characters": os.path.join(deep, "design.rfd"),
        "read-only file": "read-only.rfd",
        "file another program holds open": "held.rfd",
    }
    for name, path in cases.items():
        shutil.copy(os.path.join(work, plain), os.path.join(work, path))
    check("the long path is over 260 characters", len(cases["path over 260 characters"]) > 260)
    os.chmod(os.path.join(work, "read-only.rfd"), stat.S_IRUSR | stat.S_IRGRP | stat.S_IROTH)
    # A Windows program with the file open: cmd's input redirected from it while ping waits.
    holder = subprocess.Popen([WINE, "cmd", "/c", "ping -n 60 127.0.0.1 > nul < held.rfd"],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=work)
    time.sleep(3)
    try:
        for name, path in cases.items():
            got = run(WINDOWS, ["compute", path, "--json"], work)
            diff = same_values(parsed(expected[1]), parsed(got[1]), "stdout")
            check(f"{name}: opened", got[0] == 0 and diff is None, (got[0], got[2][-300:], diff))
    finally:
        holder.kill()
        holder.wait()
finally:
    shutil.rmtree(work, ignore_errors=True)

for failure in failures:
    print("FAILED:", failure, file=sys.stderr)
print(f"{runs} runs in {time.monotonic() - started:.0f} s")
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
