#include "analysis/peak_data_sets.h"

#include <algorithm>
#include <cstddef>

#include "analysis/net_area.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::int16_t lastBound = 6;

PeakAreaSet& current(const PeakAreaWork& work) {
    return work.sets[work.state.currentSet];
}

PeakRegions enteredRegions(const RegionBounds& bounds) {
    const auto bound = [&bounds](std::size_t i) {
        return toInt32(parseLeadingNumber(bounds.texts[i]));
    };
    return {.bkg1Low = bound(0),
            .bkg1High = bound(1),
            .pkLow = bound(2),
            .pkHigh = bound(3),
            .bkg2Low = bound(4),
            .bkg2High = bound(5)};
}

std::int32_t sumOf(const PeakRegions& r) {
    std::int32_t sum = 0;
    for (const std::int32_t bound :
         {r.bkg1Low, r.bkg1High, r.pkLow, r.pkHigh, r.bkg2Low, r.bkg2High})
        sum = narrow32(std::int64_t{sum} + bound);
    return sum;
}

// Right-justified in a field that a longer number widens: no digit is lost.
std::string justified(double value, const char* pattern, std::size_t width) {
    const std::string text = formatNumber(value, pattern);
    return text.size() < width ? rightAligned(text, width) : text;
}

std::string withError(float value, float error) {
    return formatNumber(double{value}, "0.0000E+00") + " +- " +
           formatNumber(double{error}, "0.000E+00");
}

std::string percentage(const PeakAreaSet& set, const char* without) {
    if (set.cps > 0)
        return formatNumber(double{set.cpsError} / double{set.cps} * 100, "###0.000");
    return without;
}

void showBounds(const PeakAreaSet& set, RegionBounds& bounds) {
    const std::int16_t channels[] = {set.bkg1Low, set.bkg1High, set.pkLow,
                                     set.pkHigh,  set.bkg2Low,  set.bkg2High};
    for (std::size_t i = 0; i < bounds.texts.size(); ++i)
        bounds.texts[i] = justified(channels[i], "###0", 4);
}

void showRemark(PeakAreaSet& set, PeakAreaFields& fields) {
    fields.remark = set.name.trimmed();
    set.name.assign(fields.remark);
}

void showSums(const PeakAreaWork& work) {
    const PeakAreaSet& set = current(work);
    const auto sum = [&work](std::int16_t low, std::int16_t high) {
        return justified(sumCounts(work.spectrum, low, high), "#######0", 8);
    };
    auto& sums = work.state.fields.sums;
    sums[0] = sum(set.bkg1Low, set.bkg1High);
    sums[1] = sum(set.pkLow, set.pkHigh);
    sums[2] = sum(set.bkg2Low, set.bkg2High);
}

// The record after a full table is never one: it cannot be committed.
bool isNewSet(const PeakAreaWork& work) {
    return work.state.currentSet == work.setCount && work.setCount < mostPeakSets;
}

void commitNewSet(const PeakAreaWork& work) {
    if (isNewSet(work))
        ++work.setCount;
}

void removeCurrentSet(const PeakAreaWork& work) {
    for (int i = work.state.currentSet; i <= work.setCount; ++i)
        work.sets[i] = work.sets[i + 1];
    storeRegions(PeakRegions{}, work.sets[work.setCount + 1]);
    --work.setCount;
}

// The user may leave regions behind that are out of order; they are not stored.
bool givesUpRegions(const PeakAreaWork& work) {
    return work.dialogs.message({.text = "This data setting is not complete.\rYou miss this data.",
                                 .title = "Check...",
                                 .icon = Icon::Exclamation,
                                 .buttons = Buttons::OkCancel});
}

void refuseMoreSets(const PeakAreaWork& work) {
    work.dialogs.message(
        {.text = "Area data sets exceed 128", .title = "Error...", .icon = Icon::Exclamation});
}

// While any bound is 0 or empty nothing is measured. computePeakArea has the last word
// (compatibility: two negative bounds).
bool allEntered(const RegionBounds& bounds) {
    double product = 1;
    for (std::size_t i = 0; i < bounds.texts.size(); ++i) {
        const double bound = parseLeadingNumber(bounds.texts[i]);
        product *= i < 2 ? toInt32(bound) : std::int32_t{toInt16(bound)};
    }
    return product >= 1;
}

void measureEntered(const PeakAreaWork& work) {
    PeakAreaFields& fields = work.state.fields;
    if (!allEntered(fields.bounds))
        return;
    computePeakArea(work);
    const PeakAreaSet& set = current(work);
    fields.net = withError(set.net, set.netError);
    fields.cps = withError(set.cps, set.cpsError);
    fields.relativeError = percentage(set, "   0.0");
    fields.index = signedNumber(std::int64_t{work.state.currentSet});
}

}  // namespace

const char* faultOf(const PeakRegions& r) {
    if (r.bkg1Low >= r.bkg1High)
        return "BKG1(low) >= BKG1(high)";
    if (r.bkg1High >= r.pkLow)
        return "BKG1(high) >= PK(low)";
    if (r.pkLow >= r.pkHigh)
        return "PK(low) >= PK(high)";
    if (r.pkHigh >= r.bkg2Low)
        return "PK(high) >= BKG2(low)";
    return r.bkg2Low >= r.bkg2High ? "BKG2(low) >= BKG2(high)" : nullptr;
}

