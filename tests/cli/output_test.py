#!/usr/bin/env python3
"""rainfold-cli at the edges of its output: one JSON error object for every failing exit of a
--json command, a standard output or PDF that cannot be written (exit 4, message, an existing PDF
left as it was), and a family slot the computation leaves out (exit 64).

A full disk is played by a file-size limit (RLIMIT_FSIZE, with SIGXFSZ ignored), which makes the
system refuse writes past a few kilobytes as a full disk would.

usage: output_test.py RAINFOLD_CLI EXAMPLES_DIR
"""
import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

CLI, EXAMPLES = sys.argv[1], sys.argv[2]
SPRAY = os.path.join(EXAMPLES, "spray-1300ft-800gpm.rfd")
CUSTOM = os.path.join(EXAMPLES, "customized-variable-storage.rfd")
failures = []
os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")


def check(name, good, detail=""):
    if not good:
        failures.append(f"{name}: {detail}")


def run(*args, stdout=subprocess.PIPE, limit=None):
    def small_disk():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
    return subprocess.run([CLI, *args], stdout=stdout, stderr=subprocess.PIPE, text=True,
                          preexec_fn=small_disk if limit else None)


def with_line(source, number, text, target):
    """A copy of a design file with one record replaced."""
    with open(source, encoding="latin-1", newline="") as f:
        records = f.read().split("\r\n")
    records[number - 1] = text
    with open(target, "w", encoding="latin-1", newline="") as f:
        f.write("\r\n".join(records))
    return target


printing = "report" in run("--help").stdout
work = tempfile.mkdtemp()
try:
    short = with_line(SPRAY, 5, '"149","800","1.0","40"', os.path.join(work, "short.rfd"))
    zero_k = with_line(CUSTOM, 7, '"0","-0.4"', os.path.join(work, "zero-k.rfd"))

    # Every failing exit of a --json command: one object on standard output, status "error".
    for args, code in [
        (("compute", os.path.join(work, "missing.rfd")), 1),
        (("compute", work), 1),
        (("compute", short), 2),
        (("compute", zero_k), 3),
        (("compute", SPRAY, "--no-such-option"), 64),
        (("compute", SPRAY, "--slot", "4"), 64),
        (("compute",), 64),
        (("batch", SPRAY, "--jobs", "x"), 64),
    ]:
        done = run(*args, "--json")
        lines = done.stdout.splitlines()
        try:
            doc = json.loads(lines[0]) if len(lines) == 1 else None
        except ValueError:
            doc = None
        check(f"{args} exit code", done.returncode == code, done.returncode)
        check(f"{args} one JSON error object", isinstance(doc, dict) and doc.get("status") ==
              "error" and doc.get("message"), done.stdout[:200])
        check(f"{args} message on standard error", done.stderr.strip() != "", done.stderr)

    # Standard output that cannot be written: a full disk, and a pipe nobody reads any more
    # (exit 4 and the reason, not a death by SIGPIPE).
    for args in [("compute", SPRAY), ("compute", SPRAY, "--json"), ("batch", EXAMPLES),
                 ("chart", SPRAY, "--json"), ("--help",)]:
        with open("/dev/full", "w") as full:
            done = run(*args, stdout=full)
        check(f"{args} > /dev/full exits 4", done.returncode == 4, done.returncode)
        check(f"{args} > /dev/full says so", "No space left" in done.stderr, done.stderr)
        closed, writer = os.pipe()
        os.close(closed)
        done = run(*args, stdout=writer)
        os.close(writer)
        check(f"{args} | closed pipe exits 4", done.returncode == 4, done.returncode)
        check(f"{args} | closed pipe says so", "Broken pipe" in done.stderr, done.stderr)

    # A PDF that cannot be written: exit 4, a message, an existing file as it was, nothing left
    # beside it; once it can be written, the file is replaced with its permissions kept.
    for command in ("report", "plot") if printing else ():
        done = run(command, SPRAY, "--pdf", "/dev/full")
        check(f"{command} to /dev/full", done.returncode == 4 and "/dev/full" in done.stderr,
              (done.returncode, done.stderr))
        folder = os.path.join(work, command)
        os.mkdir(folder)
        old = os.path.join(folder, "old.pdf")
        with open(old, "wb") as f:
            f.write(b"%PDF-1.4 an earlier page\n")
        os.chmod(old, 0o640)
        done = run(command, SPRAY, "--pdf", old, limit=16384)
        check(f"{command} on a full disk exits 4", done.returncode == 4, done.returncode)
        check(f"{command} on a full disk says so", "cannot write" in done.stderr, done.stderr)
        check(f"{command} keeps the old file", open(old, "rb").read() == b"%PDF-1.4 an earlier page\n")
        check(f"{command} leaves nothing beside it", os.listdir(folder) == ["old.pdf"],
              os.listdir(folder))
        done = run(command, SPRAY, "--pdf", old)
        with open(old, "rb") as f:
            written = f.read()
        check(f"{command} replaces the file", done.returncode == 0 and written.startswith(b"%PDF")
              and written.rstrip().endswith(b"%%EOF"), done.returncode)
        check(f"{command} keeps its permissions", os.stat(old).st_mode & 0o777 == 0o640,
              oct(os.stat(old).st_mode))

    # Slot 3 under "Customized Values" is not computed: a usage error, not a page of zeros.
    pdf = os.path.join(work, "slot.pdf")
    commands = [("compute", CUSTOM), ("compute", CUSTOM, "--json")]
    if printing:
        commands += [("report", CUSTOM, "--pdf", pdf), ("plot", CUSTOM, "--pdf", pdf)]
    for args in commands:
        done = run(*args, "--slot", "3")
        check(f"{args} --slot 3 exits 64", done.returncode == 64, done.returncode)
        check(f"{args} --slot 3 says why", "slot 3" in done.stderr, done.stderr)
        wrote = done.stdout if "--json" not in args else "" if json.loads(done.stdout) == {
            "status": "error", "message": done.stderr.split(": ", 1)[1].strip()} else done.stdout
        check(f"{args} --slot 3 writes nothing but the error", wrote == "" and
              not os.path.exists(pdf), done.stdout[:200])
        check(f"{args} --slot 2 works", run(*args, "--slot", "2").returncode == 0)
        if os.path.exists(pdf):
            os.remove(pdf)
finally:
    shutil.rmtree(work)

for failure in failures:
    print("FAILED:", failure, file=sys.stderr)
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
