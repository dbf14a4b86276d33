#include "spectrum/open_any.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "chn_bytes.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

std::string spe(int channels, const std::string& title) {
    std::string text =
        "$SPEC_ID:\n" + title + "\n$GPS:\n1 2\n$DATA:\n0 " + std::to_string(channels - 1) + "\n";
    for (int i = 0; i < channels; ++i)
        text += "3\n";
    return text;
}

class OpenAny : public testing::Test {
  protected:
    // Opening a file makes its folder the current one.
    ~OpenAny() override { std::filesystem::current_path(before); }

    OpenResult open(const std::string& name, const std::string& bytes) {
        dialogs.messages.clear();
        return openAnyPath(folder.write(name, bytes), {spectrum, derived, headerLines, notice},
                           lastDirectory, lastFilterIndex, dialogs);
    }
    const std::filesystem::path before = std::filesystem::current_path();
    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    Spectrum spectrum;
    DerivedArrays derived;
    std::vector<std::string> headerLines;
    Notice notice;
    std::string lastDirectory;
    int lastFilterIndex = 3;
};

TEST_F(OpenAny, GoesByTheContentAndElseByTheName) {
    EXPECT_EQ(open("a.xyz", spe(8, "one")), OpenResult::Loaded);
    EXPECT_EQ(spectrum.channelCount, 8);
    EXPECT_EQ(headerLines.back(), "GPS: 1 2");
    EXPECT_EQ(lastFilterIndex, 3);
    const test::ChnBytes chn{.counts = {1, 2, 3}};
    EXPECT_EQ(open("b.chn", chn.bytes()), OpenResult::Loaded);
    EXPECT_EQ(lastFilterIndex, 1);
    EXPECT_EQ(headerLines.size(), 6U) << "nothing of the file before";
    EXPECT_EQ(open("c.txt", spe(5, "two")), OpenResult::Loaded);
    EXPECT_EQ(spectrum.channelCount, 5);
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OpenAny, AsksWhichSpectrumAndWhetherToGroup) {
    const std::string two = spe(8, "one") + "$ENDRECORD:\n" + spe(20000, "two");
    EXPECT_EQ(open("a.spe", two), OpenResult::Loaded);
    ASSERT_EQ(dialogs.choices.size(), 1U);
    EXPECT_THAT(dialogs.choices[0].items,
                testing::ElementsAre("1  one  24 counts", "2  two  60000 counts"));
    EXPECT_EQ(open("b.spe", spe(20000, "two")), OpenResult::Loaded);
    EXPECT_THAT(dialogs.messages.at(0).text, HasSubstr("groups of 2 channels"));
    EXPECT_EQ(spectrum.channelCount, 10000);
    EXPECT_EQ(notice.text(), "Groups of 2 channels are added.");
    dialogs.messageAnswer = false;
    for (const std::string& bytes : {two, spe(20000, "two")})
        EXPECT_EQ(open("c.spe", bytes), OpenResult::Cancelled);
    EXPECT_THAT(spectrum.filePath, HasSubstr("b.spe"));
}

TEST_F(OpenAny, LeavesTheLoadedSpectrumAloneWhenItRefuses) {
    open("a.spe", spe(8, "one"));
    EXPECT_EQ(open("b.spe", "$DATA:\n0 4095\n1\n"), OpenResult::Refused);
    EXPECT_THAT(dialogs.messages.at(0).details,
                HasSubstr("promises 4096 counts, the file has 1.\n" + folder.file("b.spe")));
    EXPECT_EQ(spectrum.channelCount, 8);
    EXPECT_THAT(spectrum.filePath, HasSubstr("a.spe"));
    dialogs.fileAnswer = {};
    EXPECT_EQ(openAnySpectrum({spectrum, derived, headerLines, notice}, lastDirectory,
                              lastFilterIndex, dialogs),
              OpenResult::Cancelled);
    EXPECT_THAT(dialogs.fileDialogs.back().filters.front().pattern, HasSubstr("*.n42"));
}

}  // namespace
}  // namespace kestrel
