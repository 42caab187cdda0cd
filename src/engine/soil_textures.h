#pragma once
// Mean Green-Ampt parameters of the eleven USDA soil texture classes (Rawls, Brakensiek and
// Miller, 1983, Table 2), and the texts they put into the Green-Ampt fields.

#include <array>
#include <string>

namespace rainfold {

struct SoilTexture {
    const char* name;              // "Sandy loam"
    const char* totalPorosity;     // eta
    const char* effectivePorosity; // theta e
    const char* suctionHeadCm;     // wetting front suction head psi, cm
    const char* conductivityCmHr;  // hydraulic conductivity K, cm/h
    // The fields a preset fills, as typed: K x 10 (mm/hr), psi x 10 (mm), and the total
    // porosity as the saturated water content.
    const char* ksMmHr;
    const char* hwMm;
    const char* thetaS;
};

inline constexpr std::array<SoilTexture, 11> kSoilTextures = {{
    // clang-format off
    {"Sand",            "0.437", "0.417", "4.95",  "11.78", "117.8", "49.5",  "0.437"},
    {"Loamy sand",      "0.437", "0.401", "6.13",  "2.99",  "29.9",  "61.3",  "0.437"},
    {"Sandy loam",      "0.453", "0.412", "11.01", "1.09",  "10.9",  "110.1", "0.453"},
    {"Loam",            "0.463", "0.434", "8.89",  "0.34",  "3.4",   "88.9",  "0.463"},
    {"Silt loam",       "0.501", "0.486", "16.68", "0.65",  "6.5",   "166.8", "0.501"},
    {"Sandy clay loam", "0.398", "0.330", "21.85", "0.15",  "1.5",   "218.5", "0.398"},
    {"Clay loam",       "0.464", "0.309", "20.88", "0.10",  "1",     "208.8", "0.464"},
    {"Silty clay loam", "0.471", "0.432", "27.30", "0.10",  "1",     "273",   "0.471"},
    {"Sandy clay",      "0.430", "0.321", "23.90", "0.06",  "0.6",   "239",   "0.43"},
    {"Silty clay",      "0.479", "0.423", "29.22", "0.05",  "0.5",   "292.2", "0.479"},
    {"Clay",            "0.475", "0.385", "31.63", "0.03",  "0.3",   "316.3", "0.475"},
    // clang-format on
}};

// The class named `name`, ignoring case and treating blanks, hyphens and underscores alike
// ("sandy loam", "Sandy-Loam", "sandy_loam"); null when there is none.
const SoilTexture* FindSoilTexture(const std::string& name);

} // namespace rainfold
