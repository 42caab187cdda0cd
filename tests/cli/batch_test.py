#!/usr/bin/env python3
"""rainfold-cli batch end to end: a folder, an inventory and design files in one run, every row
checked against `rainfold-cli compute --json` of the same design; the CSV rows against the JSON
rows; the order of the rows with two threads; folder walks (links, pipes, deep trees, folders that
cannot be read); the exit codes, a reader that goes away, the progress line.

The expected values are read from the result arrays of `compute --json` with the results page's
own rules (batch_support.py), and inventory rows are compared with design files this script
writes by hand in the design-file format.

usage: batch_test.py RAINFOLD_CLI EXAMPLES_DIR [--permissions]
With --permissions only the cases that need a user who is not root run (CTest runs them so, as
nobody, when it runs as root).
"""
import csv
import io
import os
import pty
import resource
import select
import shutil
import subprocess
import sys
import tempfile
import time

from batch_support import FAMILIES, Checks, design_file

CLI, EXAMPLES = sys.argv[1], sys.argv[2]
PERMISSIONS_ONLY = "--permissions" in sys.argv[3:]
t = Checks(CLI)
check, run, json_rows = t.check, t.run, t.json_rows


def family_index(path):
    with open(path, encoding="latin-1", newline="") as f:
        return int(f.read().split("\r\n")[5])


