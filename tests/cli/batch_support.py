"""What the batch and inventory tests share: running rainfold-cli, design files written by hand in
the design-file format, and the batch row a design should give, worked out from the result arrays
of `rainfold-cli compute --json` with the results page's own rules (the slot the window opens on,
the outer end, the weighted average of that slot; under Green-Ampt the grid's varying-water-content
runoff and the constant-water-content weighted average)."""
import json
import os
import math
import subprocess

FAMILIES = ["0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]
QUANTITIES = ("hours_per_revolution", "peak_rate_in_hr", "application_time_hr",
              "weighted_runoff_pct", "max_runoff_pct", "first_runoff_ft")


class Checks:
    def __init__(self, cli):
        self.cli = os.path.abspath(cli)
        self.failures = []

    def check(self, name, good, detail=""):
        if not good:
            self.failures.append(f"{name}: {detail}")

    def run(self, *args, **kwargs):
        kwargs.setdefault("capture_output", True)
        kwargs.setdefault("text", True)
        return subprocess.run([self.cli, *args], **kwargs)

    def json_rows(self, out):
        reject = lambda token: (_ for _ in ()).throw(ValueError(token))
        return [json.loads(line, parse_constant=reject) for line in out.splitlines()]

    def finish(self):
        import sys
        for failure in self.failures:
            print("FAILED:", failure, file=sys.stderr)
        print(f"{len(self.failures)} failures")
        sys.exit(1 if self.failures else 0)

    def expected_row(self, design, green_ampt=False):
        """The batch row of a design file, from the arrays that compute --json prints for it."""
        args = ["compute", design, "--json"] + (["--green-ampt"] if green_ampt else [])
        doc = json.loads(self.run(*args).stdout)
        assert doc["status"] == "ok", (design, doc)
        with open(design, encoding="latin-1", newline="") as f:
            records = f.read().split("\r\n")
        index = int(records[5])
        length_ft = float(records[4].split(",")[0].strip('"'))
        slot = 0 if index == 0 else 2 if index == 6 else 1  # the slot the window opens on, from 0
        row = {"family": "Green and Ampt Infiltration" if green_ampt else
               "Customized Values" if index == 7 else FAMILIES[index] + " NRCS Intake Family"}
        for name in QUANTITIES:
            row[name] = []
        for c in range(3):
            if green_ampt:
                runoff = doc["GAVarPctRunoff"][c]
                weighted = doc["GAWeightedRunoff"][c]
            else:
                runoff = [doc["PctRunoff"][c][p][slot] for p in range(10)]
                weighted = doc["WeightedRunoff"][slot][c]
            first = next((p for p in range(10) if runoff[p] > 0), None)
            row["hours_per_revolution"].append(doc["HoursPerRev"][c])
            row["peak_rate_in_hr"].append(doc["PeakRate"][c][9][slot] / 25.4)
            row["application_time_hr"].append(2 * doc["HalfTime"][c][9][slot])
            row["weighted_runoff_pct"].append(weighted)
            row["max_runoff_pct"].append(max(runoff))
            row["first_runoff_ft"].append(None if first is None else (first + 1) * length_ft / 10)
        return row

    def compare(self, name, got, want):
        self.check(name + " family", got["family"] == want["family"], (got["family"], want["family"]))
        for key, values in want.items():
            if key != "family":
                self.check(f"{name} {key}", all(map(same, got[key], values)), (got[key], values))


def same(a, b):
    if a is None or b is None:
        return a is b
    return math.isclose(a, b, rel_tol=1e-12, abs_tol=1e-12)


def design_file(path, name, length, gpm, depth, diameter, family, option, store, residue, k="",
                n="", soil=("", "", "", "", "", "")):
    """A design file written by hand: family is the list index, option the storage option (0:
    slope and residue, 2: storage typed), soil the six Green-Ampt texts."""
    records = [f'"{name}"', '""', '"",""', '"",""', f'"{length}","{gpm}","{depth}","{diameter}"',
               str(family)]
    if family == 7:
        records.append(f'"{k}","{n}"')
    records += [str(option), f'"{store}","{residue}"', ",".join(f'"{s}"' for s in soil)]
    with open(path, "w", newline="", encoding="cp1252") as f:
        f.write("".join(r + "\r\n" for r in records))
    return path
