#!/usr/bin/env python3
"""Start-up time of the window program: from the moment the process is started to the moment its
main window is mapped on the X display, the median of several runs.

    python3 tools/startup_time.py [PROGRAM] [RUNS]
PROGRAM defaults to build/src/app/rainfold, RUNS to 10. Without a display the script starts itself
again on a virtual one (xvfb-run, with -noreset so that the display stays up between runs). The window is looked for by its title
with xwininfo (x11-utils) every 2 ms, so the figures carry a few milliseconds of polling.
"""
import os
import statistics
import subprocess
import sys
import time

TITLE = "Potential Runoff Analysis"


def window_viewable():
    probe = subprocess.run(["xwininfo", "-name", TITLE], capture_output=True, text=True)
    return probe.returncode == 0 and "IsViewable" in probe.stdout


def one_run(program):
    start = time.perf_counter()
    proc = subprocess.Popen([program], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    try:
        while not window_viewable():
            if proc.poll() is not None:
                err = proc.stderr.read().decode(errors="replace") if proc.stderr else ""
                raise RuntimeError(f"the program ended ({proc.returncode}) before its window appeared {err}")
            if time.perf_counter() - start > 30:
                raise RuntimeError("no window after 30 s")
            time.sleep(0.002)
        return time.perf_counter() - start
    finally:
        proc.terminate()
        proc.wait()


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    program = sys.argv[1] if len(sys.argv) > 1 else os.path.join(root, "build/src/app/rainfold")
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    if not os.environ.get("DISPLAY"):
        server = "-screen 0 1280x1024x24 -noreset"
        os.execvp("xvfb-run", ["xvfb-run", "-a", "-s", server, sys.executable] + sys.argv)
    one_run(program)  # warms the file cache; not counted
    times = [one_run(program) for _ in range(runs)]
    ms = sorted(round(t * 1000, 1) for t in times)
    print(f"runs (ms, sorted): {ms}")
    print(f"median start-up time: {statistics.median(times) * 1000:.1f} ms over {runs} runs")


if __name__ == "__main__":
    main()