def designs_and_inventories(work):
    examples = sorted(os.path.join(EXAMPLES, f) for f in os.listdir(EXAMPLES) if f.endswith(".rfd"))

    # A folder: design files found at any depth, in sorted order; other files left alone.
    folder = os.path.join(work, "county")
    os.makedirs(os.path.join(folder, "b", "deeper"))
    os.makedirs(os.path.join(folder, "a"))
    placed = [os.path.join(folder, "b", "deeper", "1.rfd"), os.path.join(folder, "a", "2.rfd"),
              os.path.join(folder, "c.rfd")]
    for source, target in zip(examples, placed):
        shutil.copy(source, target)
    open(os.path.join(folder, "notes.txt"), "w").write("not a design")

    # An inventory: good rows, an excessive one, invalid ones, malformed ones.
    inventory = os.path.join(work, "inventory.csv")
    with open(inventory, "w", newline="") as f:
        f.write("name,family,length_ft,capacity_gpm,depth_in,wetted_diameter_ft,storage,"
                "slope_pct,residue_pct,surface_storage_in,residue_storage_in,k,n\r\n"
                '"Smith, north",0.5,1300,800,1.0,40,,2,20,,,,\r\n'          # line 2: good
                "lepa,1,1320,900,1.0,6,user,,,0.3,0.05,,\r\n"                 # 3: "1.0" typed as 1
                "typed,custom,1000,700,0.75,60,user,,,0.2,0.1,25,-0.4\r\n"    # 4: K and N
                "long,0.1,3500,800,1.0,40,slope-residue,2,20,,,,\r\n"         # 5: excessive
                "short,1.0,149,800,1.0,40,slope-residue,2,20,,,,\r\n"         # 6: invalid
                "none,,1300,800,1.0,40,slope-residue,2,20,,,,\r\n"            # 7: no family
                'broken,"1.0,1300,800\r\n'                                    # 8: unclosed
                )
    second = os.path.join(work, "second.csv")
    with open(second, "w", newline="") as f:
        f.write("name,length_ft,family\r\n"
                "few,1300\r\n"                                   # line 2: fields missing
                'x"y,1300,1.0\r\n'                               # 3: quote in a bare field
                "odd,1300,0.7\r\n")                              # 4: no such family
    good = {"Smith, north": (2, 0, "2", "20", "", ""), "lepa": (3, 2, "0.3", "0.05", "", ""),
            "typed": (7, 2, "0.2", "0.1", "25", "-0.4"), "long": (0, 0, "2", "20", "", "")}
    sizes = {"Smith, north": ("1300", "800", "1.0", "40"), "lepa": ("1320", "900", "1.0", "6"),
             "typed": ("1000", "700", "0.75", "60"), "long": ("3500", "800", "1.0", "40")}

    inputs = [folder, inventory, second, *examples]
    done = run("batch", *inputs, "--json")
    check("batch exit code with failed rows", done.returncode == 5, done.returncode)
    rows = json_rows(done.stdout)
    names = [r["name"] for r in rows]
    want_names = placed[1:2] + placed[0:1] + placed[2:] + list(good)[:4] + [
        "short", "none", inventory + ":8", second + ":2", second + ":3", "odd"] + examples
    check("rows in input order", names == want_names, names)
    by_name = {r["name"]: r for r in rows}

    for path in placed + examples:
        index = family_index(path)
        check(path + " status", by_name[path]["status"] == "ok", by_name[path])
        t.compare(path, by_name[path], t.expected_row(path))
    for name, (index, option, store, residue, k, n) in good.items():
        rfd = os.path.join(work, name.replace(",", "").replace(" ", "-") + ".rfd")
        design_file(rfd, name, *sizes[name], index, option, store, residue, k, n)
        check(name + " status", by_name[name]["status"] == "ok", by_name[name])
        t.compare(name, by_name[name], t.expected_row(rfd))
    # A file of results has no OK button to press.
    check("excessive value accepted", by_name["long"]["message"] ==
          "System length of  3500 feet is excessive.  Accepted as typed.", by_name["long"])
    expected_failures = {
        "short": ("check", "Invalid system length."),
        "none": ("check", "Please select an Intake Family"),
        inventory + ":8": ("file", inventory + ":8:"),
        second + ":2": ("file", second + ":2:"),
        second + ":3": ("file", second + ":3:"),
        "odd": ("file", second + ":4:"),
    }
    for name, (status, text) in expected_failures.items():
        row = by_name[name]
        check(name + " failure", row["status"] == status and text in row["message"]
              and all(v is None for v in row["hours_per_revolution"]), row)

    # The CSV rows say what the JSON rows say, in the results page's display formats.
    table = list(csv.DictReader(io.StringIO(run("batch", *inputs, "--csv").stdout)))
    check("CSV has a row per design", len(table) == len(rows), len(table))
    decimals = {"capacity_gpm": 0, "hours_per_revolution": 1, "peak_rate_in_hr": 1,
                "application_time_hr": 2, "weighted_runoff_pct": 1, "max_runoff_pct": 1}
    for line, row in zip(table, rows):
        for key in ("name", "status", "message", "family"):
            check(f"CSV {key}", line[key] == row[key], (line[key], row[key]))
        for key, places in decimals.items():
            for c in range(3):
                cell, value = line[f"{key}_{c + 1}"], row[key][c]
                if value is None:
                    check(f"CSV {key} empty", cell == "", cell)
                    continue
                # the time is rounded to two decimals before it is doubled
                unit = 2 * 10 ** -places if key == "application_time_hr" else 10 ** -places
                check(f"CSV {key}", abs(float(cell) - value) <= unit / 2 + 1e-9, (cell, value))
        for c in range(3):
            cell, value = line[f"first_runoff_ft_{c + 1}"], row["first_runoff_ft"][c]
            check("CSV first runoff", (cell == "") if value is None
                  else abs(float(cell) - value) < 1e-9, (cell, value))

    # Two threads finish rows out of order (a refused row takes no time, a design does); the
    # output keeps the input order and does not depend on the number of threads.
    many = os.path.join(work, "many.csv")
    with open(many, "w", newline="") as f:
        f.write("name,length_ft,capacity_gpm,depth_in,wetted_diameter_ft,family,slope_pct,residue_pct\n")
        for i in range(400):
            length = 100 if i % 3 == 0 else 400 + 6 * i  # every third row fails its check
            f.write(f"row-{i:03},{length},{300 + 4 * i},{0.5 + i % 5 / 4},{40 + i % 50},"
                    f"{FAMILIES[i % 7]},{1 + i % 6},{i % 70}\n")
    two, one = run("batch", many, "--jobs", "2"), run("batch", many, "--jobs", "1")
    order = [line.split(",")[0] for line in two.stdout.splitlines()[1:]]
    check("--jobs 2 keeps the input order", order == [f"row-{i:03}" for i in range(400)], order[:5])
    check("--jobs 2 writes what --jobs 1 writes", two.stdout == one.stdout)
    check("--jobs 2 exit code", two.returncode == 5, two.returncode)

    return folder, inventory


