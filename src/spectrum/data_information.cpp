#include "spectrum/data_information.h"

#include <cstdint>

#include "base/number_text.h"
#include "spectrum/start_date.h"

namespace kestrel {

std::string dateLine(const Spectrum& spectrum) {
    return "Date     : " + formatStart(spectrum.startDate, spectrum.startTime);
}

std::string commentLine(const Spectrum& spectrum) {
    return "Comment  : " + std::string(spectrum.comment.view());
}

std::vector<std::string> buildHeaderLines(const Spectrum& spectrum) {
    return {
        "File Name: " + spectrum.filePath,
        dateLine(spectrum),
        commentLine(spectrum),
        "Live Time: " + signedNumber(spectrum.liveTime.count) + "sec",
        "Mca No   : " + signedNumber(std::int64_t{spectrum.mcaNumber}),
        "Seg No   : " + signedNumber(std::int64_t{spectrum.segmentNumber}),
    };
}

}  // namespace kestrel
