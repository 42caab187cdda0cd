#!/usr/bin/env bash
# rainfold-cli explore end to end: the shape of its JSON and CSV, the pictures, usage errors, and
# its current design's runoff against the compute command's weighted average.
# Needs RAINFOLD_CLI (the program) and RAINFOLD_EXAMPLES (the folder of example designs).
set -u

cli=${RAINFOLD_CLI:?RAINFOLD_CLI must name rainfold-cli}
spray=${RAINFOLD_EXAMPLES:?RAINFOLD_EXAMPLES must name the examples folder}/spray-1300ft-800gpm.rfd
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

check() { # check NAME COMMAND...: passes when the command succeeds
    local name=$1
    shift
    "$@" || { failed=$((failed + 1)); echo "FAILED: $name" >&2; }
}

exits_with() { # exits_with CODE ARGS...: output in $work/out
    local code=$1
    shift
    "$cli" "$@" >"$work/out" 2>"$work/err"
    local got=$?
    [ "$got" -eq "$code" ] || { echo "  exit $got, expected $code: $*" >&2; return 1; }
}

py() { python3 -c "$1" "$work"; }

for args in "" "--json --csv" "--json --y width" "--json --target 101" "--json --columns 1" \
    "--json --target nan" "--json --target 0x10" "--json --target inf" "--json --target 5%" \
    "--json --criterion circle" "--json --rows 1" "--json --columns 1001"; do
    # shellcheck disable=SC2086
    check "usage error: explore $args" exits_with 64 explore "$spray" $args
done
# Each limit itself is accepted: a target of 0 or 100 %, a map of 2 x 2.
for target in 0 100; do
    check "target $target" exits_with 0 explore "$spray" --json --columns 2 --rows 2 --target $target
done

check "JSON of a 7 x 5 map" exits_with 0 explore "$spray" --json --columns 7 --rows 5 --target 2
cp "$work/out" "$work/map.json"
check "JSON shape" py '
import json, sys
raw = open(sys.argv[1] + "/map.json").read()
doc = json.loads(raw)
assert list(doc) == ["schemaVersion", "status", "message", "x", "y", "xValues", "yValues", "runoff", "target",
                     "criterion", "current", "minWettedDiameter", "maxDepth"], list(doc)
assert (doc["status"], doc["message"], doc["x"], doc["y"]) == ("ok", "", "wettedDiameter", "depth")
assert doc["criterion"] == "average"
# 150^(i/6) = 1, 2.305, 5.314, 12.25, 28.23, 65.08, 150 to the fewest digits that keep each
# within a tenth of a step (ln 150 / 6) of its place: two; the depths 0.25 + 0.6875 i to one
# decimal, the ends exact.
x, y = doc["xValues"], doc["yValues"]
assert x == [1, 2.3, 5.3, 12, 28, 65, 150], x
assert y == [0.25, 0.9, 1.6, 2.3, 3], y
assert len(doc["runoff"]) == 5 and all(len(r) == 7 for r in doc["runoff"])
assert all(v is None or 0 <= v <= 100 for r in doc["runoff"] for v in r)
# More depth never runs off less at the widest package; the narrowest runs off at 3 in.
column = [r[-1] for r in doc["runoff"]]
assert column == sorted(column) and doc["runoff"][-1][0] > 0
assert doc["target"] == 2
assert doc["current"]["wettedDiameter"] == 40 and doc["current"]["depth"] == 1
assert 0 <= doc["current"]["runoff"] <= 2 < doc["runoff"][-1][0]
assert 1 <= doc["minWettedDiameter"] <= 40 and 1 <= doc["maxDepth"] <= 3
assert round(doc["minWettedDiameter"] * 10) == doc["minWettedDiameter"] * 10
'

