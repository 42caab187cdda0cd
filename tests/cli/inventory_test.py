#!/usr/bin/env python3
"""rainfold-cli batch inventories cell by cell and byte by byte: numbers that are not wholly
numbers, quotes and commas inside quoted cells, texts a spreadsheet would run as formulas, line
ends and encodings, every column under both models, soil textures, and rows at the size a design
file may have. Rows that compute are compared with `compute --json` of a design file this script
writes by hand with the same texts (batch_support.py); the texture values come from the table of
the soil-texture source, not from the program.

usage: inventory_test.py RAINFOLD_CLI EXAMPLES_DIR
"""
import csv
import io
import os
import shutil
import sys
import tempfile
from decimal import Decimal

from batch_support import Checks, design_file

t = Checks(sys.argv[1])
check = t.check
COLUMNS = ["name", "length_ft", "capacity_gpm", "depth_in", "wetted_diameter_ft", "family",
           "storage", "slope_pct", "residue_pct", "omega"]
BASE = {"length_ft": "1300", "capacity_gpm": "800", "depth_in": "1.0", "wetted_diameter_ft": "40",
        "family": "0.5", "slope_pct": "2", "residue_pct": "20"}
FAMILY_INDEX = {"0.1": 0, "0.3": 1, "0.5": 2, "0.50": 2, "1.0": 3, "1.5": 4, "custom": 7}


def csv_text(columns, rows, end="\r\n"):
    out = io.StringIO()
    writer = csv.writer(out, lineterminator=end)
    writer.writerow(columns)
    for row in rows:
        writer.writerow([row.get(c, "") for c in columns])
    return out.getvalue()


def write(path, data):
    with open(path, "wb" if isinstance(data, bytes) else "w", **({} if isinstance(data, bytes)
                                                                 else {"newline": ""})) as f:
        f.write(data)
    return path


def batch(*args):
    done = t.run("batch", *args, "--json", text=False)
    check(f"batch {args[0]}: no NUL in the output", b"\0" not in done.stdout)
    rows = t.json_rows(done.stdout.decode("utf-8"))
    return done.returncode, rows


def hand_design(work, row, label):
    """The design file the row stands for, written by hand."""
    user = row.get("storage") == "user"
    soil = tuple(row.get(c, "") for c in ("ks_mm_hr", "hw_mm", "theta_s", "theta_i",
                                          "root_depth_mm", "omega"))
    return design_file(os.path.join(work, label + ".rfd"), "hand", row["length_ft"],
                       row["capacity_gpm"], row["depth_in"], row["wetted_diameter_ft"],
                       FAMILY_INDEX[row["family"]], 2 if user else 0,
                       row.get("surface_storage_in" if user else "slope_pct", ""),
                       row.get("residue_storage_in" if user else "residue_pct", ""),
                       row.get("k", ""), row.get("n", ""), soil)


def expect(rows, cases, where, work, green_ampt=False):
    """Each case (label, cells, status, message): its row has that status and message, and a row
    that computes gives what compute gives for the same design file written by hand."""
    for got, (label, cells, status, message) in zip(rows, cases):
        check(f"{where}: {label} status", (got["name"], got["status"]) == (label, status), got)
        check(f"{where}: {label} message", got["message"] == message,
              (got["message"], message))
        if status == "ok" and got["status"] == "ok":
            t.compare(f"{where}: {label}", got,
                      t.expected_row(hand_design(work, {**BASE, **cells}, "hand"), green_ampt))
    check(f"{where}: one row per case", len(rows) == len(cases), [r["name"] for r in rows])


