#include "spectrum/series.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "chn_bytes.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

class Series : public testing::Test {
  protected:
    // Opening a file makes its folder the current one.
    ~Series() override { std::filesystem::current_path(before); }

    // The name of the file that leafing came to, and how it ended.
    std::string leaf(Direction direction) {
        const OpenResult result =
            openNeighbour(direction, present, {spectrum, derived, headerLines, notice},
                          lastDirectory, lastFilterIndex, dialogs);
        const std::string name = std::filesystem::path(present).filename().string();
        return result == OpenResult::Loaded ? name
                                            : name + (result == OpenResult::Refused ? "!" : ".");
    }
    const std::filesystem::path before = std::filesystem::current_path();
    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    Spectrum spectrum;
    DerivedArrays derived;
    std::vector<std::string> headerLines;
    Notice notice;
    std::string present;
    std::string lastDirectory = folder.path();
    int lastFilterIndex = 1;
};

TEST_F(Series, GoesThroughTheSpectraOfAFolderInOrder) {
    const std::string one = test::ChnBytes{.counts = {1, 2, 3}}.bytes();
    const std::string two = test::ChnBytes{.counts = {1, 2, 3, 4}}.bytes();
    for (const char* name : {"run10.chn", "Run9.CHN", "run1.chn", "run010.chn"})
        folder.write(name, one);
    folder.write("run2.chn", "damaged");
    folder.write("run30.chn", two);
    for (const char* name : {"run3.pdf", "run4.dat", "chn", "run5.chn~"})
        folder.write(name, one);
    std::filesystem::create_directory(folder.file("run6.chn"));
    std::filesystem::create_symlink("run7.chn", folder.file("run7.chn"));

    EXPECT_EQ(leaf(Direction::Previous), ".");
    EXPECT_EQ(leaf(Direction::Next), "run1.chn");
    EXPECT_EQ(leaf(Direction::Next), "run2.chn!");
    EXPECT_EQ(spectrum.filePath, folder.file("run1.chn")) << "the spectrum stays";
    EXPECT_EQ(spectrum.counts[2], 3);
    EXPECT_TRUE(notice.text().starts_with("The file ends")) << "of run1, which stays";
    EXPECT_NE(dialogs.messages.back().details.find("run2.chn"), std::string::npos);
    for (const char* name : {"Run9.CHN", "run010.chn", "run10.chn", "run30.chn", "run30.chn."})
        EXPECT_EQ(leaf(Direction::Next), name);
    EXPECT_EQ(dialogs.messages.back().text, "There is no further spectrum in this folder.");
    EXPECT_EQ(spectrum.channelCount, 4);
    std::filesystem::remove(present);
    EXPECT_EQ(leaf(Direction::Previous), "run10.chn");
    EXPECT_EQ(dialogs.messages.size(), 3U);
}

}  // namespace
}  // namespace kestrel
