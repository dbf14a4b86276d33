// Data sets that the program fills by itself: from the marked peaks or from a saved list, and the
// way back from a step that was not meant.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "analysis/peak_data_sets.h"
#include "spectrum/derived_arrays.h"

namespace kestrel {

// Where the regions come from.
struct RegionSource {
    const DerivedArrays& derived;
    const std::int16_t& cursorCh;
    const std::string& listFolder;  // of saved lists
};

// What "Undo" takes back, step by step.
class AreaHistory {
  public:
    // The earliest steps beyond these are forgotten.
    static constexpr std::size_t mostSteps = 50;

    // To be called before a step.
    void keep(const PeakAreaWork& work);
    // Sets, fields and the place of the next channel as they were before the last step.
    void back(const PeakAreaWork& work);
    bool isEmpty() const { return steps_.empty(); }

  private:
    struct Step {
        PeakAreaTable sets;
        std::int16_t setCount = 0;
        PeakAreaState state;
    };
    std::deque<Step> steps_;
};

// "Auto": the regions of the marked peak nearest to the cursor go into the shown set, which keeps
// its remark. False, and the user is told, where there is no peak or no set to fill. Faults: those
// of measurePeaks, computeNetArea and showDataSet.
bool measureNearestPeak(const PeakAreaWork& work, const RegionSource& source);

// Regions that become a set.
struct FoundRegions {
    PeakRegions regions;
    std::string remark = {};
};

// A set for each, in place of those that are there or after them, as the user chooses; the first of
// them is shown. Regions in order in the set being filled make it one of those that are there.
// Regions around a centre that a set has already make no other. The user is told what the table has
// no room for. False when the user takes it back; some steps may be left to be undone. Faults:
// those of computeNetArea, keepEntered and showDataSet, before any set is added.
bool addSets(const PeakAreaWork& work, std::span<const FoundRegions> found);

// "All Peaks": all marked peaks from low to high; a group makes one set, whose remark tells of how
// many. False, and the user is told, where there is none. Faults: those of measurePeaks and
// addSets.
bool measureAllPeaks(const PeakAreaWork& work, const RegionSource& source);

// "Load...": the regions of a saved list. False, and the user is told, where the file is none.
// Faults: those of loadPkmFile and addSets.
bool loadSets(const PeakAreaWork& work, const RegionSource& source);

// Centroid and width of the marked peaks in the peak region of the shown set, as texts; none where
// the spectrum cannot be measured.
struct ShownPeak {
    std::string centroid;
    std::string fwhm;
};
ShownPeak shownPeak(const PeakAreaWork& work, const RegionSource& source);

// The middle of the peak region of the shown set; 0 where there is none.
int middleOfPeak(const PeakAreaWork& work);

}  // namespace kestrel
