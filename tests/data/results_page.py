#!/usr/bin/env python3
"""Independent texts of the results page and values of the rate chart for a few designs.

Takes its runoff from reference_runoff.py (the intake-family searches replayed from the
written description) and green_ampt_check.py (Green-Ampt solved its own way), and forms from
it what the page shows: capacity headings, per-case summaries (the half time rounded before
it is doubled), the ten-row table, the area-weighted averages over positions 1, 3, 5, 7, 9;
and for a few cells the chart: 101 points of both rates, the ponding marker and the storage
marker (the surface excess reaching the storage, found by bisection).

Display rounding: halves away from zero on the 15-digit decimal form. A value closer to a
rounding edge than two implementations can be trusted to agree on stops the script.

Run:  python3 tests/data/results_page.py      (writes results_page.inc, about a minute)
"""
import math
import os
from decimal import ROUND_HALF_UP, Decimal

import green_ampt_check as ga
import reference_runoff as ref

FAMILY_NAMES = ["", "0.1", "0.3", "0.5", "1.0", "1.5", "2.0", "3.0"]

# Green-Ampt inputs, valid in every design; they count only with the model switched on.
SOIL = dict(ks="10", hw="110", ths="0.45", thi="0.25", rz="1000", omega="0.0002")
DESIGNS = {
    # one intake family, constant slope 4 % and residue 15 %: 0.11 in of storage everywhere
    "A": dict(syl="1320", gpm="900", appl="1.0", wet="30", index=3, uk="", un="", option=0,
              s="4", r="15", rows=ref.BLANK_ROWS, green=False, **SOIL),
    # the same without storage (slope above 5 %, residue at most 10 %)
    "Z": dict(syl="1320", gpm="900", appl="1.0", wet="30", index=3, uk="", un="", option=0,
              s="10", r="5", rows=ref.BLANK_ROWS, green=False, **SOIL),
    # Green-Ampt, first family of the list (the page opens on slot 1), 0.25 in typed storage
    "G": dict(syl="1300", gpm="800", appl="1", wet="40", index=0, uk="", un="", option=2,
              s="0.2", r="0.05", rows=ref.BLANK_ROWS, green=True, **SOIL),
    # LEPA: a 6 ft wetted diameter, 0.35 in typed storage; the family's rate before ponding is
    # far below the application's peak
    "L": dict(syl="1320", gpm="900", appl="1.0", wet="6", index=3, uk="", un="", option=2,
              s="0.3", r="0.05", rows=ref.BLANK_ROWS, green=False, **SOIL),
}
PAGES = [("A", 1), ("A", 2), ("A", 3), ("G", 1)]
CHARTS = [("A", 2, 4, 9), ("A", 2, 3, 0), ("Z", 2, 5, 9), ("G", 1, 4, 9), ("L", 2, 3, 4)]


def fixed(x, decimals, margin=1e-6):
    scaled = x * 10 ** decimals
    if abs(abs(scaled - math.floor(scaled)) - 0.5) < margin:
        raise SystemExit("%r is too close to a rounding edge for %d decimals" % (x, decimals))
    q = Decimal(format(x, ".15g")).quantize(Decimal(1).scaleb(-decimals), ROUND_HALF_UP)
    return str(q)


def plain(x):
    s = format(x, ".15g")
    assert "e" not in s, s
    return s


def soil(dsg, omega):
    return ga.Soil(ref.val(dsg["ks"]), ref.val(dsg["hw"]),
                   ref.val(dsg["ths"]) - ref.val(dsg["thi"]), omega)


def compute(dsg):
    """Per (case, position, slot): peak, H, status, tp, te, pct, store, K, N; Green-Ampt on top."""
    out = {}
    for k, j, m, Tk, store, peak, H, status, tp, te, pct in ref.run(dsg):
        fam = ref.slot_family(dsg["index"] + 1, m)
        out[k, j, m] = dict(Tk=Tk, store=store, P=peak, H=H, status=status, tp=tp, te=te,
                            pct=pct, K=ref.INTAKE_K[fam], N=ref.INTAKE_N[fam])
    if dsg["green"]:
        for k in (1, 2, 3):
            for j in range(1, 11):
                c = out[k, j, 2]
                for key, w in (("ga", 0.0), ("gavar", ref.val(dsg["omega"]))):
                    c[key] = ga.run(c["P"], c["H"], soil(dsg, w), c["store"])
    return out


