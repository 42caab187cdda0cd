#!/usr/bin/env bash
# rainfold-cli end to end: exit codes, warnings, and the JSON output of the example designs.
# Needs RAINFOLD_CLI (the program) and RAINFOLD_EXAMPLES (the folder of example designs).
set -u

cli=${RAINFOLD_CLI:?RAINFOLD_CLI must name rainfold-cli}
examples=${RAINFOLD_EXAMPLES:?RAINFOLD_EXAMPLES must name the examples folder}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

check() { # check NAME COMMAND...: passes when the command succeeds
    local name=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED: $name" >&2
    fi
}

exits_with() { # exits_with CODE ARGS...: runs the program, keeps its output in $work/out, err
    local code=$1
    shift
    "$cli" "$@" >"$work/out" 2>"$work/err"
    local got=$?
    [ "$got" -eq "$code" ] || { echo "  exit $got, expected $code: $*" >&2; return 1; }
}

# A design from an example with one line replaced: design FILE LINE TEXT > new file
design() {
    awk -v n="$2" -v t="$3" 'BEGIN { ORS = "" } NR == n { print t "\r\n"; next } { print $0 "\n" }' "$1"
}

# JSON on standard input: valid, no NaN or infinity anywhere, then the Python checks given.
json_ok() {
    python3 -c '
import json, math, sys
def reject(token):
    raise ValueError("not a JSON number: " + token)
doc = json.load(sys.stdin, parse_constant=reject)
exec(sys.argv[1])
' "${1:-pass}" <"$work/out"
}

spray=$examples/spray-1300ft-800gpm.rfd
custom=$examples/customized-variable-storage.rfd

# Exit codes.
check "no arguments is a usage error" exits_with 64
check "unknown option is a usage error" exits_with 64 compute "$spray" --no-such-option
check "missing file" exits_with 1 compute "$work/missing.rfd"
printf '"P"\r\n"L"\r\n"C","S"\r\n"D","1/1"\r\n"1300","800"\r\n' >"$work/short.rfd"
check "malformed file" exits_with 1 compute "$work/short.rfd"
design "$spray" 5 '"149","800","1.0","40"' >"$work/short-length.rfd"
check "length below 150 ft is a check error" exits_with 2 compute "$work/short-length.rfd"
design "$spray" 6 '-1' >"$work/no-family.rfd"
check "no intake family is a check error" exits_with 2 compute "$work/no-family.rfd"
design "$spray" 5 '"3500","800","1.0","40"' >"$work/long.rfd"
check "excessive length is accepted" exits_with 0 compute "$work/long.rfd"
check "and warned about" grep -qF "System length of  3500 feet is excessive." "$work/err"
# A blank conductivity leaves the Green-Ampt model undefined: the checks stop it.
design "$custom" 19 '"","88.9","0.463","0.25","1000","0.0002"' >"$work/no-ks.rfd"
check "Green-Ampt inputs checked" exits_with 2 compute "$work/no-ks.rfd" --green-ampt
check "and named" grep -qF "Invalid saturated hydraulic conductivity." "$work/err"
design "$custom" 7 '"0","-0.4"' >"$work/zero-k.rfd"
check "customised K of 0 is a fault" exits_with 3 compute "$work/zero-k.rfd"
check "fault message" grep -qF "K and N must not be 0 for Customized Values." "$work/out" "$work/err"

# Text output: the case headings for 800 gpm.
check "spray example computes" exits_with 0 compute "$spray"
check "case headings" grep -qE '(^|[^0-9])700 +800 +900( |$)' "$work/out"

# Every example as JSON.
for file in "$examples"/*.rfd; do
    check "$(basename "$file") computes" exits_with 0 compute "$file" --json
    check "$(basename "$file") is valid JSON" json_ok 'assert doc["status"] == "ok"'
done
for file in "$spray" "$examples"/lepa-*.rfd; do
    check "$(basename "$file") with Green-Ampt" exits_with 0 compute "$file" --json --green-ampt
    check "$(basename "$file") Green-Ampt JSON" json_ok '
for name in ("GATs", "GAPctRunoff", "GAVarTs", "GAVarFTf", "GAVarPctRunoff"):
    assert len(doc[name]) == 3 and all(len(row) == 10 for row in doc[name]), name
assert all(0 <= v <= 100 for row in doc["GAVarPctRunoff"] for v in row)'
done

# The JSON carries the engine's results in case order (the values themselves are checked by the
# engine's tests): the spray example's hours per revolution, 2.7777 * A * d / Q, by hand.
exits_with 0 compute "$spray" --json
check "spray example hours in case order" json_ok '
A = math.pi * (1300 * 0.3048) ** 2 / 10000
for case, gpm in enumerate((700, 800, 900)):
    hours = 2.7777 * A * 25.4 / (gpm * 0.06309)
    assert abs(doc["HoursPerRev"][case] - hours) < 1e-9 * hours, (case, doc["HoursPerRev"][case])
assert all(0 <= v <= 100 for c in doc["PctRunoff"] for p in c for v in p)'

# "Customized Values": slot 3 is not computed and shows as null; slots 1 and 2 are numbers.
exits_with 0 compute "$custom" --json
check "customised slot 3 is null" json_ok '
for name in ("PeakRate", "HalfTime", "PondFlag", "PondStart", "PondEnd", "PctRunoff"):
    for c in range(3):
        for p in range(10):
            row = doc[name][c][p]
            assert row[2] is None and all(isinstance(v, (int, float)) for v in row[:2]), name
assert all(v is None for v in doc["WeightedRunoff"][2])'

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
