#pragma once
// Green-Ampt soil functions. F is the cumulative infiltration (mm), z the depth of the wetting
// front (mm). Two soils: one whose initial water content is the same at every depth, and one
// whose water content rises linearly with depth (the deficit shrinks by omega per mm) until the
// profile is saturated at z* = dtheta0 / omega.

namespace rainfold {

struct GreenAmptSoil {
    double Ks = 0;      // saturated hydraulic conductivity, mm/h
    double Hw = 0;      // wetting-front suction head, mm
    double dtheta0 = 0; // moisture deficit at the surface (saturated less initial water content)
    double omega = 0;   // fall of the deficit per mm of depth; read by the varying soil only
};

enum class GreenAmptModel {
    Constant, // the initial water content is the same at every depth
    Varying,  // the initial water content rises linearly with depth
};

// Constant water content, M = Hw * dtheta0.
// Infiltration capacity Ks * (1 + M / F).
double ConstCapacity(double F, double Ks, double Hw, double dtheta0);
// Ks times the time a ponded soil needs to take in F from dry: F - M ln(1 + F / M).
double ConstPondedTime(double F, double Hw, double dtheta0);

// Linearly varying water content. With omega = 0 each of these is its constant counterpart.
// Depth z* at which the profile is saturated; infinite when omega <= 0.
double SaturatedDepth(double dtheta0, double omega);
// Infiltration F* that fills the profile down to z*; infinite when z* is.
double SaturatedInfiltration(double dtheta0, double omega);
// Depth of the wetting front after F has gone in, for F <= F*. Beyond F* the front has left the
// part of the profile that can still store water, and the depth is infinite.
double FrontDepth(double F, double dtheta0, double omega);
// Infiltration capacity: Ks * (zf + Hw) / zf up to F*, Ks beyond.
double VarCapacity(double F, double Ks, double Hw, double dtheta0, double omega);
// Ks times the ponded time to take in the water above a front at depth z.
double VarPondedTimeAtDepth(double z, double Hw, double dtheta0, double omega);
// Ks times the ponded time to take in F: Tz(zf(F)) up to F*, Tz(z*) + (F - F*) beyond.
double VarPondedTime(double F, double Hw, double dtheta0, double omega);

// The model's capacity f(F) and ponded time T(F).
double Capacity(GreenAmptModel model, const GreenAmptSoil& soil, double F);
double PondedTime(GreenAmptModel model, const GreenAmptSoil& soil, double F);

} // namespace rainfold