def cells_and_quotes(work):
    inventory = os.path.join(work, "cells.csv")

    def at(line):
        return f"{inventory}:{line}: "
    cases = [
        ("blanks around numbers", {"depth_in": "  1.0 ", "length_ft": "1300\t"}, "ok", ""),
        ("an exponent", {"capacity_gpm": "8e2"}, "ok", ""),
        ("a family written long", {"family": "0.50"}, "ok", ""),
        ("decimal comma", {"depth_in": "1,5"}, "check", 'depth_in "1,5" is not a number'),
        ("decimal comma, diameter", {"wetted_diameter_ft": "40,5"}, "check",
         'wetted_diameter_ft "40,5" is not a number'),
        ("digit group mark", {"length_ft": "1_300"}, "check", 'length_ft "1_300" is not a number'),
        ("letter exponent", {"capacity_gpm": "1d3"}, "check", 'capacity_gpm "1d3" is not a number'),
        ("hexadecimal", {"slope_pct": "0x10"}, "check", 'slope_pct "0x10" is not a number'),
        ("a unit", {"residue_pct": "20 %"}, "check", 'residue_pct "20 %" is not a number'),
        ("two numbers", {"depth_in": "1.0 1.5"}, "check", 'depth_in "1.0 1.5" is not a number'),
        ("not a number at all", {"omega": "n/a"}, "check", 'omega "n/a" is not a number'),
        ("decimal comma, family", {"family": "0,5"}, "file",
         'family "0,5" is not 0.1, 0.3, 0.5, 1.0, 1.5, 2.0, 3.0 or custom'),
        ("a doubled quote in a quoted cell", {"storage": 'us"er'}, "file",
         'storage "us"er" is not slope-residue or user'),
        ("a comma in a quoted cell", {"storage": "user, please"}, "file",
         'storage "user, please" is not slope-residue or user'),
    ]
    # A refused row names the inventory and its line.
    cases = [(*c[:3], c[3] if c[2] == "ok" else at(line) + c[3])
             for line, c in enumerate(cases, start=2)]
    write(inventory, csv_text(COLUMNS, [{**BASE, "name": c[0], **c[1]} for c in cases]))
    code, rows = batch(inventory)
    expect(rows, cases, "cells", work)
    check("cells: exit code", code == 5, code)


def formulas(work):
    """Texts a spreadsheet would run as formulas are written to the CSV with a quote in front;
    the JSON keeps them as they are."""
    names = ["=1+1", "+cmd|' /C calc'!A0", "-2+3", "@SUM(A1)", "\tTabbed",
             '=HYPERLINK("http://example.com","click")', "\rReturn"]
    inventory = write(os.path.join(work, "formulas.csv"),
                      csv_text(COLUMNS, [{**BASE, "name": n} for n in names]))
    missing = ["=2+2.rfd", "@x.rfd"]  # design files named so, not there
    inputs = [inventory, *missing]
    out = t.run("batch", *inputs, cwd=work, text=False).stdout.decode()
    table = list(csv.reader(io.StringIO(out, newline="")))[1:]
    _, rows = batch(os.path.join(work, "formulas.csv"))
    want_status = ["ok"] * 5 + ["file", "file"]
    check("formulas: the rows compute as typed", [r["status"] for r in rows] == want_status,
          [(r["status"], r["message"]) for r in rows])
    check("formulas: JSON names as typed", [r["name"] for r in rows] == names, rows)
    check("formulas: CSV text fields neutralised", [line[0] for line in table] ==
          ["'" + n for n in names + missing], [line[0] for line in table])
    check("formulas: design text refused with the design file's words",
          rows[5]["message"].endswith("contains a double quote, which a design file cannot hold."),
          rows[5]["message"])


