#!/usr/bin/env python3
"""rainfold-cli's JSON against its written contract: the keys the guide's reference page
(json.html) and the man page list for each command are exactly the keys the command prints;
every object starts with "schemaVersion"; every number is the shortest text that reads back as
its double; the inch twins are the millimetre values divided by 25.4; a design read from
standard input ("-") computes as the same file does, and is bounded like one.

    json_contract_test.py RAINFOLD_CLI EXAMPLES_FOLDER GUIDE_FOLDER MAN_PAGE
"""
import html.parser
import json
import os
import re
import subprocess
import sys
import tempfile

cli, examples, guide, man_page = sys.argv[1:5]
spray = os.path.join(examples, "spray-1300ft-800gpm.rfd")
failures = []

def check(name, ok, detail=""):
    if not ok:
        failures.append(name + (": " + str(detail) if detail else ""))


class KeyTables(html.parser.HTMLParser):
    """The first cell of every row of the tables of class "keys", by table id."""

    def __init__(self):
        super().__init__()
        self.tables, self.table, self.row, self.cell = {}, None, None, None

    def handle_starttag(self, tag, attrs):
        a = dict(attrs)
        if tag == "table" and a.get("class") == "keys":
            self.table = self.tables.setdefault(a["id"].removesuffix("-keys"), [])
        elif tag == "tr" and self.table is not None:
            self.row = []
        elif tag == "td" and self.row is not None:
            self.cell = ""

    def handle_endtag(self, tag):
        if tag == "table":
            self.table = None
        elif tag == "td" and self.cell is not None:
            self.row.append(self.cell.strip())
            self.cell = None
        elif tag == "tr" and self.row:
            self.table.append(self.row[0])
            self.row = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


def man_keys(path):
    """The keys of the man page's JSON OUTPUT section: ".TP" then ".B key", by ".SS" command."""
    text = open(path, encoding="utf-8").read()
    section = text.split(".SH JSON OUTPUT", 1)[1].split("\n.SH ", 1)[0]
    tables = {}
    for part in section.split("\n.SS ")[1:]:
        title, body = part.split("\n", 1)
        command = "error" if "error" in title else title.split()[0]
        tables[command] = re.findall(r"^\.TP\n\.B (\S+)$", body, re.M)
    return tables


def key_paths(doc, prefix=""):
    """Every key of an object, nested objects as "outer.inner", in order."""
    keys = []
    for key, value in doc.items():
        keys.append(prefix + key)
        if isinstance(value, dict):
            keys += key_paths(value, prefix + key + ".")
    return keys


def significant(text):
    mantissa = re.split("[eE]", text.lstrip("-"))[0].replace(".", "")
    return mantissa.strip("0") or "0"


NUMBER = re.compile(r'"(?:[^"\\]|\\.)*"|(-?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?)')


def check_numbers(label, raw):
    """Each number token reads back as a double whose shortest text has as many digits."""
    bad = []
    for match in NUMBER.finditer(raw):
        token = match.group(1)
        if token is None:
            continue
        mantissa = re.split("[eE]", token)[0]
        # "0.1230" and "800.0" carry digits the double does not need, as does a 17th digit.
        if significant(token) != significant(repr(float(token))) or (
                "." in mantissa and mantissa.endswith("0")):
            bad.append(token)
    check(label + ": numbers are the shortest texts of their doubles", not bad, bad[:5])


def run(args, stdin=None):
    return subprocess.run([cli, *args], input=stdin, capture_output=True,
                          env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))


def objects(label, args, code=0, stdin=None):
    done = run(args, stdin)
    check(label + " exit code", done.returncode == code, (done.returncode, done.stderr[-300:]))
    raw = done.stdout.decode()
    check_numbers(label, raw)
    docs = [json.loads(line) for line in raw.splitlines()]
    for doc in docs:
        check(label + ": schemaVersion first", list(doc)[:1] == ["schemaVersion"] and
              doc["schemaVersion"] == 1, list(doc)[:3])
    return docs


def main():
    page = KeyTables()
    page.feed(open(os.path.join(guide, "json.html"), encoding="utf-8").read())
    documents = {"json.html": page.tables, "rainfold-cli.1": man_keys(man_page)}

    with tempfile.TemporaryDirectory() as work:
        lepa = os.path.join(examples, "lepa-1320ft-900gpm.rfd")
        missing = os.path.join(work, "missing.rfd")
        # Each command's objects; compute once per model, so the Green-Ampt keys are covered.
        printed = {
            "compute": objects("compute", ["compute", spray, "--json"]) +
            objects("compute --green-ampt", ["compute", lepa, "--json", "--green-ampt"]),
            "chart": objects("chart", ["chart", spray, "--json", "--position", "9"]) +
            objects("chart --green-ampt", ["chart", lepa, "--json", "--green-ampt"]),
            "explore": objects("explore", ["explore", spray, "--json", "--columns", "3",
                                           "--rows", "2", "--target", "5"]),
            "batch": objects("batch", ["batch", os.path.join(examples, "inventory.csv"),
                                       "--json", "--jobs", "1"]),
            "error": objects("error", ["compute", missing, "--json"], code=1) +
            objects("error of chart", ["chart", missing, "--json"], code=1) +
            objects("error of explore", ["explore", missing, "--json"], code=1),
        }
        for name, tables in documents.items():
            check(name + " documents every command", set(tables) == set(printed),
                  sorted(tables))
            for command, docs in printed.items():
                seen = {k for doc in docs for k in key_paths(doc)}
                listed = set(tables.get(command, []))
                check("%s: %s keys printed but not documented" % (name, command),
                      not seen - listed, sorted(seen - listed))
                check("%s: %s keys documented but not printed" % (name, command),
                      not listed - seen, sorted(listed - seen))

        # The inch twins, worked out here from the millimetre values.
        for doc in printed["compute"]:
            pairs = [("SurfStore", "SurfStore_in"), ("PeakRate", "PeakRate_in_hr"),
                     ("GAVarFTf", "GAVarFTf_in")]
            for mm, inches in pairs:
                if mm not in doc:
                    continue
                flat = lambda v: [x for e in v for x in flat(e)] if isinstance(v, list) else [v]
                want = [None if v is None else v / 25.4 for v in flat(doc[mm])]
                check(inches + " is " + mm + " / 25.4", flat(doc[inches]) == want)
        # The design on standard input computes as the file does, for every command that takes
        # one; the printed pages are drawn.
        design = open(spray, "rb").read()
        for command in ("compute", "chart", "explore"):
            extra = ["--json"] + (["--columns", "3", "--rows", "2"] if command == "explore" else [])
            by_path, piped = run([command, spray, *extra]), run([command, "-", *extra], design)
            check(command + " - reads standard input",
                  piped.returncode == 0 and piped.stdout == by_path.stdout, piped.stderr[-200:])
        for command in ("report", "plot"):
            pdf = os.path.join(work, command + ".pdf")
            done = run([command, "-", "--pdf", pdf], design)
            check(command + " - draws the page", done.returncode == 0 and
                  open(pdf, "rb").read(5) == b"%PDF-", done.stderr[-200:])
        # Bounded like a file: a byte past 1 MiB is refused, a damaged design named as such.
        for label, data, message in (
                ("over 1 MiB", design + b" " * (1 << 20), "File too large."),
                ("empty", b"", "the file ends before record 1.")):
            done = run(["compute", "-"], data)
            check("standard input " + label, done.returncode == 1 and
                  done.stderr.decode().strip() == "Could not open standard input: " + message,
                  done.stderr)

    for f in failures:
        print("FAILED: " + f, file=sys.stderr)
    print("%d failures" % len(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
