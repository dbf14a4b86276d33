// The peak-area data sets behind the dialog pkArea: showing, measuring and clearing one, and
// stepping from one to the next.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "analysis/net_area.h"
#include "analysis/peak_area_set.h"
#include "base/dialogs.h"
#include "spectrum/region_bounds.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The fields of the dialog, as they are shown.
struct PeakAreaFields {
    RegionBounds bounds;              // Text1 to Text6
    std::string net;                  // Text7
    std::string cps;                  // Text8
    std::string index;                // Text9
    std::string relativeError;        // Text10, per cent
    std::string remark;               // Text11
    std::array<std::string, 3> sums;  // Text12 to Text14
};

struct PeakAreaState {
    PeakAreaFields fields;
    std::int16_t currentSet = 0;    // the set shown; setCount while a new one is being filled
    std::int16_t focusedField = 0;  // 1 to 6: the bound that takes the next channel; 0: none
};

// What the operations work on.
struct PeakAreaWork {
    const Spectrum& spectrum;
    PeakAreaTable& sets;
    std::int16_t& setCount;  // committed sets: 0 to setCount - 1
    PeakAreaState& state;
    Dialogs& dialogs;
};

enum class AreaStatus {
    Computed,
    Empty,   // no set yet and nothing entered: as good as computed
    Failed,  // regions out of order; the user has been told
};

// Of several faults the one nearest the low end of the spectrum; null when the regions are in
// order. Each spans at least two channels, and none touches the next.
const char* faultOf(const PeakRegions& regions);

// Faults: Overflow for a channel beyond 16 bits.
void storeRegions(const PeakRegions& regions, PeakAreaSet& set);

// Checks the bounds in the fields and stores them, the remark and the results in the current set.
// Faults: those of computeNetArea, Overflow; the set then keeps its contents.
AreaStatus computePeakArea(const PeakAreaWork& work);

// Fills the fields from the current set; a committed set is measured again in the spectrum that is
// loaded now. Faults: those of computePeakArea.
void showDataSet(const PeakAreaWork& work);

// Whether the results that are shown are those of the bounds that are shown: false once a bound has
// been changed and not measured yet.
bool resultsAreOfBounds(const PeakAreaWork& work);

// "<" and ">". True when another set is shown, and the first bound is to have the focus.
bool previousDataSet(const PeakAreaWork& work);
bool nextDataSet(const PeakAreaWork& work);

// "Clear", once the user agrees: the later sets move down; a new set that is not committed yet is
// emptied. Nothing happens, and it returns false, while no set is committed. Faults:
// SubscriptOutOfRange with 128 sets.
bool clearDataSet(const PeakAreaWork& work);

// True for a new set that nobody has touched: whoever leaves the program or opens another spectrum
// need not be told that its regions are out of order.
bool isUntouched(const PeakAreaWork& work);

// Stores bounds in order and the remark in the current set without a question, for the end of the
// session. Faults: Overflow.
void keepEntered(const PeakAreaWork& work);

// Puts the cursor's channel into the bound whose turn it is and measures, unless a bound is still
// 0. `regionsChanged` runs in between: the regions have changed, nothing is measured yet. False
// when it is no bound's turn.
bool enterCursorChannel(const PeakAreaWork& work, std::int16_t cursorCh,
                        const std::function<void()>& regionsChanged);

// The same with both bounds of the region that has the turn, in either order; the next one follows.
bool enterRange(const PeakAreaWork& work, std::int16_t from, std::int16_t to,
                const std::function<void()>& regionsChanged);

}  // namespace kestrel