def encodings(work):
    names = ["Caf\u00e9 M\u00fcller", "Smith\u2019s \u2013 north \u20ac", "Ziegler \U0001d11e east"]
    rows = [{**BASE, "name": n} for n in names]
    utf8 = csv_text(COLUMNS, rows)
    refused = 'the Producer contains the character "\U0001d11e", which a design file cannot hold.'
    cases = [
        ("UTF-8, CR LF", utf8.encode()),
        ("UTF-8, LF, no final line end", csv_text(COLUMNS, rows, "\n").rstrip("\n").encode()),
        ("UTF-8, CR alone", csv_text(COLUMNS, rows, "\r").encode()),
        ("UTF-8 with a byte order mark", b"\xef\xbb\xbf" + utf8.encode()),
        ("UTF-16 LE with a byte order mark", b"\xff\xfe" + utf8.encode("utf-16-le")),
        ("UTF-16 BE with a byte order mark", b"\xfe\xff" + utf8.encode("utf-16-be")),
        ("Windows-1252", csv_text(COLUMNS, rows[:2]).encode("cp1252")),
    ]
    for label, data in cases:
        inventory = write(os.path.join(work, "encoding.csv"), data)
        code, got = batch(inventory)
        want = names if label != "Windows-1252" else names[:2]
        check(f"{label}: names", [r["name"] for r in got] == want, [r["name"] for r in got])
        check(f"{label}: statuses", [r["status"] for r in got] == ["ok", "ok", "file"][:len(want)],
              [(r["status"], r["message"]) for r in got])
        if len(got) == 3:
            check(f"{label}: refused", got[2]["message"] == f"{inventory}:4: {refused}", got[2])
        for r in got[:2]:
            t.compare(label, r, t.expected_row(hand_design(work, BASE, "base")))

    # What does not fit the file's encoding spoils only its own row.
    lines = utf8.encode().split(b"\r\n")
    broken = [
        ("UTF-8 with a stray byte", lines[:2] + [b"Bad \xe9 byte" + lines[1][len(b"Caf\xc3\xa9 M\xc3\xbcller"):]] + lines[2:],
         "the row is not valid UTF-8 (the rest of the file is)"),
        ("a NUL character", lines[:2] + [b"Nul\x00name" + lines[1][len(b"Caf\xc3\xa9 M\xc3\xbcller"):]] + lines[2:],
         "the row holds a NUL character"),
    ]
    for label, data_lines, message in broken:
        inventory = write(os.path.join(work, "broken.csv"), b"\r\n".join(data_lines))
        _, got = batch(inventory)
        check(f"{label}: other names intact", [r["name"] for r in got] ==
              [names[0], f"{inventory}:3", names[1], names[2]], [r["name"] for r in got])
        check(f"{label}: its row", got[1]["status"] == "file" and
              got[1]["message"] == f"{inventory}:3: {message}", got[1])
    surrogate = b"\xff\xfe" + utf8.replace("north", "n\ud800rth", 1).encode("utf-16-le",
                                                                         "surrogatepass")
    inventory = write(os.path.join(work, "surrogate.csv"), surrogate)
    _, got = batch(inventory)
    check("UTF-16 lone surrogate", [(r["name"], r["status"], r["message"]) for r in got][1] ==
          (f"{inventory}:3", "file", f"{inventory}:3: the row is not valid UTF-16"), got)


# The soil texture classes: total porosity, wetting front suction head (cm) and hydraulic
# conductivity (cm/h), as the source's table gives them.
TEXTURES = [("Sand", "0.437", "4.95", "11.78"), ("Loamy sand", "0.437", "6.13", "2.99"),
            ("Sandy loam", "0.453", "11.01", "1.09"), ("Loam", "0.463", "8.89", "0.34"),
            ("Silt loam", "0.501", "16.68", "0.65"), ("Sandy clay loam", "0.398", "21.85", "0.15"),
            ("Clay loam", "0.464", "20.88", "0.10"), ("Silty clay loam", "0.471", "27.30", "0.10"),
            ("Sandy clay", "0.430", "23.90", "0.06"), ("Silty clay", "0.479", "29.22", "0.05"),
            ("Clay", "0.475", "31.63", "0.03")]