void storeRegions(const PeakRegions& r, PeakAreaSet& set) {
    set.bkg1Low = narrow16(r.bkg1Low);
    set.bkg1High = narrow16(r.bkg1High);
    set.bkg2Low = narrow16(r.bkg2Low);
    set.bkg2High = narrow16(r.bkg2High);
    set.pkLow = narrow16(r.pkLow);
    set.pkHigh = narrow16(r.pkHigh);
}

AreaStatus computePeakArea(const PeakAreaWork& work) {
    const PeakRegions regions = enteredRegions(work.state.fields.bounds);
    if (sumOf(regions) == 0 && work.setCount == 0)
        return AreaStatus::Empty;
    if (const char* fault = faultOf(regions)) {
        work.dialogs.message({.text = std::string("Ch Error\r") + fault,
                              .title = "Error...",
                              .icon = Icon::Question});
        return AreaStatus::Failed;
    }
    PeakAreaSet& set = current(work);
    computeNetArea(work.spectrum, regions, set);
    storeRegions(regions, set);
    set.name.assign(work.state.fields.remark);
    return AreaStatus::Computed;
}

void showDataSet(const PeakAreaWork& work) {
    PeakAreaSet& set = current(work);
    PeakAreaFields& fields = work.state.fields;
    showBounds(set, fields.bounds);
    showRemark(set, fields);
    if (work.setCount >= 1 && work.state.currentSet != work.setCount)
        computePeakArea(work);
    fields.net = withError(set.net, set.netError);
    fields.cps = withError(set.cps, set.cpsError);
    fields.relativeError = percentage(set, "      ");
    showRemark(set, fields);
    fields.index = signedNumber(std::int64_t{work.state.currentSet});
    showSums(work);
}

bool previousDataSet(const PeakAreaWork& work) {
    if (computePeakArea(work) == AreaStatus::Failed) {
        if (!givesUpRegions(work))
            return false;
    } else if (work.state.currentSet >= 1) {
        commitNewSet(work);
    }
    if (work.state.currentSet <= 0)
        return false;
    --work.state.currentSet;
    showDataSet(work);
    return true;
}

bool nextDataSet(const PeakAreaWork& work) {
    if (work.state.currentSet == mostPeakSets) {
        refuseMoreSets(work);
        return false;
    }
    if (computePeakArea(work) == AreaStatus::Failed)
        return false;
    commitNewSet(work);
    if (work.state.currentSet >= work.setCount)
        return false;
    ++work.state.currentSet;
    // The fields still have the set before it (compatibility: record 129).
    if (work.state.currentSet == mostPeakSets) {
        refuseMoreSets(work);
        return false;
    }
    showDataSet(work);
    return true;
}

bool resultsAreOfBounds(const PeakAreaWork& work) {
    try {
        return enteredRegions(work.state.fields.bounds) == regionsOf(current(work));
    } catch (const RuntimeFault&) {
        return false;  // a number beyond what a bound can hold
    }
}

bool clearDataSet(const PeakAreaWork& work) {
    if (work.setCount == 0 || !work.dialogs.message({.text = "Do you clear this data set ?",
                                                     .title = "Check...",
                                                     .icon = Icon::Question,
                                                     .buttons = Buttons::OkCancel}))
        return false;
    if (isNewSet(work))
        current(work) = PeakAreaSet{};
    else
        removeCurrentSet(work);
    showDataSet(work);
    return true;
}

bool isUntouched(const PeakAreaWork& work) {
    return isNewSet(work) && std::ranges::all_of(work.state.fields.bounds.texts, [](const auto& t) {
               return toInt32(parseLeadingNumber(t)) == 0;
           });
}

void keepEntered(const PeakAreaWork& work) {
    const PeakRegions regions = enteredRegions(work.state.fields.bounds);
    if (faultOf(regions) != nullptr)
        return;
    storeRegions(regions, current(work));
    current(work).name.assign(work.state.fields.remark);
}

bool enterCursorChannel(const PeakAreaWork& work, std::int16_t cursorCh,
                        const std::function<void()>& regionsChanged) {
    PeakAreaFields& fields = work.state.fields;
    std::int16_t& field = work.state.focusedField;
    const bool entered = field >= 1 && field <= lastBound;
    if (entered) {
        fields.bounds.texts[static_cast<std::size_t>(field) - 1] =
            signedNumber(std::int64_t{cursorCh});
        if (field < lastBound)
            ++field;
        regionsChanged();
    }
    measureEntered(work);
    return entered;
}

bool enterRange(const PeakAreaWork& work, std::int16_t from, std::int16_t to,
                const std::function<void()>& regionsChanged) {
    std::int16_t& field = work.state.focusedField;
    if (field < 1 || field > lastBound)
        return false;
    const int row = (field - 1) / 2;
    const auto low = static_cast<std::size_t>(row) * 2;
    auto& texts = work.state.fields.bounds.texts;
    texts[low] = signedNumber(std::int64_t{std::min(from, to)});
    texts[low + 1] = signedNumber(std::int64_t{std::max(from, to)});
    field = std::min(narrow16(2 * row + 3), lastBound);
    regionsChanged();
    measureEntered(work);
    return true;
}

}  // namespace kestrel
