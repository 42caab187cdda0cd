#!/usr/bin/env python3
"""rainfold-cli chart against the rate chart worked out independently by
tests/data/results_page.py (from the written description, not from the program), and its exit
codes and error objects.

Run:  python3 tests/cli/chart_test.py RAINFOLD_CLI EXAMPLES_FOLDER
"""
import json
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data"))
import results_page as ref  # noqa: E402

cli = sys.argv[1]
failures = []


def check(name, ok, detail=""):
    if not ok:
        failures.append(name + (": " + detail if detail else ""))


def design_file(folder, name, dsg, uk="", un=""):
    q = lambda *items: ",".join('"%s"' % i for i in items)
    lines = [q("P"), q("L"), q("C", "S"), q("D", "1/1/2026"),
             q(dsg["syl"], dsg["gpm"], dsg["appl"], dsg["wet"]), str(dsg["index"])]
    if dsg["index"] == 7:
        lines.append(q(uk, un))
    lines.append(str(dsg["option"]))
    if dsg["option"] in (0, 2):
        lines.append(q(dsg["s"], dsg["r"]))
    else:
        lines += [q(*row) for row in dsg["rows"]]
    lines.append(q(*(dsg[k] for k in ("ks", "hw", "ths", "thi", "rz", "omega"))))
    path = os.path.join(folder, name + ".rfd")
    with open(path, "w", newline="") as f:
        f.write("\r\n".join(lines) + "\r\n")
    return path


def run(*args):
    p = subprocess.run([cli, "chart", *args], capture_output=True, text=True)
    return p.returncode, p.stdout, p.stderr


def near(a, b, tol):
    return a is not None and abs(a - b) <= tol


with tempfile.TemporaryDirectory() as folder:
    # The cell, its design, and the options that pick it (slot: the one the page opens on).
    cells = [("A", 2, 4, 9, []),                                    # ponds, storage filled
             ("A", 2, 3, 0, ["--case", "1", "--position", "1"]),    # never ponds
             ("L", 2, 3, 4, ["--case", "1", "--position", "5"]),    # the LEPA example
             # Green-Ampt positions that never pond: the peak below Ks, and above it but
             # outrun by the capacity of the water applied so far
             ("G", 1, 3, 0, ["--case", "1", "--position", "1", "--green-ampt"]),
             ("G", 1, 3, 1, ["--case", "1", "--position", "2", "--green-ampt"])]
    computed = {}
    for name, slot, column, row, options in cells:
        dsg = ref.DESIGNS[name]
        if name not in computed:
            # Green-Ampt only for the cells charted: the whole design takes a minute
            computed[name] = ref.compute(dict(dsg, green=False))
        if dsg["green"]:
            cell = computed[name][column - 2, row + 1, 2]
            cell["gavar"] = ref.ga.run(cell["P"], cell["H"], ref.soil(dsg, ref.ref.val(dsg["omega"])),
                                       cell["store"])
        want = ref.chart(dsg, computed[name], slot, column, row)
        code, out, err = run(design_file(folder, name, dsg), *options, "--json")
        label = "%s %s" % (name, " ".join(options) or "defaults")
        check(label + " exits 0", code == 0, err)
        if code != 0:
            continue
        got = json.loads(out)
        check(label + " status", got["status"] == "ok" and got["message"] == "")
        for key in ("txtHP", "txtTS", "txtTP"):
            check(label + " " + key, got[key] == want[key], "%s, %s" % (got[key], want[key]))
        check(label + " scale", [got["yMaximum"], got["yDivisions"]] == list(want["scale"]))
        for key, expected, tol in (("time", want["times"], 6e-5),
                                   ("application", want["application"], 6e-5),
                                   ("intake", want["intake"], 6e-5)):
            values = got[key]
            check(label + " " + key + " has 101 points", len(values) == 101)
            bad = [k for k, (g, w) in enumerate(zip(values, expected)) if not near(g, w, tol)]
            check(label + " " + key, not bad, "first at %s" % (bad[:1],))
        tp, rate = want["marker"]
        if tp == 0:
            check(label + " no ponding marker", got["ponding"] is None)
        else:
            check(label + " ponding marker", got["ponding"] is not None and
                  near(got["ponding"][0][0], tp, 1e-4) and got["ponding"][0][1] == 0 and
                  near(got["ponding"][1][1], rate, 6e-5), str(got["ponding"]))
        if want["storage"] is None:
            check(label + " no storage marker", got["storage"] is None)
        else:
            ts, intake, application = want["storage"]
            check(label + " storage marker", got["storage"] is not None and
                  near(got["storage"][0][0], ts, 1e-4) and
                  near(got["storage"][0][1], intake, 2e-4) and
                  near(got["storage"][1][1], application, 2e-4), str(got["storage"]))

    # Refusals: the usage, a fault of the computation, a slot that is not computed. With --json
    # each prints one error object.
    a = design_file(folder, "A", ref.DESIGNS["A"])
    custom = dict(ref.DESIGNS["A"], index=7)
    zero_k = design_file(folder, "zeroK", custom, uk="0", un="-0.4")
    typed = design_file(folder, "typed", custom, uk="20", un="-0.4")
    for label, args, code in (("position 11", [a, "--position", "11"], 64),
                              ("case 0", [a, "--case", "0"], 64),
                              ("K of 0", [zero_k], 3),
                              ("slot 3 of typed values", [typed, "--slot", "3"], 64),
                              ("missing file", [os.path.join(folder, "none.rfd")], 1)):
        got, out, err = run(*args, "--json")
        check(label + " exit code", got == code, "%d: %s" % (got, err))
        try:
            doc = json.loads(out)
            check(label + " error object", doc["status"] == "error" and doc["message"] != "")
        except ValueError:
            check(label + " error object", False, out)

    # Whole-number options of every command: what is not a number is told apart from what is out
    # of range.
    pdf = os.path.join(folder, "out.pdf")
    for command, option, text, said in (
            (["chart", a], "--case", "abc", "--case: abc is not a whole number"),
            (["chart", a], "--position", "2.5", "--position: 2.5 is not a whole number"),
            (["chart", a], "--position", "11", "--position: Value 11 not in range 1 to 10"),
            (["report", a, "--pdf", pdf], "--case", "x", "--case: x is not a whole number"),
            (["plot", a, "--pdf", pdf], "--position", "0", "--position: Value 0 not in range"),
            (["explore", a, "--json"], "--columns", "1e2", "--columns: 1e2 is not a whole number"),
            (["explore", a, "--json"], "--rows", "1001", "--rows: Value 1001 not in range 2 to")):
        p = subprocess.run([cli, *command, option, text], capture_output=True, text=True)
        check(" ".join([command[0], option, text]), p.returncode == 64 and said in p.stderr
              and not os.path.exists(pdf), p.stderr.strip())

# Every cell of every shipped example draws under both models.
examples = sys.argv[2]
for name in sorted(n for n in os.listdir(examples) if n.endswith(".rfd")):
    for model in ([], ["--green-ampt"]):
        for case in ("1", "2", "3"):
            for position in range(1, 11):
                args = [os.path.join(examples, name), *model, "--case", case,
                        "--position", str(position), "--json"]
                code, out, err = run(*args)
                ok = code == 0 and json.loads(out)["status"] == "ok"
                check("chart " + " ".join(args[1:-1]) + " of " + name, ok, err.strip())

for f in failures:
    print("FAILED: " + f, file=sys.stderr)
print("%d failures" % len(failures))
sys.exit(1 if failures else 0)
