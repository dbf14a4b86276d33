#include "spectrum/start_date.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kestrel {
namespace {

TEST(StartDate, IsACalendarDateOrItsOwnText) {
    struct Case {
        std::string_view characters, text;
    };
    for (const auto& [characters, text] : {
             Case{"16NOV261", "2026/11/16"},
             Case{"03JAN95 ", "1995/01/03"},
             Case{"03JAN950", "1995/01/03"},
             Case{"03JAN95*", "3900/01/03"},
             Case{"01Feb051", "2005/02/01"},
             Case{" 3dec991", "2099/12/03"},
             Case{"3 DEC991", "2099/12/03"},
             Case{"31DEC591", "2059/12/31"},
             Case{"31DEC59 ", "3959/12/31"},  // before 1960
             Case{"31DEC60 ", "1960/12/31"},
             Case{"29FEB001", "2000/02/29"},
             Case{"29FEB041", "2004/02/29"},
             Case{"29FEB051", "29/FEB/2005"},
             Case{"29FEB002", "29/FEB/2100"},
             Case{"31APR051", "31/APR/2005"},
             Case{"00JAN051", "00/JAN/2005"},
             Case{"+3JAN051", "+3/JAN/2005"},
             Case{"  JAN051", "  /JAN/2005"},
             Case{"03\x31\x8c\x8e"
                  "051",
                  "03/\x31\x8c\x8e/2005"},
             Case{"03JAN  *", "3900/01/03"},
             Case{"03JANE41", "03/JAN/11900"},
             Case{"03JANE51", "03/JAN/1E5"},
             Case{"        ", ""},
         })
        EXPECT_EQ(formatStartDate(FixedText<8>(characters)), text) << characters;
}

}  // namespace
}  // namespace kestrel
