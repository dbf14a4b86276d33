#include "spectrum/data_information.h"

#include <cstdint>

#include "base/number_text.h"
#include "spectrum/start_date.h"

namespace kestrel {

std::vector<std::string> buildHeaderLines(const Spectrum& spectrum) {
    return {
        "File Name: " + spectrum.filePath,
        "Date     : " + formatStartDate(spectrum.startDate) + "-" +
            std::string(spectrum.startTime.view()),
        "Comment  : " + std::string(spectrum.comment.view()),
        "Live Time: " + signedNumber(std::int64_t{spectrum.liveTime}) + "sec",
        "Mca No   : " + signedNumber(std::int64_t{spectrum.mcaNumber}),
        "Seg No   : " + signedNumber(std::int64_t{spectrum.segmentNumber}),
    };
}

}  // namespace kestrel
