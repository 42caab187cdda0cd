#!/usr/bin/env python3
"""Two builds of rainfold-cli must compute the same: `compute --json` (with and without
--green-ampt) over generated designs, ordinary and extreme, and `batch` (CSV and --json) over a
folder of them and over generated inventories, give the same exit codes, the same standard error
and byte for byte the same standard output. Every JSON number is the shortest text that reads
back as its double, so equal text is equal doubles. Run it before and after a change that should
make the program faster and nothing else.

    python3 bench/compare_builds.py REFERENCE_CLI CANDIDATE_CLI [--designs N] [--rows N] [--seed S]
"""
import argparse
import concurrent.futures
import csv
import math
import os
import random
import subprocess
import sys
import tempfile

parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
parser.add_argument("reference")
parser.add_argument("candidate")
parser.add_argument("--designs", type=int, default=3000)
parser.add_argument("--rows", type=int, default=20000)
parser.add_argument("--seed", type=int, default=1)
options = parser.parse_args()
rng = random.Random(options.seed)


def log_uniform(low, high):
    return math.exp(rng.uniform(math.log(low), math.log(high)))


def number(x):
    """A number as a user or a spreadsheet might type it."""
    return rng.choice([f"{x:.6g}", f"{x:.2f}", repr(x), f"{x:.10g}"])


def extreme(low, high, edges):
    return rng.choice(edges) if rng.random() < 0.15 else number(log_uniform(low, high))


def design_bytes(n):
    q = lambda *items: ",".join(f'"{x}"' for x in items) + "\r\n"
    wild = n % 2 == 1  # every other design reaches past the checks' ranges
    text = q(f"Design {n}") + q(f"Section {n}") + q("Custer", "NE") + q("JD", "5/1/26")
    if wild:
        text += q(extreme(150, 3000, ["150", "3000", "3001", "100", "1e5", "1e400", "0"]),
                  extreme(100, 3000, ["100", "200", "200.5", "3000", "1e7", "-5", "12.6"]),
                  extreme(0.25, 10, ["0.25", "3", "0.01", "0.24", "1e-3", "1e300"]),
                  extreme(1, 400, ["1", "150", "0.5", "0.9", "1e200"]))
    else:
        text += q(rng.randint(150, 3000), rng.randint(300, 2500), round(rng.uniform(0.25, 3), 2),
                  rng.choice([1, 6, 25, 40, 60, 90, 120, 150]))
    family = rng.choice([-1, 0, 1, 2, 3, 4, 5, 6, 7, 7]) if wild else rng.randrange(8)
    text += f"{family}\r\n"
    if family == 7:
        text += q(extreme(0.05, 500, ["0", "-3", "1e300", "83.82"]),
                  rng.choice([number(rng.uniform(-0.99, -0.05)), "-1", "-1.2", "0", "0.2",
                              "-0.999999", "-0.615"]))
    option = rng.randrange(4)
    text += f"{option}\r\n"
    huge = ["0", "1e-9", "5", "1e300", "1e308"] if wild else ["0"]
    if option == 0:
        text += q(extreme(0.1, 40, ["0.1", "1", "3", "5", "40"]), rng.randint(0, 100))
    elif option == 2:
        text += q(extreme(1e-4, 0.5, huge), extreme(1e-4, 0.4, huge))
    else:
        for _ in range(10):
            text += q(number(rng.uniform(0, 8)), rng.randint(0, 100)) if option == 1 else q(
                extreme(1e-4, 0.6, huge), number(rng.uniform(0, 0.1)))
    theta_s = rng.uniform(0.3, 0.5)
    text += q(extreme(0.1, 500, ["0.001", "1e4"]), rng.randint(10, 1000), f"{theta_s:.3f}",
              f"{rng.uniform(0, theta_s if wild else theta_s * 0.8):.3f}", rng.randint(300, 1500),
              rng.choice(["0", ".0002", "-0.0001", "0.01"]))
    return text.encode("cp1252")


def inventory_rows(count):
    """Rows like the timing benchmark's, then rows at and past every edge."""
    families = ["0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]
    yield ["name", "length_ft", "capacity_gpm", "depth_in", "wetted_diameter_ft", "family", "k",
           "n", "storage", "slope_pct", "residue_pct", "surface_storage_in", "residue_storage_in"]
    for n in range(count):
        wild = n % 5 == 0
        family = rng.choice(families + ["custom", ""] if wild else families)
        k = n_ = ""
        if family == "custom":
            k, n_ = extreme(0.05, 500, ["0", "-1"]), number(rng.uniform(-1.1, 0.1))
        row = [f"pivot {n}",
               extreme(150, 3000, ["150", "3000", "1e5"]) if wild else rng.randint(600, 2800),
               extreme(100, 3000, ["100", "200", "1e6"]) if wild else rng.randint(300, 2000),
               extreme(0.01, 10, ["0.25", "3"]) if wild else round(rng.uniform(0.3, 2.0), 2),
               extreme(0.5, 400, ["1", "150"]) if wild else rng.choice([6, 40, 60, 100, 120]),
               family, k, n_]
        if rng.random() < 0.6:
            row += ["slope-residue", round(rng.uniform(0.1, 40 if wild else 8), 1),
                    rng.randint(0, 100), "", ""]
        else:
            row += ["user", "", "", extreme(1e-4, 0.5, ["0", "1e300"]) if wild else
                    round(rng.uniform(0, 0.5), 2), round(rng.uniform(0, 0.4), 2)]
        yield row


def run(program, args):
    done = subprocess.run([program, *args], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          timeout=600)
    return done.returncode, done.stderr, done.stdout


def compare(args):
    a, b = run(options.reference, args), run(options.candidate, args)
    if a == b:
        return a[0], None
    what = next(name for name, x, y in zip(("exit code", "standard error", "standard output"), a,
                                           b) if x != y)
    first = next((i for i, (x, y) in enumerate(zip(a[2], b[2])) if x != y), len(a[2]))
    return a[0], f"{' '.join(args)}: {what} differs (output from byte {first}: " \
        f"{a[2][max(0, first - 40):first + 40]!r} / {b[2][max(0, first - 40):first + 40]!r})"


with tempfile.TemporaryDirectory() as work:
    folder = os.path.join(work, "designs")
    os.mkdir(folder)
    runs = []
    for n in range(options.designs):
        path = os.path.join(folder, f"d{n:05}.rfd")
        with open(path, "wb") as f:
            f.write(design_bytes(n))
        runs += [["compute", path, "--json"], ["compute", path, "--json", "--green-ampt"]]
    inventory = os.path.join(work, "inventory.csv")
    with open(inventory, "w", newline="") as f:
        csv.writer(f).writerows(inventory_rows(options.rows))
    for source in (folder, inventory):
        runs += [["batch", source], ["batch", source, "--json"],
                 ["batch", source, "--json", "--green-ampt", "--jobs", "3"]]
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        outcomes = list(pool.map(compare, runs))
differences = [d for _, d in outcomes if d]
codes = {}
for code, _ in outcomes[:2 * options.designs]:
    codes[code] = codes.get(code, 0) + 1
print(f"{len(runs)} runs of both programs ({options.designs} designs, {options.rows} inventory "
      f"rows); compute exit codes {dict(sorted(codes.items()))}")
for d in differences[:10]:
    print(d)
sys.exit(f"{len(differences)} runs differ" if differences else 0)
