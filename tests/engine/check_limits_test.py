#!/usr/bin/env python3
"""Every check's limits, from one table (check_limits.txt), against the program and against the
user guide: a limit moved in the program, a comparison that lets the limit itself through when it
should not, or a wrong number in the guide fails here.

- The program: rainfold-cli computes a design with each field typed at each limit, a millionth
  inside it and a millionth past it; the checks must give the error, the warning (quoting the text
  as typed) or nothing, as the table says.
- Every table of inputs.html and soils.html with an "Accepted" column: each field's range (and
  what a value above it gets) is the table's; inputs.html states every limit of the table.
- messages.html: the numbers in the meaning of each check's message are exactly that message's
  limits (the low limits, and the high ones a value past gets this message for).

    check_limits_test.py RAINFOLD_CLI GUIDE_FOLDER CHECK_LIMITS_FILE
"""
import html.parser
import os
import re
import shlex
import subprocess
import sys
import tempfile

# The sound design every probe starts from; the initial water content is 0, so the saturated one
# can go down to its own limit.
BASE = dict(txtSYL="1320", txtGPM="900", txtAPPL="1", txtWetDiam="60", txtSurfStore="2",
            txtResidue="30", txtKS="10", txtHW="110", txtThetaS="0.45", txtThetaI="0",
            txtRzDepth="", txtOmega=".0002")


class Tables(html.parser.HTMLParser):
    """Rows of cell texts of every table, with the id of the h2 section it stands in."""

    def __init__(self):
        super().__init__()
        self.tables, self.section, self.row, self.cell = [], None, None, None

    def handle_starttag(self, tag, attrs):
        if tag == "h2":
            self.section = dict(attrs).get("id")
        elif tag == "table":
            self.tables.append((self.section, []))
        elif tag == "tr":
            self.row = []
        elif tag in ("td", "th") and self.row is not None:
            self.cell = ""

    def handle_endtag(self, tag):
        if tag in ("td", "th") and self.cell is not None:
            self.row.append(" ".join(self.cell.split()))
            self.cell = None
        elif tag == "tr" and self.row is not None:
            self.tables[-1][1].append(self.row)
            self.row = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


def read_tables(folder, name):
    parser = Tables()
    with open(os.path.join(folder, name), encoding="utf-8") as f:
        parser.feed(f.read())
    return parser.tables


def read_limits(path):
    limits = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            if not line.strip() or line.startswith("#"):
                continue
            field, when, low, high, above, label, error, *warning = shlex.split(line)
            limits[" ".join(label.split())] = dict(
                field=field, when=when, range=(low[0], float(low[1:]), high[-1:], high[:-1]),
                above=above, error=error, warning=warning)
    return limits


def stated_range(text):
    """(low kind, low, high kind, high) as the table states it; None for no limits at all."""
    n = r"(\d+(?:\.\d+)?)"
    forms = [(rf"{n} to {n}", lambda a, b: ("[", a, "]", b)),
             (rf"above {n}", lambda a: ("(", a, "", "")),
             (rf"above {n}, up to {n}", lambda a, b: ("(", a, "]", b)),
             (rf"{n} or more, below the saturated water content",
              lambda a: ("[", a, ")", "txtThetaS"))]
    for pattern, make in forms:
        m = re.fullmatch(pattern, text)
        if m:
            values = [float(g) for g in m.groups()]
            made = make(*values)
            # the high limit compares as text, as the table file holds it
            return made[:3] + (made[3] if isinstance(made[3], str) else "%g" % made[3],)
    return None


def design_file(fields, option):
    q = lambda *names: ",".join('"%s"' % fields[n] for n in names)
    records = ['"P"', '"L"', '"C","S"', '"D","1/1/2026"',
               q("txtSYL", "txtGPM", "txtAPPL", "txtWetDiam"), "3", str(option),
               q("txtSurfStore", "txtResidue"),
               q("txtKS", "txtHW", "txtThetaS", "txtThetaI", "txtRzDepth", "txtOmega")]
    return ("\r\n".join(records) + "\r\n").encode()


