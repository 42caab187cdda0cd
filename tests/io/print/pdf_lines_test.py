#!/usr/bin/env python3
"""The PDF files of `rainfold-cli report` and `rainfold-cli plot`, read back with pdftotext.

Every line the page should carry must appear, in reading order. The expected texts are built
here from the page's fixed words, from the example design files' own fields and from the results
page that `rainfold-cli compute` prints for the same design (the printed pages show those texts
again; the numbers themselves are checked by the engine's tests).

usage: pdf_lines_test.py RAINFOLD_CLI EXAMPLES_DIR
"""

import os
import re
import subprocess
import sys
import tempfile

CLI, EXAMPLES = sys.argv[1], sys.argv[2]
failures = []


def run(*args):
    done = subprocess.run([CLI, *args], capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"rainfold-cli {' '.join(args)} exited {done.returncode}: {done.stderr}")
    return done.stdout


def page_text(pdf):
    text = subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True,
                          check=True).stdout
    return " ".join(text.split())


def squeeze(s):
    return " ".join(s.split())


def results_page(design, *options):
    """The results page of `compute`: headings, summaries and the ten rows."""
    lines = run("compute", design, *options).splitlines()
    page = {"family": lines[0].split(": ", 1)[1], "grid": []}
    for line in lines:
        words = line.split()
        if line.startswith("Hours per Revolution"):
            page["hours"] = words[-3:]
        elif line.startswith("Peak Water Application Rate"):
            page["hpv"] = words[-3:]
        elif line.startswith("Water Application Time"):
            page["tpv"] = words[-3:]
        elif line.startswith("Weighted Average Percent Runoff"):
            page["warp"] = words[-3:]
        elif len(words) == 6 and re.fullmatch(r"[0-9.E+-]+", words[0]):
            page["grid"].append(words)
    page["gpm"] = lines[2].split()
    assert len(page["grid"]) == 10, lines
    return page


def design_fields(design):
    with open(design, encoding="latin-1", newline="") as f:
        records = [re.findall(r'"([^"]*)"|(-?\d+)', line) for line in f.read().split("\r\n")]
    records = [[q or n for q, n in r] for r in records if r]
    fields = {
        "producer": records[0][0], "location": records[1][0], "county": records[2][0],
        "state": records[2][1], "designer": records[3][0], "date": records[3][1],
        "length": records[4][0], "gpm": records[4][1], "depth": records[4][2],
        "diameter": records[4][3], "family": int(records[5][0]),
    }
    at = 6 + (fields["family"] == 7)
    fields["option"] = int(records[at][0])
    if fields["option"] in (0, 2):
        fields["store"], fields["residue"] = records[at + 1]
    else:
        fields["segments"] = records[at + 1:at + 11]
    return fields


def expect_in_order(name, text, expected):
    at = 0
    for fragment in expected:
        found = text.find(squeeze(fragment), at)
        if found < 0:
            failures.append(f"{name}: missing or out of order: {fragment!r}\n  after: "
                            f"{text[max(0, at - 80):at]!r}")
            return
        at = found + len(squeeze(fragment))


def header(f, model, capacity):
    return [
        "Version ", "Rainfold", "General Information",
        "Producer: " + f["producer"], "Designed by:  " + f["designer"], "Date:  " + f["date"],
        "Location: " + f["location"], "Checked by: ____________________   Date: _________",
        "County: " + f["county"], "      State: " + f["state"],
        "System Information", "Soils Information",
        "System Length = " + f["length"] + " ft", model,
        "System Capacity = " + capacity + " gpm",
    ]


