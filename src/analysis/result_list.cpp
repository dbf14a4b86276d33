#include "analysis/result_list.h"

#include <cmath>
#include <cstddef>

#include "analysis/net_area.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/energy_calibration.h"
#include "spectrum/start_date.h"

namespace kestrel {
namespace {

// Above every distance between two centres.
constexpr float farthestCentre = 26000.0F;

float centreOf(const PeakAreaSet& set) {
    return static_cast<float>(narrow16(set.pkLow + set.pkHigh) / 2.0);
}

// The set with the lowest centre above `previous`; `otherwise` where there is none.
std::int16_t nextSet(const PeakAreaTable& sets, std::int16_t setCount, float previous,
                     std::int16_t otherwise) {
    std::int16_t chosen = otherwise;
    float nearest = farthestCentre;
    for (std::int16_t i = 0; i < setCount; ++i) {
        const float centre = centreOf(sets[i]);
        if (centre > previous && centre - previous < nearest) {
            nearest = centre - previous;
            chosen = i;
        }
    }
    return chosen;
}

std::string resultLine(const Spectrum& spectrum, const PeakAreaSet& set, int row) {
    const double centre{centreOf(set)};
    // compatibility: energy below.
    const double energy = channelToEnergy(spectrum.calCurrent, toInt16(std::floor(centre)));
    std::string line;
    const auto field = [&line](double value, std::string_view pattern, std::size_t width) {
        line += rightAligned(formatNumber(value, pattern), width);
    };
    field(row, "###", 4);
    field(centre, "####0.0", 8);
    field(energy, "####0.0", 8);
    field(double{set.net}, "0.0000E+00", 12);
    field(double{set.netError}, "0.000E+00", 10);
    field(double{set.cps}, "0.0000E+00", 12);
    field(double{set.cpsError}, "0.000E+00", 10);
    for (const std::int16_t bound :
         {set.bkg1Low, set.bkg1High, set.pkLow, set.pkHigh, set.bkg2Low, set.bkg2High})
        field(bound, "####0", boundLength);
    return line;
}

// As a text file shows a number: the place of its sign in front, a blank behind.
std::string spaced(std::int64_t value) {
    return signedNumber(value) + " ";
}

}  // namespace

void recomputeSet(const Spectrum& spectrum, PeakAreaSet& set) {
    computeNetArea(spectrum, regionsOf(set), set);
}

std::vector<std::string> buildResultList(const Spectrum& spectrum, PeakAreaTable& sets,
                                         std::int16_t setCount) {
    std::vector<std::string> lines;
    float previous = 0;
    std::int16_t chosen = 0;
    for (int row = 1; row <= setCount; ++row) {
        chosen = nextSet(sets, setCount, previous, chosen);
        recomputeSet(spectrum, sets[chosen]);
        previous = centreOf(sets[chosen]);
        lines.push_back(resultLine(spectrum, sets[chosen], row));
    }
    return lines;
}

std::vector<std::string> resultHeader(const Spectrum& spectrum) {
    return {
        "File Name   :" + withoutControls(spectrum.filePath),
        "Comment     :" + withoutControls(spectrum.comment.view()),
        "Mca & Seg # :" + spaced(spectrum.mcaNumber) + "&" + spaced(spectrum.segmentNumber),
        "Date        :" + withoutControls(formatStartDate(spectrum.startDate)) + "-" +
            withoutControls(spectrum.startTime.view()),
        "Time(sec)   :" + spaced(spectrum.liveTime.wholeSeconds()),
        std::string(resultLineLength, '='),
        std::string(resultHeadings),
        std::string(resultLineLength, '-'),
    };
}

std::string resultFooter() {
    return std::string(resultLineLength, '=');
}

}  // namespace kestrel
