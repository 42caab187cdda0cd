#!/usr/bin/env python3
"""rainfold-cli at the edges of its output: one JSON error object for every failing exit of a
--json command; every output of every command where it cannot be written or must not be (one
table: the design file itself, a dangling link, a file-size limit, /dev/full, a closed pipe, a
read-only folder); and a family slot the computation leaves out (exit 64).

A full disk is played by a file-size limit (`ulimit -f 8`, SIGXFSZ left as the shell leaves it),
which makes the system refuse writes past 8 KiB as a full disk would.

usage: output_test.py RAINFOLD_CLI EXAMPLES_DIR
"""
import json
import os
import resource
import shutil
import subprocess
import sys
import tempfile

CLI, EXAMPLES = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
SPRAY = os.path.join(EXAMPLES, "spray-1300ft-800gpm.rfd")
CUSTOM = os.path.join(EXAMPLES, "customized-variable-storage.rfd")
failures = []
os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")


def check(name, good, detail=""):
    if not good:
        failures.append(f"{name}: {detail}")


def run(*args, stdout=subprocess.PIPE, limit=None, cwd=None, user=None):
    program = os.path.join(work, "rainfold-cli") if user else CLI
    def prepare():
        if limit:
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
        if user:
            os.setgroups([])
            os.setgid(user[1])
            os.setuid(user[0])
    return subprocess.run([program, *args], stdout=stdout, stderr=subprocess.PIPE, text=True,
                          preexec_fn=prepare, cwd=cwd)


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

    # Every output of every command, where it cannot be written or must not be: what the command
    # says (exit code, and words that must stand once on standard error) and what is left.
    files = [("report", "--pdf", b"%PDF-"), ("plot", "--pdf", b"%PDF-")] if printing else []
    if printing:
        files += [("explore", "--png", b"\x89PNG"), ("explore", "--pdf", b"%PDF-")]
    streams = [("compute", SPRAY), ("compute", SPRAY, "--json"), ("chart", SPRAY),
               ("explore", SPRAY, "--csv"), ("batch", EXAMPLES), ("--help",)]
    old = b"an earlier file\n"
    # Root writes into any folder: the read-only folder is tried as "nobody", with a copy of the
    # program that user can reach.
    nobody = None
    if os.geteuid() == 0:
        import pwd
        try:
            entry = pwd.getpwnam("nobody")
            nobody = (entry.pw_uid, entry.pw_gid)
            os.chmod(work, 0o755)
            shutil.copy(CLI, os.path.join(work, "rainfold-cli"))
        except KeyError:
            pass
    n = 0
    for command, option, magic in files:
        for kind in ("design file", "./design file", "link to the design", "hard link to the design",
                     "dangling link", "size limit", "/dev/full", "closed pipe", "read-only folder"):
            n += 1
            folder = os.path.join(work, f"out{n}")
            os.mkdir(folder)
            design = os.path.join(folder, "d.rfd")
            shutil.copy(SPRAY, design)
            target, cwd, limit, user, code, says = os.path.join(folder, "out"), None, None, None, 0, ""
            stdout = subprocess.PIPE
            with open(target, "wb") as f:
                f.write(old)
            if kind == "design file":
                out, code, says = design, 64, "is the design file"
            elif kind == "./design file":
                out, cwd, code, says = "./d.rfd", folder, 64, "is the design file"
            elif kind == "link to the design":
                out, code, says = os.path.join(folder, "l.rfd"), 64, "is the design file"
                os.symlink("d.rfd", out)
            elif kind == "hard link to the design":
                out, code, says = os.path.join(folder, "h.rfd"), 64, "is the design file"
                os.link(design, out)
            elif kind == "dangling link":
                out = os.path.join(folder, "dangling")
                os.symlink("made", out)
                target = os.path.join(folder, "made")
                os.remove(os.path.join(folder, "out"))
            elif kind == "size limit":
                out, limit, code, says = target, 8192, 4, "File too large"
            elif kind == "/dev/full":
                out, target, code, says = "/dev/full", None, 4, "No space left on device"
            elif kind == "closed pipe":
                out, target, code, says = "/dev/stdout", None, 4, "Broken pipe"
                read, stdout = os.pipe()
                os.close(read)
            else:
                out, code = target, 4
                says = f"the folder {folder} takes no new file: Permission denied"
                os.chmod(design, 0o644)
                os.chmod(target, 0o666)  # a file that may be written, in a folder that may not
                os.chmod(folder, 0o555)
                user = nobody
                if os.geteuid() == 0 and not user:
                    check("read-only folder as nobody", False, "no user nobody")
                    continue
            before = sorted(os.listdir(folder))
            done = run(command, design, option, out, limit=limit, cwd=cwd, user=user, stdout=stdout)
            if stdout != subprocess.PIPE:
                os.close(stdout)
            name = f"{command} {option} to a {kind}"
            check(f"{name}: exit {code}", done.returncode == code, (done.returncode, done.stderr))
            check(f"{name}: says '{says}' once", done.stderr.count(says) == 1 if says else
                  done.stderr == "", done.stderr)
            if code:
                check(f"{name}: one line, no other noise", done.stderr.count("\n") == 1,
                      done.stderr)
                check(f"{name}: nothing changed", open(design, "rb").read() ==
                      open(SPRAY, "rb").read() and sorted(os.listdir(folder)) == before and
                      (target is None or open(target, "rb").read() == old),
                      sorted(os.listdir(folder)))
            else:
                check(f"{name}: the link stays a link to a new file", os.path.islink(out) and
                      open(target, "rb").read().startswith(magic), sorted(os.listdir(folder)))
            os.chmod(folder, 0o755)

    # Standard output that cannot be written: /dev/full, and a pipe nobody reads any more.
    for args in streams:
        with open("/dev/full", "w") as full:
            done = run(*args, stdout=full)
        check(f"{args} > /dev/full exits 4", done.returncode == 4, done.returncode)
        check(f"{args} > /dev/full says so", "No space left" in done.stderr, done.stderr)
        read, write = os.pipe()
        os.close(read)
        done = run(*args, stdout=write)
        os.close(write)
        check(f"{args} to a closed pipe exits 4", done.returncode == 4, done.returncode)
        check(f"{args} to a closed pipe says so", "Broken pipe" in done.stderr, done.stderr)

    # A PDF written over an earlier one keeps its permissions.
    for command in ("report", "plot") if printing else ():
        old = os.path.join(work, command + ".pdf")
        with open(old, "wb") as f:
            f.write(b"%PDF-1.4 an earlier page\n")
        os.chmod(old, 0o640)
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
            "schemaVersion": 1, "status": "error", "message": done.stderr.split(": ", 1)[1].strip()} else done.stdout
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