def report_lines(f, page, model, case):
    option = f["option"]
    storage = {0: "Slope = " + f.get("store", "") + " %", 1: "Slope (%) varies ",
               2: "Surface storage = " + f.get("store", "") + " in", 3: "Surface storage varies"}
    residue = {0: "Residue = " + f.get("residue", "") + " %", 1: "Percent residue varies ",
               2: "Residue storage = " + f.get("residue", "") + " in",
               3: "Residue storage varies"}
    lines = header(f, model, page["gpm"][case - 1]) + [
        storage[option], "Application Depth = " + f["depth"] + " in", residue[option],
        "Sprinkler Wetted Diameter = " + f["diameter"] + " ft",
        "Weighted Average Percent Runoff  =  " + page["warp"][1] + "%",
    ]
    if option in (1, 3):
        # The examples hold storage amounts per segment (the other varying option is covered
        # by the drawing routine's own tests).
        lines += ["System Surface Residue Surface",
                  "Length Storage Storage Storage " + " ".join(page["gpm"]),
                  "(feet) (in) (in) (in) (gpm) (gpm) (gpm)"]
        for row, segment in zip(page["grid"], f["segments"]):
            lines.append(" ".join([row[0], *segment, *row[2:]]))
    else:
        lines += ["System Wetted Surface",
                  "Length Diameter Storage " + " ".join(page["gpm"]),
                  "(feet) (feet) (in) (gpm) (gpm) (gpm)"]
        lines += [" ".join(row) for row in page["grid"]]
    lines += ["Weighted Average Percent " + " ".join(page["warp"]),
              "Hours per Revolution " + " ".join(page["hours"]),
              "Peak Water Application Rate " + " ".join(page["hpv"]),
              "Water Application Time " + " ".join(page["tpv"])]
    return lines


def plot_lines(f, page, model, case, position):
    row = page["grid"][position - 1]
    return header(f, model, page["gpm"][case - 1]) + [
        "Surface Storage = " + row[2] + " in",
        "Application Depth = " + f["depth"] + " in",
        "Sprinkler Wetted Diameter = " + f["diameter"] + " ft",
        "Weighted Average Percent Runoff  =  " + page["warp"][1] + "%",
        "Distance from Pivot = " + row[0] + " ft",
        "  at " + page["gpm"][case - 1] + " gpm",
        "Percent Runoff = " + row[2 + case] + "%",
        "Peak Application Rate = ",
        "Time to Saturation = ",
        "Time to Peak Application = ",
    ]


def check(kind, design_name, case, position=None, green=False):
    design = os.path.join(EXAMPLES, design_name)
    options = ["--green-ampt"] if green else []
    f = design_fields(design)
    page = results_page(design, *options)
    model = "Green-Ampt Infiltration" if green else \
        "Modified Intake Infiltration - " + page["family"]
    with tempfile.TemporaryDirectory() as tmp:
        pdf = os.path.join(tmp, "out.pdf")
        args = [kind, design, "--pdf", pdf, "--case", str(case), *options]
        if position:
            args += ["--position", str(position)]
        run(*args)
        text = page_text(pdf)
    name = f"{kind} {design_name} case {case}" + (f" position {position}" if position else "")
    if kind == "report":
        expect_in_order(name, text, report_lines(f, page, model, case))
    else:
        expect_in_order(name, text, plot_lines(f, page, model, case, position))
        if position == 10 and case == 2:
            # The outer end of the capacity as entered: the results page's own summaries.
            expect_in_order(name, text, ["Peak Application Rate = " + page["hpv"][1] + " in/hr"])
            tp = re.search(r"Time to Peak Application = ([0-9.]+) hr", text)
            if not tp or abs(2 * float(tp.group(1)) - float(page["tpv"][1])) > 1e-9:
                failures.append(f"{name}: time to peak is not half the application time")


CASES = [
    ("report", "spray-1300ft-800gpm.rfd", 2, None, False),
    ("report", "spray-1300ft-800gpm.rfd", 1, None, False),
    ("report", "customized-variable-storage.rfd", 3, None, False),
    ("report", "lepa-1320ft-900gpm.rfd", 2, None, True),
    ("plot", "spray-1300ft-800gpm.rfd", 2, 10, False),
    ("plot", "lepa-1320ft-900gpm.rfd", 3, 3, False),
    ("plot", "customized-variable-storage.rfd", 1, 10, False),
]
failed = 0
for kind, name, case, position, green in CASES:
    before = len(failures)
    check(kind, name, case, position, green)
    failed += len(failures) > before
for f in failures:
    print(f)
print(f"{len(CASES) - failed} passed, {failed} failed")
sys.exit(1 if failed else 0)
