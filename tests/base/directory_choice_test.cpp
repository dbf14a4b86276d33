#include "base/directory_choice.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "temp_folder.h"

namespace kestrel {
namespace {

TEST(DirectoryChoice, MarksTheSettingOnlyWhileTheChooserIsOpen) {
    std::string marigold = "/m";
    std::string saveAs = "/s";
    const ChosenDirectories both{marigold, saveAs};
    std::string seen;
    EXPECT_FALSE(chooseDirectory(saveAs, [&] {
        seen = saveAs;
        EXPECT_EQ(startDirectory(both), "/s");
    }));
    EXPECT_EQ(seen, "?/s");
    EXPECT_EQ(saveAs, "/s");
    EXPECT_TRUE(chooseDirectory(marigold, [&] { acceptDirectory(both, "not there"); }));
    EXPECT_EQ(marigold, "not there");
    EXPECT_EQ(saveAs, "/s");
}

TEST(DirectoryChoice, SetsBothSettingsWhereBothAreMarked) {
    std::string marigold = "?/m";
    std::string saveAs = "?/s";
    EXPECT_EQ(startDirectory({marigold, saveAs}), "/m");
    acceptDirectory({marigold, saveAs}, "/new");
    EXPECT_EQ(marigold, "/new");
    EXPECT_EQ(saveAs, "/new");
}

TEST(DirectoryChoice, StartsInTheCurrentDirectoryWithoutASetting) {
    const std::string current = std::filesystem::current_path().string();
    std::string marigold = "/m";
    std::string saveAs;
    const ChosenDirectories both{marigold, saveAs};
    EXPECT_FALSE(chooseDirectory(saveAs, [&] { EXPECT_EQ(startDirectory(both), current); }));
    EXPECT_EQ(saveAs, "");
    EXPECT_FALSE(chooseDirectoryOrCurrent(saveAs, [&] { EXPECT_EQ(saveAs, "?" + current); }));
    EXPECT_EQ(saveAs, "");
    EXPECT_TRUE(
        chooseDirectoryOrCurrent(saveAs, [&] { acceptDirectory(both, startDirectory(both)); }));
    EXPECT_EQ(saveAs, current);
}

TEST(DirectoryChoice, FallsBackToTheNearestFolderThatExists) {
    const test::TempFolder folder;
    EXPECT_EQ(nearestDirectory(folder.path()), folder.path());
    EXPECT_EQ(nearestDirectory(folder.file("gone/deeper")), folder.path());
    EXPECT_EQ(nearestDirectory(folder.write("file", "")), folder.path());
    EXPECT_EQ(nearestDirectory("/no such place/at/all"), "/");
    EXPECT_EQ(nearestDirectory("no such place"), std::filesystem::current_path().string());
}

}  // namespace
}  // namespace kestrel