def probe_program(cli, limits, faults):
    """Each limit typed at, a millionth inside and a millionth past it, through rainfold-cli."""
    with tempfile.TemporaryDirectory() as work:
        for label, want in limits.items():
            low_kind, low, high_kind, high = want["range"]
            probes = [(low, "none" if low_kind == "[" else "error"), (low + 1e-6, "none"),
                      (low - 1e-6, "error")]
            if high == "":
                probes.append((1e6, "none"))
            else:
                top = float(BASE[high]) if high in BASE else float(high)
                probes += [(top, "none" if high_kind == "]" else want["above"]),
                           (top - 1e-6, "none"), (top + 1e-6, want["above"])]
            for value, outcome in probes:
                text = "%.6f" % value
                fields = dict(BASE)
                if want["when"] == "option2":  # storage amounts typed once: sound ones first
                    fields.update(txtSurfStore="0.2", txtResidue="0.1")
                fields[want["field"]] = text
                path = os.path.join(work, "probe.rfd")
                with open(path, "wb") as f:
                    f.write(design_file(fields, 2 if want["when"] == "option2" else 0))
                args = [cli, "compute", path] + (["--green-ampt"] if want["when"] == "green-ampt"
                                                 else [])
                done = subprocess.run(args, capture_output=True, text=True)
                said = [l for l in done.stderr.splitlines()
                        if l.startswith(("Warning: ", "Error: "))]
                if outcome == "error":
                    ok = done.returncode == 2 and said == ["Error: " + want["error"]]
                elif outcome == "warning":
                    prefix, suffix = want["warning"]
                    ok = done.returncode != 2 and said[:1] == ["Warning: " + prefix + text + suffix]
                else:
                    ok = done.returncode != 2 and not [l for l in said if l.startswith("Warning")]
                if not ok:
                    faults.append(f"{label} typed as {text}: expected {outcome}, exit "
                                  f"{done.returncode}, {said}")
    return faults


def main(cli, folder, limits_path):
    limits = read_limits(limits_path)
    faults = probe_program(cli, limits, [])
    stated_on = {}
    for page in ("inputs.html", "soils.html"):
        for _, rows in read_tables(folder, page):
            head = rows[0] if rows else []
            if "Accepted" not in head:
                continue
            field_col = next(i for i, h in enumerate(head) if h in ("Field", "Parameter"))
            accepted = head.index("Accepted")
            above_col = head.index("Above the range") if "Above the range" in head else None
            for row in rows[1:]:
                if accepted >= len(row) or not row[accepted]:
                    continue  # a field with no range of its own
                quoted = re.search(r'"([^"]+)"', row[field_col])
                label = " ".join(quoted.group(1).split()) if quoted else row[field_col]
                stated = stated_range(row[accepted])
                if row[accepted] == "any number":
                    if label in limits:
                        faults.append(f"{page}: {label} has limits, the guide says any number")
                    continue
                if row[accepted] == "an entry must be chosen":
                    continue
                if label not in limits:
                    faults.append(f"{page}: {label!r} states a range no check has")
                    continue
                want = limits[label]
                low_kind, low, high_kind, high = want["range"]
                expected = (low_kind, low, "" if high == "" else high_kind,
                            high if high in ("", "txtThetaS") else "%g" % float(high))
                if stated != expected:
                    faults.append(f"{page}: {label}: {row[accepted]!r}, the checks accept "
                                  f"{low_kind}{low:g} .. {high}{high_kind}")
                if above_col is not None:
                    says = {"no limit": "-"}.get(row[above_col], row[above_col])
                    if says != want["above"]:
                        faults.append(f"{page}: {label}: above the range {row[above_col]!r}, "
                                      f"the checks give {want['above']}")
                stated_on.setdefault(label, set()).add(page)
    for label in limits:
        if "inputs.html" not in stated_on.get(label, ()):
            faults.append(f"inputs.html: no range stated for {label}")

    # The numbers each check message's meaning names.
    expected = {}
    for want in limits.values():
        low_kind, low, high_kind, high = want["range"]
        numbers = expected.setdefault(want["error"], set())
        numbers.add(low)
        if want["above"] == "error" and high not in ("", "txtThetaS"):
            numbers.add(float(high))
        if want["warning"]:
            prefix, suffix = want["warning"]
            expected[prefix + "\u2026" + suffix] = {float(high)}
    # HTML shows runs of blanks as one: the messages are compared so.
    expected = {" ".join(m.split()): numbers for m, numbers in expected.items()}
    meanings = {}
    for section, rows in read_tables(folder, "messages.html"):
        if section in ("checks", "green-ampt-messages"):
            for row in rows[1:]:
                meanings[" ".join(row[0].strip('"').split())] = row[1]
    for message, numbers in expected.items():
        if message not in meanings:
            faults.append(f"messages.html: {message!r} is not listed")
            continue
        said = {float(x.replace(",", "")) for x in
                re.findall(r"(?<![\w.])\d[\d,]*(?:\.\d+)?", meanings[message])}
        if said != numbers:
            faults.append(f"messages.html: {message!r} names {sorted(said)}, the checks' limits "
                          f"are {sorted(numbers)}")

    for fault in faults:
        print(fault)
    print(f"{len(limits)} limits, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
