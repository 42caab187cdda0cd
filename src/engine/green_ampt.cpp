#include "green_ampt.h"

namespace rainfold {

double EqFindTs(double, const EquationParams&) {
    return 0;
}
double EqFindTsVarMC(double, const EquationParams&) {
    return 0;
}
double EqFindFAtTf(double, const EquationParams&) {
    return 0;
}
double EqFindFAtTfVarMC(double, const EquationParams&) {
    return 0;
}
double EqFindTAtSs2(double, const EquationParams&) {
    return 0;
}
double EqFindFGivenT(double, const EquationParams&) {
    return 0;
}
double EqFindFGivenTVarMC(double, const EquationParams&) {
    return 0;
}

void GreenAmptPosition(int, int, Results&, const Notify&) {}

} // namespace rainfold
