#include "intake.h"

#include "fault.h"
#include "pattern.h"

#include <cstring>

namespace rainfold {

const std::array<double, 9> kIntakeK = {0,      6.3246,  12.2682, 18.5674, 34.163,
                                        47.244, 60.3504, 83.82,   0};
const std::array<double, 9> kIntakeN = {0, -0.615, -0.49, -0.435, -0.345, -0.308, -0.27, -0.245, 0};
const std::array<const char*, 9> kIntakeFamilyName = {"",    "0.1", "0.3", "0.5", "1.0",
                                                      "1.5", "2.0", "3.0", ""};

void ThrowSearchDidNotSettle() {
    throw EngineFault("The ponding search did not settle on a crossing.");
}

namespace {

bool SameBits(double x, double y) {
    return std::memcmp(&x, &y, sizeof x) == 0;
}

} // namespace

PatternSteps::Pass& PatternSteps::Find(double H, double P, double S, double t0, double dt) {
    if (!SameBits(H, H_) || !SameBits(P, P_) || !SameBits(S, S_)) {
        used_ = 0;
        H_ = H;
        P_ = P;
        S_ = S;
    }
    for (size_t n = 0; n < used_; ++n)
        if (SameBits(passes_[n].t0, t0) && SameBits(passes_[n].dt, dt))
            return passes_[n];
    if (used_ == passes_.size())
        passes_.emplace_back();
    Pass& pass = passes_[used_++];
    pass.t0 = t0;
    pass.dt = dt;
    pass.known = 0;
    return pass;
}

void FindPondStart(double dt, double t0, double H, double K, double N, double S, double P,
                   int& status, int& i, double& D, double& a, double& t,
                   PatternSteps::Pass* known) {
    for (i = 1; i <= kNSteps; ++i) {
        t = t0 + i * dt;
        if (known && i <= known->known) {
            a = known->a[static_cast<size_t>(i)];
            D = known->D[static_cast<size_t>(i)];
        } else {
            const double root = PatternRoot(t, H);
            a = P * root;
            D = AppliedDepthFromRoot(t, H, P, S, root, EndOfPass::Truncated);
            if (known) {
                known->a[static_cast<size_t>(i)] = a;
                known->D[static_cast<size_t>(i)] = D;
                known->known = i;
            }
        }
        // The soil's capacity: the family's rate scaled by what it could have taken in so far
        // over what has been applied so far.
        const double f = K * Pow(t, N);
        const double F = Div(K * Pow(t, N + 1), N + 1);
        const double c = Div(f * F, D);
        if (a == c) {
            status = kExactlyEqual;
            return;
        }
        if (std::fabs(c - a) <= kRateTolerance) {
            status = kConverged;
            return;
        }
        if (c < a) {
            status = kCrossingInStep;
            return;
        }
    }
    status = kNoCrossing;
}

void FindPondEnd(double dt, double t0, double H, double P, double K, double N, double tshift,
                 int& i, double& t, int& status) {
    const auto capacity = [&](double at) { return K * Pow(at - tshift, N); };
    PondEndPass(dt, t0, H, P, capacity, i, t, status);
}

} // namespace rainfold
