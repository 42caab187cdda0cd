#include "pattern.h"

namespace rainfold {

double ApplicationRate(double t, double H, double P) {
    if (t >= 2 * H)
        return 0;
    return P * PatternRoot(t, H);
}

double AppliedDepth(double t, double H, double P, double S, EndOfPass rule) {
    return AppliedDepthFromRoot(t, H, P, S, PatternRoot(t, H), rule);
}

} // namespace rainfold