def page(dsg, res, slot):
    L = ref.val(dsg["syl"]) * 0.3048
    Q0 = (ref.val(dsg["gpm"]) - 200) * 0.06309
    green = dsg["green"]
    p = dict(lblGPM=[fixed((Q0 + k * 6.309) / 0.06309, 0) for k in (1, 2, 3)],
             txtHours=[fixed(res[k, 10, slot]["Tk"], 1) for k in (1, 2, 3)],
             txtHPV=[fixed(res[k, 10, slot]["P"] / 25.4, 1) for k in (1, 2, 3)],
             txtTPV=[plain(2 * float(fixed(res[k, 10, slot]["H"], 2))) for k in (1, 2, 3)])
    if green:
        p["caption"] = "Green and Ampt Infiltration"
    else:
        fam = ref.slot_family(dsg["index"] + 1, slot)
        p["caption"] = FAMILY_NAMES[fam] + " NRCS Intake Family"
    # Green-Ampt: the table shows the varying water content, the average the constant one.
    shown = (lambda k, j: res[k, j, 2]["gavar"][1]) if green else (lambda k, j: res[k, j, slot]["pct"])
    averaged = (lambda k, j: res[k, j, 2]["ga"][1]) if green else shown
    margin = 1e-3 if green else 1e-6
    p["grid"] = [[plain(j * 0.1 * L / 0.3048), plain(ref.val(dsg["wet"])),
                  plain(res[1, j, 1]["store"] / 25.4)] +
                 [fixed(shown(k, j), 1, margin) for k in (1, 2, 3)] for j in range(1, 11)]
    Lft = L / 0.3048
    warp = []
    for k in (1, 2, 3):
        total = 0.0
        for j in (20, 40, 60, 80, 100):
            area = ((j * Lft / 100) ** 2 - ((j - 20) * Lft / 100) ** 2) * ref.PI / 43560
            total += area * averaged(k, (j - 20) // 10 + 1)
        warp.append(fixed(total / (ref.PI * Lft ** 2 / 43560), 1, margin))
    p["txtWARP"] = warp
    return p


def scale(peak):
    M = math.floor(peak / 25.4) + 1
    D = 2 * M
    if M > 10:
        M = 2 * ((M + 1) // 2)
        D = M / 2
    if M > 40:
        M = 4 * ((M + 3) // 4)
        D = M / 4
    if M > 100:
        M = 10 * ((M + 9) // 10)
        D = M / 10
    return M, int(D)


def chart(dsg, res, slot, column, row):
    c, pos = column - 2, row + 1
    cell = res[c, pos, slot]
    P, T, SS = cell["P"], cell["H"], cell["store"]
    slope, S = P / T, ref.PI / 2 * T * T
    app = lambda t: slope * math.sqrt(max(0.0, 2 * T * t - t * t))
    if dsg["green"]:
        varsoil = soil(dsg, ref.val(dsg["omega"]))
        tp, pct = res[c, pos, 2]["gavar"][0], res[c, pos, 2]["gavar"][1]
        ponds = tp > 0
        Fp = ga.depth(tp, P, T)
        Tp = varsoil.T(Fp)

        def Fc(t):  # what the ponded soil has taken in by t
            target = Tp + varsoil.Ks * (t - tp)
            return ga.bisect(lambda F: varsoil.T(F) - target, Fp, Fp + 1000, 60)

        rate = lambda t: varsoil.f(Fc(t)) if ponds and t >= tp else varsoil.f(ga.depth(t, P, T))
    else:
        K, N, tp, pct = cell["K"], cell["N"], cell["tp"], cell["pct"]
        ponds = cell["status"] != 1
        tshift = tp - (app(tp) / K) ** (1 / N) if ponds else 0.0
        Dp = ref.applied(tp, T, slope, S, False) if ponds else 0.0
        Fc = lambda t: Dp + K * ((t - tshift) ** (N + 1) - (tp - tshift) ** (N + 1)) / (N + 1)

        def rate(t):
            # the family's basic rate K t^N, moved later by tshift from the ponding on
            return K * (t - tshift) ** N if ponds and t >= tp else K * t ** N

    times = [k * (2 * T) / 100 for k in range(101)]
    # "Time to Saturation" is the intake-family search's onset whichever model is in use.
    ch = dict(txtHP=fixed(P / 25.4, 1), txtTS=fixed(cell["tp"], 2, 1e-4), txtTP=fixed(T, 2),
              intake=[1000 / 25.4] + [rate(t) / 25.4 for t in times[1:]],
              application=[app(t) / 25.4 for t in times], times=times,
              marker=(tp, app(tp) / 25.4 if ponds else 0.0), storage=None)
    if SS != 0 and pct > 0 and ponds:
        excess = lambda t: ga.depth(t, P, T) - Fc(t) - SS
        lo, hi = tp, 2 * T
        for _ in range(60):
            mid = 0.5 * (lo + hi)
            lo, hi = (mid, hi) if excess(mid) < 0 else (lo, mid)
        ts = 0.5 * (lo + hi)
        ch["storage"] = (ts, rate(ts) / 25.4, app(ts) / 25.4)
    ch["scale"] = scale(P)
    return ch


def arr(xs, fmt="%s"):
    return "{" + ", ".join(fmt % x for x in xs) + "}"


STRUCTS = """struct ResultsRefPage {
    int design, slot;
    const char *lblGPM[3], *txtHours[3], *txtHPV[3], *txtTPV[3], *caption;
    const char* grid[10][6];
    const char* txtWARP[3];
};
struct ResultsRefChart {
    int design, slot, column, row;
    const char *txtHP, *txtTS, *txtTP;
    double t[101], intake[101], application[101];
    double markerT, markerRate;
    bool storage;
    double storageT, storageIntake, storageApplication;
    double yMaximum;
    int yDivisions;
};
"""


def main():
    names = list(DESIGNS)
    results = {n: compute(DESIGNS[n]) for n in names}
    out = ["// Generated by results_page.py from the written description; do not edit by hand.",
           "// Designs: " + ", ".join("%d = %s" % (i, n) for i, n in enumerate(names)), "",
           STRUCTS, "static const rainfold::DesignRecord kResultsDesigns[] = {"]
    out += ["    %s," % ref.design_record(DESIGNS[n]) for n in names]
    out += ["};", "", "static const ResultsRefPage kResultsPages[] = {"]
    for n, slot in PAGES:
        p = page(DESIGNS[n], results[n], slot)
        out.append("    {%d, %d, %s, %s, %s, %s, %s," % (
            names.index(n), slot, arr(p["lblGPM"], '"%s"'), arr(p["txtHours"], '"%s"'),
            arr(p["txtHPV"], '"%s"'), arr(p["txtTPV"], '"%s"'), ref.cstr(p["caption"])))
        out.append("     {" + ",\n      ".join(arr(r, '"%s"') for r in p["grid"]) + "},")
        out.append("     %s}," % arr(p["txtWARP"], '"%s"'))
    out += ["};", "", "static const ResultsRefChart kResultsCharts[] = {"]
    for n, slot, column, row in CHARTS:
        ch = chart(DESIGNS[n], results[n], slot, column, row)
        st = ch["storage"] or (0.0, 0.0, 0.0)
        out.append("    {%d, %d, %d, %d, %s, %s, %s," % (
            names.index(n), slot, column, row, ref.cstr(ch["txtHP"]), ref.cstr(ch["txtTS"]),
            ref.cstr(ch["txtTP"])))
        for key in ("times", "intake", "application"):
            out.append("     " + arr(ch[key], "%.10g") + ",")
        out.append("     %.10g, %.10g, %s, %.10g, %.10g, %.10g, %d, %d}," % (
            ch["marker"] + ("true" if ch["storage"] else "false",) + st + ch["scale"]))
    out.append("};")
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "results_page.inc"), "w") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main()
