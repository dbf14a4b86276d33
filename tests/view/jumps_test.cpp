#include "view/jumps.h"

#include <gtest/gtest.h>

#include "fault_matcher.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

TEST(Jump, TakesTheNumberThatTheAnswerBeginsWith) {
    test::ScriptedDialogs dialogs;
    for (const auto& [answer, channel] : {std::pair{"100abc", 100},
                                          {"abc", 0},
                                          {"", 0},
                                          {"-5", -5},
                                          {"62.5", 62},
                                          {"20000", 20000}}) {
        dialogs.inputAnswer = answer;
        EXPECT_EQ(askChannel(dialogs), channel) << answer;
    }
    dialogs.inputAnswer = "99999";
    EXPECT_FAULT(askChannel(dialogs), Fault::Overflow);
    EXPECT_EQ(dialogs.inputs.back().prompt, "Input channel");
    EXPECT_EQ(dialogs.inputs.back().title, "Jump Cursol");
}

TEST(Jump, TurnsAnEnergyIntoItsChannel) {
    test::ScriptedDialogs dialogs;
    dialogs.inputAnswer = "661.66 keV";
    EXPECT_EQ(askEnergy({1, 0.5, 0}, dialogs), 1321);
    dialogs.inputAnswer = "no energy";
    EXPECT_EQ(askEnergy({1, 0.5, 0}, dialogs), -2);
    EXPECT_EQ(dialogs.inputs.back().prompt, "Input energy");
    EXPECT_EQ(dialogs.inputs.back().title, "Jump Cursol");
}

}  // namespace
}  // namespace kestrel