# The current design is the results page of the compute command, to the last digit.
check "compute --json" exits_with 0 compute "$spray" --json
cp "$work/out" "$work/compute.json"
check "current runoff is the page's weighted average" py '
import json, sys
explore = json.load(open(sys.argv[1] + "/map.json"))
compute = json.load(open(sys.argv[1] + "/compute.json"))
assert explore["current"]["runoff"] == compute["WeightedRunoff"][1][1], (explore, compute)
assert explore["current"]["outerEnd"] == compute["PctRunoff"][1][9][1], (explore, compute)
'

# The outer end: its answers meet the target at the grid's last row, which the weighted average
# leaves out, so they ask for more than the average does.
check "outer-end JSON" exits_with 0 explore "$spray" --json --columns 2 --rows 2 --target 2 \
    --criterion outer-end
check "outer-end answers" py '
import json, sys
doc = json.load(open(sys.argv[1] + "/out"))
average = json.load(open(sys.argv[1] + "/map.json"))
assert doc["criterion"] == "outer-end"
assert doc["minWettedDiameter"] > average["minWettedDiameter"]
assert doc["maxDepth"] < average["maxDepth"]
'

check "CSV of the storage axis" exits_with 0 explore "$spray" --csv --y storage --columns 4 --rows 3
check "CSV shape" py '
import csv, sys
lines = open(sys.argv[1] + "/out", newline="").read().split("\r\n")
facts = dict(csv.reader(lines[:11]))
assert list(facts) == ["Producer", "Location", "Designer", "Date", "System length (ft)",
                       "System capacity (gpm)", "Depth per pass (in)", "Wetted diameter (ft)",
                       "Soil", "Surface storage (in)", "Runoff (%)"], facts
assert facts["Location"] == "NE 1/4 Sec. 12, T10N, R5W, Custer, NE", facts
assert lines[11] == "", lines[11]
lines = lines[12:]
assert lines[-1] == "" and len(lines) == 5, lines
rows = [l.split(",") for l in lines[:-1]]
assert rows[0][0] == "Storage (in) \\ Wetted diameter (ft)" and len(rows[0]) == 5
assert float(rows[0][1]) == 1 and float(rows[0][4]) == 150
assert [float(r[0]) for r in rows[1:]] == [0, 0.5, 1]
assert all(len(r) == 5 and all(0 <= float(v) <= 100 for v in r[1:]) for r in rows[1:])
'

if "$cli" explore --help | grep -q -- --png; then
    check "PNG" exits_with 0 explore "$spray" --png "$work/map.png"
    check "PNG of 1000 x 700" py '
import struct, sys
head = open(sys.argv[1] + "/map.png", "rb").read(24)
assert head[:8] == b"\x89PNG\r\n\x1a\n" and struct.unpack(">II", head[16:24]) == (1000, 700)
'
    check "PDF" exits_with 0 explore "$spray" --pdf "$work/map.pdf" --green-ampt --y storage
    check "PDF file" py 'import sys; assert open(sys.argv[1] + "/map.pdf", "rb").read(5) == b"%PDF-"'
    check "unwritable PDF" exits_with 4 explore "$spray" --pdf "$work/none/map.pdf"
fi

# A run longer than a second says how far it has got when standard error is a terminal, and
# nothing when it is not. On one core (where taskset can pin it) the run takes seconds however
# many cores the machine has.
check "no progress line without a terminal" exits_with 0 explore "$spray" --csv --green-ampt \
    --columns 400 --rows 250
check "and nothing on standard error" test ! -s "$work/err"
check "a progress line on a terminal" python3 -c '
import os, pty, subprocess, sys
master, slave = pty.openpty()
run = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=slave)
os.close(slave)
said = b""
while True:
    try:
        chunk = os.read(master, 4096)
    except OSError:
        break
    if not chunk:
        break
    said += chunk
text = said.decode()
assert run.returncode == 0 and "of 100000 points" in text and text.endswith("\n"), text
' $(command -v taskset >/dev/null && echo taskset -c 0) "$cli" explore "$spray" --csv \
    --green-ampt --columns 400 --rows 250

[ "$failed" -eq 0 ] && echo "explore: all passed"
exit "$failed"
