#pragma once
// Surface storage that field slope and crop residue provide.

namespace rainfold {

double SlopeStorage(double percentSlope);     // inches
double ResidueStorage(double percentResidue); // inches

} // namespace rainfold
