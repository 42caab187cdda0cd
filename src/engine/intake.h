#pragma once
// NRCS intake families and the two ponding searches of the intake-family model.

#include <array>
#include <cmath>
#include <vector>

namespace rainfold {

inline constexpr int kNSteps = 10; // equal sub-intervals of every time search

// Elements 1..7 are the families "0.1" .. "3.0"; elements 0 and 8 are empty and read as 0.
extern const std::array<double, 9> kIntakeK;
extern const std::array<double, 9> kIntakeN;
extern const std::array<const char*, 9> kIntakeFamilyName;

// Status of one search pass.
enum SearchStatus : int {
    kNotStarted = 0,
    kNoCrossing = 1, // the whole pass stepped through without a crossing
    kCrossingInStep = 2,
    kConverged = 3, // rates within 0.01 mm/h
    kExactlyEqual = 4,
};

inline constexpr double kRateTolerance = 0.01; // mm/h, absolute

// The application rate a and the applied depth D the onset search has worked out at the steps
// of its passes over one pattern (H, P, S). The three family slots of a position share the
// pattern and start their searches on the same steps, and they keep to the same steps until
// their crossings part: every slot after the first finds much of what it needs here. A pass is
// known by its start and step, so a value is only ever taken for the very time it was worked out
// at.
class PatternSteps {
public:
    struct Pass {
        double t0, dt;
        int known;                            // steps 1..known hold a and D
        std::array<double, kNSteps + 1> a, D; // element 0 unused
    };
    // The pass from t0 by dt over the pattern (H, P, S), with what is known of it: nothing when
    // the pattern differs from the last one asked for.
    Pass& Find(double H, double P, double S, double t0, double dt);

private:
    double H_ = 0, P_ = 0, S_ = 0;
    std::vector<Pass> passes_; // the first `used_` are this pattern's; the rest wait for reuse
    size_t used_ = 0;
};

// One pass of the onset search. On return t, a and D are those of the last step evaluated.
// `known`, when given, holds the pass's a and D so far and receives those it works out.
void FindPondStart(double dt, double t0, double H, double K, double N, double S, double P,
                   int& status, int& i, double& D, double& a, double& t,
                   PatternSteps::Pass* known = nullptr);

// One pass of the end-of-ponding search: the application rate against the capacity
// K * (t - tshift)^N of the ponded soil.
void FindPondEnd(double dt, double t0, double H, double P, double K, double N, double tshift,
                 int& i, double& t, int& status);

// A refinement narrows the step to a tenth each round, so a few dozen rounds reach the limits of
// double precision; this bound only guards against a pass that can never settle.
inline constexpr int kMaxRefinements = 400;
[[noreturn]] void ThrowSearchDidNotSettle();

// How the ponded soil's capacity f stands against the application rate a, in the order the
// end-of-ponding search tests it.
enum class RateOrder {
    Equal,         // a == f exactly
    Close,         // within kRateTolerance
    CapacityAbove, // f > a: the ponding has ended in this step
    CapacityBelow, // f < a: still ponded
};
inline RateOrder OrderOf(double a, double f) {
    if (a == f)
        return RateOrder::Equal;
    if (std::fabs(a - f) <= kRateTolerance)
        return RateOrder::Close;
    return f > a ? RateOrder::CapacityAbove : RateOrder::CapacityBelow;
}

// The order at t of a capacity given as fc(t), or of one that can tell its order without
// working out the capacity to the last digit (a member Order(t, a)).
template <class Capacity>
auto OrderAt(const Capacity& fc, double t, double a, int) -> decltype(fc.Order(t, a)) {
    return fc.Order(t, a);
}
template <class Capacity> RateOrder OrderAt(const Capacity& fc, double t, double a, long) {
    return OrderOf(a, fc(t));
}

// One pass of the end-of-ponding search for any capacity fc(t) of the ponded soil.
template <class Capacity>
void PondEndPass(double dt, double t0, double H, double P, const Capacity& fc, int& i, double& t,
                 int& status) {
    for (i = 1; i <= kNSteps; ++i) {
        t = t0 + i * dt;
        if (t > 2 * H) {
            status = kCrossingInStep; // the pass ends inside this step
            return;
        }
        const double under = 2 * t * H - t * t;
        const double a = P * std::sqrt(under < 0 ? 0.0 : under);
        switch (OrderAt(fc, t, a, 0)) {
        case RateOrder::Equal:
            status = kExactlyEqual;
            return;
        case RateOrder::Close:
            status = kConverged;
            return;
        case RateOrder::CapacityAbove:
            status = kCrossingInStep;
            return;
        case RateOrder::CapacityBelow:
            break;
        }
    }
    status = kNoCrossing;
}

// The end-of-ponding search from the ponding time tp: NSteps steps to the end of the pass, the
// step holding the crossing refined into NSteps steps again until the rates agree. Returns the
// end of ponding, 0 when the final status is kNoCrossing.
template <class Capacity>
double SearchPondEnd(double tp, double H, double P, const Capacity& fc, int& status) {
    double t0 = tp;
    double dt = (2 * H - tp) / kNSteps;
    double t = 0;
    int i = 0;
    status = kCrossingInStep;
    for (int round = 0; status == kCrossingInStep || status == kExactlyEqual; ++round) {
        if (round > 0) {
            t0 = t0 + (i - 1) * dt;
            dt = dt / kNSteps;
        }
        if (round > kMaxRefinements)
            ThrowSearchDidNotSettle();
        PondEndPass(dt, t0, H, P, fc, i, t, status);
    }
    return status == kNoCrossing ? 0.0 : t;
}

} // namespace rainfold
