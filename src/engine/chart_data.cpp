#include "chart_data.h"

#include "fault.h"
#include "format.h"
#include "green_ampt.h"
#include "intake.h"
#include "pattern.h"

#include <cmath>
#include <functional>

namespace rainfold {

namespace {

// Chart values are kept to four decimals, in in/hr.
double Round4(double x) {
    double value = 0;
    ParseDecimal(FormatFixed(x, 4), value);
    return value;
}
double ToChart(double mmPerHour) {
    return Round4(mmPerHour / 25.4);
}

// The application rate of the chart: sqrt(2 T t - t^2) * P / T, 0 under the root taken as 0.
double ChartApplication(double t, double P, double T) {
    const double q = 2 * T * t - t * t;
    return Div(std::sqrt(q < 0 ? 0.0 : q) * P, T);
}

struct IntakeCurve {
    std::function<double(double)> rate; // mm/h at t > 0
    std::function<double(double)> cumulativeAfterPonding;
};

} // namespace

void ChartScale(double peakRate, double& maximum, int& divisions) {
    double M = std::floor(peakRate / 25.4) + 1;
    double D = 2 * M;
    if (M > 10) {
        M = 2 * std::floor((M + 1) / 2);
        D = M / 2;
    }
    if (M > 40) {
        M = 4 * std::floor((M + 3) / 4);
        D = M / 4;
    }
    if (M > 100) {
        M = 10 * std::floor((M + 9) / 10);
        D = M / 10;
    }
    maximum = M;
    // A peak beyond any sprinkler's (over 10,000 in/hr) has no scale a chart can draw.
    divisions = D <= kMaxChartDivisions ? static_cast<int>(D) : -1;
}

ChartOutcome BuildChart(const DesignRecord& design, const Results& res, const ChartRequest& req,
                        const Notify& notify) {
    ChartOutcome out;
    if (req.column < 3)
        return out;
    const int c = req.column - 2;
    const int p = req.row + 1;
    const int s = req.slot;
    const bool green = design.greenAmpt;
    try {
        const Cell shown = green ? res.GAVarPctRunoff.at(c, p, 1) : res.PctRunoff.at(c, p, s);
        if (Read(shown) < 0)
            return out;
        const double runoff = Read(shown);
        ChartData& d = out.data;

        const double P = Read(res.PeakRate.at(c, p, s));
        const double T = Read(res.HalfTime.at(c, p, s));
        // "Time to Saturation" shows the intake-family onset whichever model is in use; the
        // Green-Ampt marker below uses that model's own ponding time.
        const double Ts = Read(res.PondStart.at(c, p, s));
        const double SS = Read(res.SurfStore.at(static_cast<size_t>(p)));
        d.txtHP = FormatFixed(P / 25.4, 1);
        d.txtTS = FormatFixed(Ts, 2);
        d.txtTP = FormatFixed(T, 2);

        const double S = kPi / 2 * (T * T);
        const double slope = Div(P, T);
        IntakeCurve curve;
        double tMarker = Ts;
        bool ponds = false;
        if (green) {
            const GreenAmptSoil soil = GreenAmptSoilOf(res);
            const double tp = Read(res.GAVarTs.at(c, p, 1));
            ponds = tp > 0;
            tMarker = tp;
            // Nothing has arrived at the first wetting, where the arcsine form of the applied
            // depth would divide by zero: a position that never ponds has no ponding depth.
            const double Fp = ponds ? AppliedDepth(tp, T, slope, S, EndOfPass::FullEllipse) : 0.0;
            const auto Fpot = [=](double t) {
                return PotentialInfiltration(GreenAmptModel::Varying, soil, tp, Fp, t, notify);
            };
            curve.cumulativeAfterPonding = Fpot;
            curve.rate = [=](double t) {
                if (ponds && t >= tp)
                    return Capacity(GreenAmptModel::Varying, soil, Fpot(t));
                const double applied = AppliedDepth(t, T, slope, S, EndOfPass::FullEllipse);
                return Capacity(GreenAmptModel::Varying, soil, applied);
            };
        } else {
            const int G = SlotFamily(design.intakeFamilyIndex + 1, s);
            double K = kIntakeK.at(static_cast<size_t>(G));
            double N = kIntakeN.at(static_cast<size_t>(G));
            if (s == 2 && Read(res.UserK) != 0 && Read(res.UserN) != 0) {
                K = Read(res.UserK);
                N = Read(res.UserN);
            }
            ponds = Read(res.PondFlag.at(c, p, s)) != kNoCrossing;
            double tshift = 0, Dp = 0;
            if (ponds) {
                const double ap = ChartApplication(Ts, P, T);
                tshift = Ts - Pow(Div(ap, K), Div(1, N));
                Dp = AppliedDepth(Ts, T, slope, S, EndOfPass::Truncated);
            }
            // The family's own rate, shifted in time from the ponding on so that it meets the
            // application rate there.
            curve.rate = [=](double t) { return K * Pow(ponds && t >= Ts ? t - tshift : t, N); };
            curve.cumulativeAfterPonding = [=](double t) {
                return Dp + Div(K * (Pow(t - tshift, N + 1) - Pow(Ts - tshift, N + 1)), N + 1);
            };
            for (int k = 1; k < kChartPoints; ++k) {
                const double t = k * (2 * T) / 100;
                d.basicRates[static_cast<size_t>(k)] = K * Pow(t, N);
            }
        }

        for (int k = 0; k < kChartPoints; ++k) {
            const double t = k * (2 * T) / 100;
            d.application.push_back({Round4(t), ToChart(ChartApplication(t, P, T))});
            const double f = k == 0 ? kUnlimitedRate : curve.rate(t);
            d.intake.push_back({Round4(t), ToChart(f)});
        }

        const double aMarker = ponds ? ChartApplication(tMarker, P, T) : 0.0;
        d.pondingMarker = {{Round4(tMarker), 0.0}, {Round4(tMarker), ToChart(aMarker)}};

        if (SS != 0 && runoff > 0 && ponds) {
            const double ts =
                StorageFilledTime(tMarker, T, P, SS, curve.cumulativeAfterPonding, notify);
            d.storageMarker = {{Round4(ts), ToChart(curve.rate(ts))},
                               {Round4(ts), ToChart(ChartApplication(ts, P, T))}};
        }

        ChartScale(P, d.yMaximum, d.yDivisions);
        if (d.yDivisions < 0)
            throw EngineFault(kOverflow);
        out.drawn = true;
    } catch (const EngineFault& e) {
        out.fault = e.what();
        out.drawn = false;
    } catch (const std::out_of_range&) {
        out.fault = "Subscript out of range.";
        out.drawn = false;
    }
    return out;
}

} // namespace rainfold
