#pragma once
// The results record: every quantity one computation leaves behind for the results page, the
// chart, the printed output and the command-line program. An element that no computation has
// written is empty; a new computation overwrites what it reaches and keeps everything else.

#include <array>
#include <optional>
#include <stdexcept>

namespace rainfold {

// One result value; std::nullopt marks an element never written. Empty reads as 0.
using Cell = std::optional<double>;
inline double Read(const Cell& c) {
    return c.value_or(0.0);
}

// A fixed-size three-index array with lower bound 0 in every dimension, indexed
// (capacity case, position, family slot) as declared: (0 To A-1, 0 To B-1, 0 To C-1).
template <int A, int B, int C> class Array3 {
public:
    static constexpr int kCases = A;
    static constexpr int kPositions = B;
    static constexpr int kSlots = C;

    static bool InRange(int i, int j, int k) {
        return i >= 0 && i < A && j >= 0 && j < B && k >= 0 && k < C;
    }
    // Bounds-checked access; an index outside the declared bounds throws std::out_of_range.
    Cell& at(int i, int j, int k) { return cells_[Index(i, j, k)]; }
    const Cell& at(int i, int j, int k) const { return cells_[Index(i, j, k)]; }
    // Non-throwing read: empty outside the bounds.
    Cell get(int i, int j, int k) const {
        return InRange(i, j, k) ? cells_[static_cast<size_t>(i + A * (j + B * k))] : Cell{};
    }

private:
    static size_t Index(int i, int j, int k) {
        if (!InRange(i, j, k))
            throw std::out_of_range("Subscript out of range.");
        // The first index varies fastest in storage.
        return static_cast<size_t>(i + A * (j + B * k));
    }
    std::array<Cell, static_cast<size_t>(A) * B * C> cells_{};
};

using SlotArray = Array3<4, 11, 4>;  // (CapacityCase 1..3, PositionIndex 1..10, FamilySlot 1..3)
using GreenArray = Array3<4, 11, 2>; // Green-Ampt results: element 1 of the last index only

struct Results {
    // Values taken from the design at the start of a computation.
    Cell GAKs, GAHw, GADeltaTheta, GAOmega; // Green-Ampt parameters as typed
    Cell UserK, UserN;                      // typed K and N, 0 unless "Customized Values"
    std::array<Cell, 11> SurfStore{};       // surface storage of segment 1..10, mm

    // Per capacity case 1..3.
    std::array<Cell, 4> HoursPerRev{};
    std::array<Cell, 4> CaseSpare1{}, CaseSpare2{}; // reserved per-case slots; always empty

    // Intake-family results per (case, position, slot).
    SlotArray PeakRate;  // peak application rate, mm/h
    SlotArray HalfTime;  // time from first wetting to the peak, h
    SlotArray PondFlag;  // final status of the ponding search (1: never ponds)
    SlotArray PondStart; // start of ponding, h
    SlotArray PondEnd;   // end of ponding, h
    SlotArray PctRunoff; // percent runoff

    // Green-Ampt results per (case, position), element 1 of the last index.
    GreenArray GATs;           // time to surface saturation, constant water content, h
    GreenArray GAPctRunoff;    // percent runoff, constant water content
    GreenArray GAVarTs;        // time to surface saturation, varying water content, h
    GreenArray GAVarFTf;       // cumulative infiltration at the end of application, mm
    GreenArray GAVarPctRunoff; // percent runoff, varying water content
};

} // namespace rainfold
