#include "analysis/measured_sets.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "analysis/net_area.h"
#include "analysis/peak_measures.h"
#include "analysis/pkm_file.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr std::size_t peaksShown = 3;

void tell(const PeakAreaWork& work, std::string text, std::string details = {}) {
    work.dialogs.message(
        {.text = std::move(text), .icon = Icon::Exclamation, .details = std::move(details)});
}

std::vector<PeakRecord> markedPeaks(const PeakAreaWork& work, const RegionSource& source) {
    std::vector<PeakRecord> peaks = measurePeaks(work.spectrum, source.derived).peaks;
    if (peaks.empty())
        tell(work, "No peak is marked in this spectrum.");
    return peaks;
}

PeakAreaSet measured(const Spectrum& spectrum, const FoundRegions& found) {
    PeakAreaSet set;
    storeRegions(found.regions, set);
    set.name.assign(found.remark);
    computeNetArea(spectrum, found.regions, set);
    return set;
}

// Of a group only once.
std::vector<FoundRegions> regionsOfAll(std::span<const PeakRecord> peaks) {
    std::vector<FoundRegions> found;
    for (std::size_t i = 0; i < peaks.size();) {
        std::size_t next = i + 1;
        while (peaks[i].group > 0 && next < peaks.size() && peaks[next].group == peaks[i].group)
            ++next;
        found.push_back({peaks[i].regions, {}});
        if (next > i + 1)
            found.back().remark = "group of " + std::to_string(next - i);
        i = next;
    }
    return found;
}

// What is entered in the shown set, once its regions are in order.
void commitEntered(const PeakAreaWork& work) {
    if (work.state.currentSet >= mostPeakSets)
        return;
    keepEntered(work);
    PeakAreaSet& set = work.sets[work.state.currentSet];
    if (faultOf(regionsOf(set)) != nullptr)
        return;
    computeNetArea(work.spectrum, regionsOf(set), set);
    if (work.state.currentSet == work.setCount)
        ++work.setCount;
}

enum class Room { Cancelled, After, Instead };

Room askRoom(const PeakAreaWork& work, std::size_t added) {
    const std::string there = std::to_string(work.setCount);
    const auto choice =
        work.dialogs.choose({.title = "Data sets",
                             .prompt = "What becomes of the sets that are there ?",
                             .items = {"Append " + std::to_string(added) + " to the " + there,
                                       "Replace the " + there + " by " + std::to_string(added)}});
    if (!choice)
        return Room::Cancelled;
    return *choice == 0 ? Room::After : Room::Instead;
}

bool makeRoom(const PeakAreaWork& work, std::size_t added) {
    const Room room = work.setCount > 0 ? askRoom(work, added) : Room::Instead;
    if (room == Room::Instead) {
        work.sets.fill({});
        work.setCount = 0;
    }
    return room != Room::Cancelled;
}

// The list of results has only the first of sets with the same centre.
bool isThere(const PeakAreaWork& work, const PeakAreaSet& set) {
    const auto sets = work.sets.span(0, work.setCount);
    return std::ranges::any_of(sets, [&set](const PeakAreaSet& other) {
        return other.pkLow + other.pkHigh == set.pkLow + set.pkHigh;
    });
}

std::vector<PeakAreaSet> appendNew(const PeakAreaWork& work, std::span<const PeakAreaSet> added) {
    std::vector<PeakAreaSet> leftOut;
    for (const PeakAreaSet& set : added) {
        if (isThere(work, set))
            continue;
        if (work.setCount < mostPeakSets)
            work.sets[work.setCount++] = set;
        else
            leftOut.push_back(set);
    }
    work.sets[work.setCount] = {};
    return leftOut;
}

// A few of them; they go on to the end of the spectrum.
void tellLeftOut(const PeakAreaWork& work, const std::vector<PeakAreaSet>& leftOut) {
    if (leftOut.empty())
        return;
    const auto middle = [](const PeakAreaSet& set) {
        return formatNumber((set.pkLow + set.pkHigh) / 2.0, "0.0");
    };
    tell(work, "Area data sets exceed 128",
         "Left out: " + std::to_string(leftOut.size()) + ", from channel " +
             middle(leftOut.front()) + " to " + middle(leftOut.back()) + ".");
}

bool isCalibrated(const Spectrum& spectrum) {
    return spectrum.calCurrent != startCalibration;
}

void append(std::string& list, double value, const char* pattern) {
    list += (list.empty() ? "" : ", ") + formatNumber(value, pattern);
}

