#!/usr/bin/env python3
"""Whole-process time and peak memory of `rainfold-cli batch` over a generated inventory: the
median of several runs, each from process start to exit, output discarded.

    python3 bench/batch_timing.py [PROGRAM] [--designs N | --mib M] [--runs R] [-- OPTIONS...]

PROGRAM defaults to build/src/cli/rainfold-cli, the inventory to 10,000 designs (--mib M: as
many designs as fill about M MiB) and R to 7. The inventory holds intake-family designs drawn
with a fixed seed over the ranges the checks accept (150 to 3,000 ft, 100 to 3,000 gpm, 0.25 to
3 in, every family, both storage kinds), so every run computes the same designs. Each run goes
through /usr/bin/time -v (when installed) for its peak resident memory. The processor time of
all threads is printed too: on a busy machine the wall time says more about the other work than
about this program.
"""
import argparse
import csv
import os
import random
import re
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
parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
parser.add_argument("program", nargs="?", default=os.path.join(ROOT, "build/src/cli/rainfold-cli"))
size = parser.add_mutually_exclusive_group()
size.add_argument("--designs", type=int, default=10000)
size.add_argument("--mib", type=float)
parser.add_argument("--runs", type=int, default=7)
options = parser.parse_args(args)

TIME = "/usr/bin/time"
rng = random.Random(14)
families = ["0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]
with tempfile.TemporaryDirectory() as work:
    inventory = os.path.join(work, "inventory.csv")
    with open(inventory, "w", newline="") as f:
        out = csv.writer(f)
        out.writerow(["name", "length_ft", "capacity_gpm", "depth_in", "wetted_diameter_ft",
                      "family", "storage", "slope_pct", "residue_pct", "surface_storage_in",
                      "residue_storage_in"])
        designs = 0
        while (f.tell() < options.mib * 2**20) if options.mib else designs < options.designs:
            row = [f"pivot {designs}", rng.randint(600, 2800), rng.randint(300, 2000),
                   round(rng.uniform(0.3, 2.0), 2), rng.choice([6, 40, 50, 60, 100, 120]),
                   rng.choice(families)]
            if rng.random() < 0.7:
                row += ["slope-residue", round(rng.uniform(0.5, 8), 1), rng.randint(0, 80), "", ""]
            else:
                row += ["user", "", "", round(rng.uniform(0, 0.5), 2), round(rng.uniform(0, 0.4), 2)]
            out.writerow(row)
            designs += 1
    mib = os.path.getsize(inventory) / 2**20

    times, cpu, peaks = [], [], []
    timed = [TIME, "-v"] if os.access(TIME, os.X_OK) else []
    for _ in range(options.runs):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        start = time.perf_counter()
        done = subprocess.run([*timed, options.program, "batch", inventory, *extra],
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        times.append(time.perf_counter() - start)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        cpu.append(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)
        stderr = done.stderr.decode(errors="replace")
        if done.returncode not in (0, 5):
            sys.exit(f"rainfold-cli batch exited {done.returncode}: {stderr[-2000:]}")
        peak = re.search(r"Maximum resident set size \(kbytes\): (\d+)", stderr)
        if peak:
            peaks.append(int(peak.group(1)) / 1024)
    print(f"{designs} designs ({mib:.1f} MiB), {options.runs} runs: "
          f"median {statistics.median(times):.3f} s "
          f"(min {min(times):.3f}, max {max(times):.3f}); "
          f"processor time, all threads: median {statistics.median(cpu):.3f} s")
    if peaks:
        print(f"peak resident memory: median {statistics.median(peaks):.1f} MiB "
              f"(max {max(peaks):.1f})")
print(f"load average at the end: {os.getloadavg()[0]:.1f} (other work on the machine slows it)")
