#!/usr/bin/env python3
"""Whole-process time of `rainfold-cli batch` over a generated inventory: the median of several
runs, each from process start to exit, output discarded.

    python3 bench/batch_timing.py [PROGRAM] [DESIGNS] [RUNS] [-- BATCH OPTIONS...]

PROGRAM defaults to build/src/cli/rainfold-cli, DESIGNS to 10,000 and RUNS to 7. The inventory
holds intake-family designs drawn with a fixed seed over the ranges the checks accept (150 to
3,000 ft, 100 to 3,000 gpm, 0.25 to 3 in, every family, both storage kinds), so every run
computes the same designs. The processor time of all threads is printed too: on a busy machine
the wall time says more about the other work than about this program.
"""
import csv
import os
import random
import resource
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
args = sys.argv[1:]
extra = []
if "--" in args:
    extra = args[args.index("--") + 1:]
    args = args[:args.index("--")]
program = args[0] if len(args) > 0 else os.path.join(ROOT, "build/src/cli/rainfold-cli")
designs = int(args[1]) if len(args) > 1 else 10000
runs = int(args[2]) if len(args) > 2 else 7

rng = random.Random(14)
families = ["0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]
with tempfile.TemporaryDirectory() as work:
    inventory = os.path.join(work, "inventory.csv")
    with open(inventory, "w", newline="") as f:
        out = csv.writer(f)
        out.writerow(["name", "length_ft", "capacity_gpm", "depth_in", "wetted_diameter_ft",
                      "family", "storage", "slope_pct", "residue_pct", "surface_storage_in",
                      "residue_storage_in"])
        for i in range(designs):
            row = [f"pivot {i}", rng.randint(600, 2800), rng.randint(300, 2000),
                   round(rng.uniform(0.3, 2.0), 2), rng.choice([6, 40, 50, 60, 100, 120]),
                   rng.choice(families)]
            if rng.random() < 0.7:
                row += ["slope-residue", round(rng.uniform(0.5, 8), 1), rng.randint(0, 80), "", ""]
            else:
                row += ["user", "", "", round(rng.uniform(0, 0.5), 2), round(rng.uniform(0, 0.4), 2)]
            out.writerow(row)

    times, cpu = [], []
    for _ in range(runs):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        start = time.perf_counter()
        done = subprocess.run([program, "batch", inventory, *extra], stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE)
        times.append(time.perf_counter() - start)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        cpu.append(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)
        if done.returncode not in (0, 5):
            sys.exit(f"rainfold-cli batch exited {done.returncode}: {done.stderr.decode()}")
    print(f"{designs} designs, {runs} runs: median {statistics.median(times):.3f} s "
          f"(min {min(times):.3f}, max {max(times):.3f}); "
          f"processor time, all threads: median {statistics.median(cpu):.3f} s")
print(f"load average at the end: {os.getloadavg()[0]:.1f} (other work on the machine slows it)")
