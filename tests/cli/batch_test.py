#!/usr/bin/env python3
"""rainfold-cli batch end to end: a folder, an inventory and design files in one run, every row
checked against `rainfold-cli compute --json` of the same design; the CSV rows against the JSON
rows; the order of the rows with two threads; the exit codes.

The expected values are read from the result arrays of `compute --json` with the results page's
own rules (the slot the window opens on, the outer end, the weighted average of that slot), and
inventory rows are compared with design files this script writes by hand in the design-file
format.

usage: batch_test.py RAINFOLD_CLI EXAMPLES_DIR
"""
import csv
import io
import json
import math
import os
import shutil
import subprocess
import sys
import tempfile

CLI, EXAMPLES = sys.argv[1], sys.argv[2]
FAMILIES = ["0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]
failures = []


def check(name, good, detail=""):
    if not good:
        failures.append(f"{name}: {detail}")


def run(*args):
    return subprocess.run([CLI, *args], capture_output=True, text=True)


def json_rows(out):
    reject = lambda token: (_ for _ in ()).throw(ValueError(token))
    return [json.loads(line, parse_constant=reject) for line in out.splitlines()]


def design_file(path, name, length, gpm, depth, diameter, family, option, store, residue, k="", n=""):
    records = [f'"{name}"', '""', '"",""', '"",""', f'"{length}","{gpm}","{depth}","{diameter}"',
               str(family)]
    if family == 7:
        records.append(f'"{k}","{n}"')
    records += [str(option), f'"{store}","{residue}"', '"","","","","",""']
    with open(path, "w", newline="", encoding="latin-1") as f:
        f.write("".join(r + "\r\n" for r in records))


def family_index(path):
    with open(path, encoding="latin-1", newline="") as f:
        return int(f.read().split("\r\n")[5])


def expected_row(design, index):
    """The batch row of a design, from the arrays that compute --json prints for it."""
    doc = json.loads(run("compute", design, "--json").stdout)
    assert doc["status"] == "ok", doc
    slot = 0 if index == 0 else 2 if index == 6 else 1  # the slot the window opens on, from 0
    length_ft = None
    with open(design, encoding="latin-1", newline="") as f:
        length_ft = float(f.read().split("\r\n")[4].split(",")[0].strip('"'))
    row = {"family": "Customized Values" if index == 7 else FAMILIES[index] + " NRCS Intake Family"}
    for name in ("hours_per_revolution", "peak_rate_in_hr", "application_time_hr",
                 "weighted_runoff_pct", "max_runoff_pct", "first_runoff_ft"):
        row[name] = []
    for c in range(3):
        runoff = [doc["PctRunoff"][c][p][slot] for p in range(10)]
        first = next((p for p in range(10) if runoff[p] > 0), None)
        row["hours_per_revolution"].append(doc["HoursPerRev"][c])
        row["peak_rate_in_hr"].append(doc["PeakRate"][c][9][slot] / 25.4)
        row["application_time_hr"].append(2 * doc["HalfTime"][c][9][slot])
        row["weighted_runoff_pct"].append(doc["WeightedRunoff"][slot][c])
        row["max_runoff_pct"].append(max(runoff))
        row["first_runoff_ft"].append(None if first is None else (first + 1) * length_ft / 10)
    return row


def same(a, b):
    if a is None or b is None:
        return a is b
    return math.isclose(a, b, rel_tol=1e-12, abs_tol=1e-12)


def compare(name, got, want):
    check(name + " family", got["family"] == want["family"], (got["family"], want["family"]))
    for key, values in want.items():
        if key != "family":
            check(f"{name} {key}", all(map(same, got[key], values)), (got[key], values))


work = tempfile.mkdtemp()
try:
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
        compare(path, by_name[path], expected_row(path, index))
    for name, (index, option, store, residue, k, n) in good.items():
        rfd = os.path.join(work, name.replace(",", "").replace(" ", "-") + ".rfd")
        design_file(rfd, name, *sizes[name], index, option, store, residue, k, n)
        check(name + " status", by_name[name]["status"] == "ok", by_name[name])
        compare(name, by_name[name], expected_row(rfd, index))
    check("excessive value noted", "is excessive" in by_name["long"]["message"], by_name["long"])
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

    # A spreadsheet saved in the Windows code page: the names come out as UTF-8.
    ansi = os.path.join(work, "ansi.csv")
    with open(ansi, "wb") as f:
        f.write(b"name,length_ft,capacity_gpm,depth_in,wetted_diameter_ft,family,slope_pct,"
                b"residue_pct\r\nCaf\xe9 pivot,1300,800,1,40,0.5,2,20\r\n")
    row = json_rows(run("batch", ansi, "--json").stdout)[0]
    check("Windows-1252 inventory", row["name"] == "Caf\u00e9 pivot" and row["status"] == "ok", row)

    # Exit codes of whole runs.
    empty = os.path.join(work, "empty")
    os.mkdir(empty)
    for args, code in [((folder,), 0), ((inventory, "--green-ampt"), 5), ((empty,), 5),
                       ((), 64), ((folder, "--csv", "--json"), 64), ((folder, "--jobs", "0"), 64),
                       ((folder, "--slot", "2"), 64)]:
        got = run("batch", *args)
        check(f"batch {' '.join(args)} exits {code}", got.returncode == code, got.returncode)
finally:
    shutil.rmtree(work)

for failure in failures:
    print("FAILED:", failure, file=sys.stderr)
print(f"{len(failures)} failures")
sys.exit(1 if failures else 0)
