#include "app/preferences.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/recent_files.h"
#include "fault_matcher.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

class PreferencesFile : public testing::Test {
  protected:
    Preferences read() const {
        Preferences preferences;
        preferences.folder = folder_.path();
        readPreferences(preferences);
        return preferences;
    }
    Preferences read(const std::string& contents) const {
        folder_.write("kestrel.ini", contents);
        return read();
    }

    test::TempFolder folder_;
};

TEST_F(PreferencesFile, KeepsWhatWasChanged) {
    Preferences preferences = read();
    writePreferences(preferences);
    EXPECT_FALSE(folder_.has("kestrel.ini")) << "nothing has changed";
    const std::vector<std::string> awkward = {" a=b ", "\\n", "back\\slash\\", "#\xE9\r", "/x"};
    preferences.energyAxis = false;
    preferences.colours = ColourScheme::Safe;
    preferences.peaksWindow = {-150, 30, 9000, 6000};
    preferences.recentFiles = awkward;
    preferences.peakCalibration = "curve\n1 0 1 used\n";
    writePreferences(preferences);
    const Preferences back = read();
    EXPECT_FALSE(back.energyAxis);
    EXPECT_EQ(back.colours, ColourScheme::Safe);
    EXPECT_EQ(back.peaksWindow, preferences.peaksWindow);
    EXPECT_EQ(back.recentFiles, awkward);
    EXPECT_EQ(back.peakCalibration, preferences.peakCalibration);
    EXPECT_EQ(read("peaksWindow=1 2 3\n").peaksWindow, WindowPlacement());
}

TEST_F(PreferencesFile, LeavesUnknownLinesAndThoseOfAnotherInstance) {
    Preferences preferences = read("; mine\r\n[later]\nnew = 1 \n\n colours = light\n");
    EXPECT_EQ(preferences.colours, ColourScheme::Light);
    read("; mine\r\n[later]\nnew = 1 \n\nfineTicks=on\n colours = light\n");
    preferences.largeTexts = true;
    writePreferences(preferences);
    EXPECT_EQ(folder_.read("kestrel.ini"),
              "; mine\n[later]\nnew = 1 \n\nfineTicks=on\n colours = light\nlargeTexts=on\n");
}

TEST_F(PreferencesFile, ListsTenRecentFilesAndWhichOfThemAreThere) {
    std::vector<std::string> recent = {"relative", "/x"};
    for (const char* name : {"1", "2", "3", "4", "5", "6", "7", "8", "9", "2"})
        rememberFile(recent, folder_.write(name, ""));
    std::filesystem::remove(folder_.file("8"));
    std::string listed;
    for (const RecentFile& file : recentFiles(recent))
        listed += file.path.back() + std::string(file.isThere ? " " : "! ");
    EXPECT_EQ(listed, "2 9 8! 7 6 5 4 3 1 ") << "no path below whatever folder is the current one";
    rememberFile(recent, "/x");
    rememberFile(recent, "/y");
    EXPECT_EQ(recentFiles(recent).size(), 10U);
}

TEST_F(PreferencesFile, SenselessValuesChangeNothing) {
    const std::string junk = "energyAxis=maybe\ncolours=\ncolours=light\n=\n\\\nrecentFiles=\\";
    EXPECT_TRUE(read(junk).energyAxis);
    EXPECT_EQ(read(junk).colours, ColourScheme::Black) << "of two lines the first counts";
    std::string many = "recentFiles=";
    for (int i = 0; i < 1000; ++i)
        many += "x\\n";
    EXPECT_EQ(read(many).recentFiles.size(), 100U);
    const std::string foreign(2 << 20, '\n');
    Preferences preferences = read(foreign);
    preferences.fineTicks = true;
    EXPECT_FAULT(writePreferences(preferences), Fault::PathAccess);
    EXPECT_EQ(folder_.read("kestrel.ini"), foreign);
}

}  // namespace
}  // namespace kestrel