ShownPeak describe(const Calibration* calibration, std::span<const PeakRecord> peaks) {
    ShownPeak channels;
    ShownPeak energies;
    for (const PeakRecord& peak : peaks.first(std::min(peaks.size(), peaksShown))) {
        append(channels.centroid, peak.centroid, "0.00");
        append(channels.fwhm, peak.fwhm, "0.00");
        if (calibration == nullptr)
            continue;
        const auto& [a, b, c] = *calibration;
        append(energies.centroid, a + (b + c * peak.centroid) * peak.centroid, "0.00");
        append(energies.fwhm, peak.fwhm * std::abs(b + 2 * c * peak.centroid), "0.00");
    }
    const char* more = peaks.size() > peaksShown ? " ..." : "";
    const auto together = [more](const std::string& ch, const std::string& keV) {
        return ch.empty() ? ch : ch + more + " ch" + (keV.empty() ? "" : ", " + keV + " keV");
    };
    return {together(channels.centroid, energies.centroid), together(channels.fwhm, energies.fwhm)};
}

}  // namespace

void AreaHistory::keep(const PeakAreaWork& work) {
    steps_.push_back({work.sets, work.setCount, work.state});
    if (steps_.size() > mostSteps)
        steps_.pop_front();
}

void AreaHistory::back(const PeakAreaWork& work) {
    if (steps_.empty())
        return;
    const bool shown = work.state.fields.bounds.shown;
    work.sets = steps_.back().sets;
    work.setCount = steps_.back().setCount;
    work.state = steps_.back().state;
    work.state.fields.bounds.shown = shown;
    steps_.pop_back();
}

bool measureNearestPeak(const PeakAreaWork& work, const RegionSource& source) {
    if (work.state.currentSet >= mostPeakSets) {
        tell(work, "Area data sets exceed 128");
        return false;
    }
    const std::vector<PeakRecord> peaks = markedPeaks(work, source);
    if (peaks.empty())
        return false;
    const auto nearest = std::ranges::min_element(peaks, {}, [&source](const PeakRecord& peak) {
        return std::abs(peak.centroid - source.cursorCh);
    });
    work.sets[work.state.currentSet] =
        measured(work.spectrum, {nearest->regions, work.state.fields.remark});
    showDataSet(work);
    return true;
}

bool addSets(const PeakAreaWork& work, std::span<const FoundRegions> found) {
    std::vector<PeakAreaSet> added;
    std::ranges::transform(found, std::back_inserter(added), [&work](const FoundRegions& regions) {
        return measured(work.spectrum, regions);
    });
    commitEntered(work);
    if (!makeRoom(work, added.size()))
        return false;
    const int first = work.setCount;
    const std::vector<PeakAreaSet> leftOut = appendNew(work, added);
    work.state.currentSet = static_cast<std::int16_t>(std::min<int>(first, work.setCount - 1));
    showDataSet(work);
    tellLeftOut(work, leftOut);
    if (first == work.setCount && leftOut.empty())
        tell(work, "All of these peaks have a set already.");
    return true;
}

bool measureAllPeaks(const PeakAreaWork& work, const RegionSource& source) {
    const std::vector<PeakRecord> peaks = markedPeaks(work, source);
    return !peaks.empty() && addSets(work, regionsOfAll(peaks));
}

bool loadSets(const PeakAreaWork& work, const RegionSource& source) {
    const FileChoice choice =
        work.dialogs.openFile({.title = "Load Regions",
                               .filters = {{"Peak areas(*.pkm)", "*.pkm"}, {"All File(*.*)", "*"}},
                               .folder = source.listFolder});
    if (choice.path.empty())
        return false;
    const ReadRegions read = loadPkmFile(choice.path);
    if (!read.refusal.empty()) {
        tell(work, "The file holds no list of peak areas.", read.refusal + '\n' + choice.path);
        return false;
    }
    std::vector<FoundRegions> found;
    for (const PeakRegions& regions : read.regions)
        found.push_back({regions, {}});
    return addSets(work, found);
}

ShownPeak shownPeak(const PeakAreaWork& work, const RegionSource& source) {
    try {
        if (!resultsAreOfBounds(work))
            return {};
        const PeakRegions regions = regionsOf(work.sets[work.state.currentSet]);
        if (regions.pkHigh <= regions.pkLow)
            return {};
        std::vector<PeakRecord> peaks = measurePeaks(work.spectrum, source.derived).peaks;
        std::erase_if(peaks, [&regions](const PeakRecord& peak) {
            return peak.centroid < regions.pkLow || peak.centroid > regions.pkHigh;
        });
        return describe(isCalibrated(work.spectrum) ? &work.spectrum.calCurrent : nullptr, peaks);
    } catch (const RuntimeFault&) {
        return {};
    }
}

int middleOfPeak(const PeakAreaWork& work) {
    const PeakAreaSet& set = work.sets[work.state.currentSet];
    return (set.pkLow + set.pkHigh) / 2;
}

}  // namespace kestrel