def every_column(work):
    """Every column, in an order of their own, under both models; a texture fills the soil cells
    left blank as its class's values in mm, and a typed value wins."""
    columns = ["omega", "texture", "theta_i", "name", "storage", "k", "residue_storage_in",
               "family", "surface_storage_in", "n", "ks_mm_hr", "slope_pct", "hw_mm",
               "wetted_diameter_ft", "theta_s", "residue_pct", "root_depth_mm", "length_ft",
               "capacity_gpm", "depth_in"]
    soil = {"theta_i": "0.1", "root_depth_mm": "800", "omega": "0.0001"}
    cases = [
        ("typed soil, slope and residue", {"family": "1.0", "slope_pct": "3", "residue_pct": "30",
         "ks_mm_hr": "15", "hw_mm": "90", "theta_s": "0.46", "theta_i": "0.22",
         "root_depth_mm": "900", "omega": "0.0003", "length_ft": "1320", "capacity_gpm": "900"}),
        ("typed K and N, storage typed", {"family": "custom", "k": "25", "n": "-0.4",
         "storage": "user", "slope_pct": "", "residue_pct": "", "surface_storage_in": "0.2",
         "residue_storage_in": "0.1", "ks_mm_hr": "8", "hw_mm": "120", "theta_s": "0.45",
         "theta_i": "0.25", "root_depth_mm": "1000", "omega": "0.0002", "length_ft": "1000",
         "capacity_gpm": "700", "depth_in": "0.75", "wetted_diameter_ft": "60"}),
        ("typed value wins", {**soil, "texture": "clay", "ks_mm_hr": "5", "hw_mm": "316.3",
         "theta_s": "0.475", "family": "0.3"}),
    ]
    for name, porosity, suction, conductivity in TEXTURES:
        # Spreadsheets write class names every which way.
        typed = name.upper() if len(name) < 6 else name.lower().replace(" ", "-")
        cases.append((name, {**soil, "texture": typed, "family": "0.3",
                             "ks_mm_hr": str(Decimal(conductivity) * 10),
                             "hw_mm": str(Decimal(suction) * 10), "theta_s": porosity}))
    rows = []
    for label, cells in cases:
        row = {**BASE, "name": label, **cells}
        if "texture" in row and label != "typed value wins":
            row = {**row, "ks_mm_hr": "", "hw_mm": "", "theta_s": ""}  # the texture fills them
        if label == "typed value wins":
            row = {**row, "hw_mm": "", "theta_s": ""}
        rows.append(row)
    rows.append({**BASE, **soil, "name": "unknown texture", "texture": "loamy clay"})
    inventory = write(os.path.join(work, "columns.csv"), csv_text(columns, rows))
    unknown = ("unknown texture", {}, "check", f"{inventory}:{len(rows) + 1}: "
               'texture "loamy clay" is not one of sand, loamy sand, sandy loam, loam, silt '
               "loam, sandy clay loam, clay loam, silty clay loam, sandy clay, silty clay, clay")
    for green_ampt in (False, True):
        code, got = batch(inventory, *(["--green-ampt"] if green_ampt else []))
        expect(got, [(label, cells, "ok", "") for label, cells in cases] + [unknown],
               "Green-Ampt" if green_ampt else "intake family", work, green_ampt)
        check("every column: exit code", code == 5, code)


def design_file_size(work):
    """A row computes exactly when its design file would: up to the 1 MiB a design file may have,
    and past it refused in the same words."""
    empty = hand_design(work, BASE, "empty-name")
    overhead = os.path.getsize(empty) - len("hand")
    limit = 1 << 20
    for size, status in [(limit, "ok"), (limit + 1, "file"), (2 << 20, "file")]:
        name = "N" * (size - overhead)
        inventory = write(os.path.join(work, "long.csv"),
                          csv_text(COLUMNS, [{**BASE, "name": name}]))
        rfd = design_file(os.path.join(work, "long.rfd"), name, *(BASE[c] for c in COLUMNS[1:5]),
                          2, 0, "2", "20")
        check(f"{size} byte design file", os.path.getsize(rfd) == size, os.path.getsize(rfd))
        _, (row,) = batch(inventory)
        _, (from_file,) = batch(rfd)
        check(f"{size} bytes: row {status}", row["status"] == status, row["message"][:200])
        check(f"{size} bytes: design file {status}", from_file["status"] == status,
              from_file["message"][:200])
        if status == "file":
            check(f"{size} bytes: the design file's words",
                  row["message"] == f"Could not open {inventory}:2: File too large." and
                  from_file["message"] == f"Could not open {rfd}: File too large.",
                  (row["message"][:200], from_file["message"][:200]))


work = tempfile.mkdtemp()
try:
    cells_and_quotes(work)
    formulas(work)
    encodings(work)
    every_column(work)
    design_file_size(work)
finally:
    shutil.rmtree(work)
t.finish()
