#include "spectrum/data_information.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrel {
namespace {

TEST(DataInformation, ListsSixLabelledLines) {
    Spectrum spectrum;
    spectrum.filePath = "/data/spec.chn";
    spectrum.startDate.assign("16NOV261");
    spectrum.startTime.assign("0930");
    spectrum.comment.assign("soil, 1 kg");
    spectrum.liveTime = {15000};
    spectrum.mcaNumber = -2;
    EXPECT_EQ(buildHeaderLines(spectrum),
              (std::vector<std::string>{"File Name: /data/spec.chn", "Date     : 2026/11/16-0930  ",
                                        "Comment  : soil, 1 kg" + std::string(54, ' '),
                                        "Live Time:  15000sec", "Mca No   : -2", "Seg No   :  0"}));
}

}  // namespace
}  // namespace kestrel
