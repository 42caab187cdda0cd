#pragma once
// The design as the engineer typed it. Every input is kept as text: the engine reads numbers
// out of these texts only when a computation starts, and the design file stores them verbatim.

#include <array>
#include <string>

namespace rainfold {

// Which surface-storage option is ticked (Options menu, mnuOptionsSR0..SR3).
enum SurfaceOption : int {
    kConstantSlopeResidue = 0, // one % slope and one % residue for the field
    kVariableSlopeResidue = 1, // % slope and % residue per segment
    kUserConstant = 2,         // storage amounts typed in, the same everywhere
    kUserVariable = 3,         // storage amounts per segment
    kNoOptionTicked = -1,      // never in normal use; the design file writes an empty record
};

// List index of "Customized Values" in the intake-family list.
constexpr int kCustomizedValuesIndex = 7;

struct SegmentRow {
    std::string col1; // "% Slope" or "Surface Storage"
    std::string col2; // "% Residue" or "Residue Storage"
    bool operator==(const SegmentRow& o) const { return col1 == o.col1 && col2 == o.col2; }
};

struct DesignRecord {
    // General information
    std::string txtDescription; // producer or project
    std::string txtLegalID;     // legal description
    std::string txtCounty;
    std::string txtState;
    std::string txtDesigner;
    std::string txtDate;

    // System
    std::string txtSYL;     // wetted system length, ft
    std::string txtGPM;     // system capacity without end gun, gpm
    std::string txtAPPL;    // gross application depth per pass, in
    std::string txtWetDiam; // wetted diameter of the sprinkler package, ft

    // Intake family: list index -1 (nothing selected) .. 7 ("Customized Values")
    int intakeFamilyIndex = -1;
    std::string txtUk; // user K
    std::string txtUN; // user N

    // Surface storage
    int surfaceOption = kConstantSlopeResidue;
    std::string txtSurfStore;              // % slope or surface storage (in)
    std::string txtResidue;                // % residue or residue storage (in)
    std::array<SegmentRow, 10> segments{}; // rows 1..10 of the segment table

    // Green-Ampt parameters
    std::string txtKS;      // saturated hydraulic conductivity, mm/hr
    std::string txtHW;      // wetting-front suction head, mm
    std::string txtThetaS;  // saturated water content
    std::string txtThetaI;  // initial water content
    std::string txtRzDepth; // depth of the root zone, mm
    std::string txtOmega;   // linear variation of water content, per mm

    // Options > "Green-Ampt": not stored in design files.
    bool greenAmpt = false;

    bool operator==(const DesignRecord& o) const;
    bool operator!=(const DesignRecord& o) const { return !(*this == o); }
};

// The lenient reading of a field: the leading number of the text (leading blanks skipped), 0 when
// the text does not start with one.
double Val(const std::string& text);

// A field is blank when nothing but blanks is typed in it.
bool IsBlank(const std::string& text);

// True when the whole text, blanks around it aside, reads as one number.
bool IsNumeric(const std::string& text);

} // namespace rainfold