def whole_runs(work, folder, inventory):
    # Exit codes of whole runs.
    empty = os.path.join(work, "empty")
    os.mkdir(empty)
    for args, code in [((folder,), 0), ((inventory, "--green-ampt"), 5), ((empty,), 5),
                       ((), 64), ((folder, "--csv", "--json"), 64), ((folder, "--jobs", "0"), 64),
                       ((folder, "--slot", "2"), 64)]:
        got = run("batch", *args)
        check(f"batch {' '.join(args)} exits {code}", got.returncode == code, got.returncode)

    # A reader that goes away after the first line: an output that cannot be written (exit 4),
    # not a death by SIGPIPE, and no more computing than the rows in hand.
    many = os.path.join(work, "many.csv")
    with subprocess.Popen([CLI, "batch", many, many, many], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE) as reader:
        reader.stdout.readline()
        reader.stdout.close()
        code = reader.wait(60)
        stderr = reader.stderr.read().decode()
    check("batch | head -1 exits 4", code == 4, code)
    check("batch | head -1 says why", "Broken pipe" in stderr, stderr)

    # Short of memory (an address-space limit stepped from too little to start the program up to
    # enough): the run is done, or it stops with its own exit code and says the system ran short;
    # never a computation fault, never a crash. The sanitizers reserve more address space than
    # any of these limits, so under them the program cannot start at all and this is left out.
    sanitized = run("--version", preexec_fn=lambda: resource.setrlimit(
        resource.RLIMIT_AS, (1 << 30, 1 << 30))).returncode != 0
    outcomes = set()
    for mb in () if sanitized else range(60, 164, 4):
        limit = lambda: resource.setrlimit(resource.RLIMIT_AS, (mb << 20, mb << 20))
        got = run("batch", inventory, "--jobs", "2", preexec_fn=limit)
        loader = got.returncode == 127 and "error while loading shared libraries" in got.stderr
        short = got.returncode == 6 and "rainfold-cli batch: the system ran short: " in got.stderr
        check(f"batch in {mb} MB", got.returncode == 5 or loader or short,
              (got.returncode, got.stderr[-300:]))
        outcomes.add(got.returncode)
    check("short of memory, exit 6 somewhere", sanitized or 6 in outcomes, outcomes)

    # Messages of the command line.
    for args, text in [(("--jobs", "abc"), "--jobs: abc is not a whole number"),
                       (("--jobs", "2.5"), "--jobs: 2.5 is not a whole number"),
                       (("--jobs", "1025"), "--jobs: Value 1025 not in range 1 to 1024")]:
        got = run("batch", folder, *args)
        check(f"batch {' '.join(args)}", got.returncode == 64 and text in got.stderr, got.stderr)

    # The progress line: on a terminal once the run takes more than a second (here a reader that
    # waits two seconds before reading on), never elsewhere.
    quiet = run("batch", many)
    check("no progress line off a terminal", quiet.stderr == "", quiet.stderr[:200])
    primary, secondary = pty.openpty()
    with subprocess.Popen([CLI, "batch", many, many, many], stdout=subprocess.PIPE,
                          stderr=secondary) as slow:
        os.close(secondary)
        slow.stdout.readline()
        time.sleep(2)
        slow.stdout.read()
        slow.wait(60)
    terminal = b""
    while select.select([primary], [], [], 0.5)[0]:
        try:
            chunk = os.read(primary, 65536)
        except OSError:  # the terminal's other end is closed
            break
        if not chunk:
            break
        terminal += chunk
    os.close(primary)
    lines = terminal.decode().replace("\r", "\n").split("\n")
    counts = [line for line in lines if line.startswith("rainfold-cli batch: ")]
    failed = 3 * len(range(0, 400, 3))  # every third row of many.csv fails its check
    check("progress line on a terminal", len(counts) >= 2 and terminal.endswith(b"\n") and
          counts[-1] == f"rainfold-cli batch: 1200 designs, {failed} did not compute",
          terminal[-300:])


