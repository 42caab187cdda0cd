#include "storage.h"

namespace rainfold {

double SlopeStorage(double percentSlope) {
    if (percentSlope <= 1)
        return 0.5;
    else if (percentSlope <= 3)
        return 0.3;
    else if (percentSlope <= 5)
        return 0.1;
    return 0;
}

double ResidueStorage(double percentResidue) {
    if (percentResidue <= 10)
        return 0;
    else if (percentResidue <= 20)
        return 0.01;
    else if (percentResidue <= 30)
        return 0.03;
    else if (percentResidue <= 40)
        return 0.07;
    else if (percentResidue <= 50)
        return 0.12;
    else if (percentResidue <= 60)
        return 0.18;
    else if (percentResidue <= 70)
        return 0.24;
    return 0.35;
}

} // namespace rainfold