def folder_walks(work):
    """Entries named .rfd that are not design files give the rows they give when named directly;
    a tree deeper than the open-file limit is walked to its bottom."""
    spray = os.path.join(EXAMPLES, "spray-1300ft-800gpm.rfd")
    folder = os.path.join(work, "odd")
    os.mkdir(folder)
    shutil.copy(spray, os.path.join(folder, "a.rfd"))
    os.mkfifo(os.path.join(folder, "b-pipe.rfd"))
    os.symlink(os.path.join(work, "nowhere.rfd"), os.path.join(folder, "c-dangling.rfd"))
    os.symlink("/dev/null", os.path.join(folder, "d-device.rfd"))
    os.symlink(work, os.path.join(folder, "e-folder.rfd"))
    entries = sorted(os.listdir(folder))
    walked = run("batch", folder, "--json")
    named = run("batch", *[os.path.join(folder, e) for e in entries[:-1]], "--json")
    walked_rows = [(r["name"], r["status"], r["message"]) for r in json_rows(walked.stdout)]
    named_rows = [(r["name"], r["status"], r["message"]) for r in json_rows(named.stdout)]
    check("a walk gives the rows of the entries named directly", walked_rows[:-1] == named_rows,
          (walked_rows, named_rows))
    check("a walk names every entry", [os.path.basename(r[0]) for r in walked_rows] == entries,
          walked_rows)
    check("a walk with odd entries exits 5", walked.returncode == 5, walked.returncode)
    check("only the design computes", [r[1] for r in walked_rows] == ["ok"] + ["file"] * 4,
          walked_rows)
    # A link to a folder is not followed on a walk (it may lead back up the tree).
    check("a linked folder named .rfd", walked_rows[-1][2].endswith(": Is a directory."),
          walked_rows[-1])

    # 64 folders deep, with 16 files open at most.
    deep = os.path.join(work, "deep")
    bottom = os.path.join(deep, *["d"] * 64)
    os.makedirs(bottom)
    shutil.copy(spray, os.path.join(bottom, "bottom.rfd"))
    shutil.copy(spray, os.path.join(deep, "top.rfd"))
    few_files = lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (16, 16))
    done = run("batch", deep, "--json", preexec_fn=few_files)
    rows = json_rows(done.stdout)
    check("a deep tree is walked to its bottom", done.returncode == 0 and
          [os.path.basename(r["name"]) for r in rows] == ["bottom.rfd", "top.rfd"] and
          all(r["status"] == "ok" for r in rows), (done.returncode, rows, done.stderr))


def permissions(work):
    """A folder or file this user may not read is its own row; the rest computes."""
    check("the permission cases run as a user who is not root", os.geteuid() != 0)
    spray = os.path.join(EXAMPLES, "spray-1300ft-800gpm.rfd")
    folder = os.path.join(work, "farm")
    locked = os.path.join(folder, "locked")
    os.makedirs(os.path.join(locked, "inner"))
    shutil.copy(spray, os.path.join(locked, "inner", "hidden.rfd"))
    shutil.copy(spray, os.path.join(folder, "a.rfd"))
    shutil.copy(spray, os.path.join(folder, "z.rfd"))
    shutil.copy(spray, os.path.join(folder, "secret.rfd"))
    os.chmod(os.path.join(folder, "secret.rfd"), 0)
    os.chmod(locked, 0)
    try:
        done = run("batch", folder, "--json")
    finally:
        os.chmod(locked, 0o755)
    rows = [(r["name"], r["status"], r["message"]) for r in json_rows(done.stdout)]
    want = [(os.path.join(folder, "a.rfd"), "ok", ""),
            (locked, "file", f"Could not read the folder {locked}: Permission denied"),
            (os.path.join(folder, "secret.rfd"), "file",
             f"Could not open {os.path.join(folder, 'secret.rfd')}: Permission denied."),
            (os.path.join(folder, "z.rfd"), "ok", "")]
    check("an unreadable folder is its own row", rows == want, rows)
    check("an unreadable folder exits 5", done.returncode == 5, done.returncode)


work = tempfile.mkdtemp()
os.chmod(work, 0o755)
try:
    if not PERMISSIONS_ONLY:
        folder, inventory = designs_and_inventories(work)
        whole_runs(work, folder, inventory)
        folder_walks(work)
    if PERMISSIONS_ONLY or os.geteuid() != 0:
        permissions(work)
finally:
    shutil.rmtree(work)

t.finish()
