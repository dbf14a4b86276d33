#include "app/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "fault_matcher.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr std::array<std::string_view, 7> headers = {
    "\"[system dir]\"", "\"[marigold dir]\"", "\"[chn dir]\"", "\"[save as dir]\"",
    "\"[ene cal]\"",    "\"[form pos]\"",     "\"[pk pos]\""};

struct Kept {
    Settings settings;
    CalibrationChoice choice;
};

// Which sections, in the order of the file, hold the same values.
std::array<bool, headers.size()> sameSections(const Kept& a, const Kept& b) {
    const Settings& x = a.settings;
    const Settings& y = b.settings;
    const auto sameSet = [](const PeakAreaSet& p, const PeakAreaSet& q) {
        return p.bkg1Low == q.bkg1Low && p.pkHigh == q.pkHigh && p.name == q.name;
    };
    return {
        x.systemDir == y.systemDir,
        x.marigoldDir == y.marigoldDir,
        x.lastDirectory == y.lastDirectory,
        x.saveAsDir == y.saveAsDir,
        a.choice == b.choice,
        std::ranges::equal(x.windowPlacement, y.windowPlacement),
        x.peakSetCount == y.peakSetCount && std::ranges::equal(x.peakSets, y.peakSets, sameSet)};
}

class SettingsFile : public testing::Test {
  protected:
    SettingsFile() { fs::create_directory(folder_.file("sub")); }
    void TearDown() override {
        std::error_code ignored;
        fs::current_path(startDirectory_, ignored);
    }

    // The state after a start whose settings file is in the test's folder.
    Kept read() const {
        Kept kept;
        kept.settings.systemDir = folder_.path();
        readSettings(kept.settings, kept.choice);
        return kept;
    }
    Kept read(std::string_view contents) const {
        folder_.write("kestrel.inf", contents);
        return read();
    }
    std::string written(Kept kept) const {
        writeSettings(kept.settings, kept.choice);
        return folder_.read("kestrel.inf");
    }
    // Differs from the values of a first start in every section.
    Kept sample() const {
        Kept kept;
        kept.settings.systemDir = folder_.path();
        kept.settings.marigoldDir = "/m";
        kept.settings.lastDirectory = folder_.file("sub");
        kept.settings.saveAsDir = "/s";
        kept.choice.calDefault = {-1.25, 1e-7, 3};
        kept.choice.useFileCalibration = false;
        kept.settings.windowPlacement[16] = {-1, 2, 2147483647, -2147483647 - 1};
        kept.settings.peakSetCount = 2;
        kept.settings.peakSets[0].name.assign("Cs-137, \"661\"");
        kept.settings.peakSets[1] = {1, -2, 3, 4, 5, 32767, 9, 9, 9, 9, FixedText<24>("Co-60")};
        return kept;
    }
    // The sample as a file that names another folder.
    std::string sampleFile() const {
        std::string file = written(sample());
        return file.insert(file.find("\"\r\n\"[marigold"), "/sub");
    }

    test::TempFolder folder_;
    fs::path startDirectory_ = fs::current_path();
};

TEST_F(SettingsFile, HasTheAgreedSectionsAndLines) {
    std::string expected = "\"[system dir]\"\r\n\"" + folder_.path() +
                           "\"\r\n\"[marigold dir]\"\r\n\"/m\"\r\n\"[chn dir]\"\r\n\"" +
                           folder_.file("sub") +
                           "\"\r\n\"[save as dir]\"\r\n\"/s\"\r\n"
                           "\"[ene cal]\"\r\n-1.25,1E-07,3,0\r\n\"[form pos]\"\r\n";
    for (int i = 0; i < 16; ++i)
        expected += "0,0,0,0\r\n";
    expected +=
        "-1,2,2147483647,-2147483648\r\n\"[pk pos]\"\r\n2\r\n"
        "0,0,0,0,0,0,\"Cs-137, \"\"661\"\"           \"\r\n"
        "1,-2,3,4,5,32767,\"Co-60                   \"\r\n";
    EXPECT_EQ(written(sample()), expected);
}

TEST_F(SettingsFile, BringsBackWhatWasWrittenWhateverTheBytes) {
    Kept kept = sample();
    for (int byte = 0; byte < 256; ++byte)
        kept.settings.marigoldDir += byte == '\n' || byte == '\r' ? ' ' : static_cast<char>(byte);
    kept.settings.saveAsDir = "C:\\\x83\x5c,\" \"[pk pos]\" 5\0 "s;
    kept.settings.peakSetCount = mostPeakSets;
    for (std::size_t i = 0; i < 128; ++i) {
        const auto byte = static_cast<char>(128 + i);
        kept.settings.peakSets[static_cast<std::int64_t>(i)].name.assign(" \"\",\xe3\x82\xbd"s +
                                                                         byte);
    }
    const std::string first = written(kept);
    const Kept back = read();
    EXPECT_EQ(back.settings.marigoldDir, kept.settings.marigoldDir);
    EXPECT_EQ(back.settings.saveAsDir, kept.settings.saveAsDir);
    EXPECT_EQ(written(back), first);
}

TEST_F(SettingsFile, IsFoundInAnyOrderQuotingAndLineEnd) {
    const Kept kept = read(
        "[pk pos]\n1\n1, 2,3,4,5, 6 , \"a\"\"b,c\" junk\n[Save as dir]\n/no\n"
        "\"[ene cal]\"\r -1.5 , 2E-1,.25keV,x\r[chn dir]\r\n/a b , else\r\n"
        "[save as dir] \n/no\n[save as dir]\n\n[marigold dir]\n\"last line\"");
    EXPECT_EQ(kept.settings.peakSetCount, 1);
    EXPECT_EQ(kept.settings.peakSets[0].pkHigh, 6);
    EXPECT_EQ(kept.settings.peakSets[0].name, FixedText<24>("a\"b,c"));
    EXPECT_EQ(kept.choice.calDefault, (Calibration{-1.5, 0.2, 0.25}));
    EXPECT_FALSE(kept.choice.useFileCalibration);
    EXPECT_EQ(kept.settings.lastDirectory, "/a b ");
    EXPECT_EQ(kept.settings.saveAsDir, "");
    EXPECT_EQ(kept.settings.marigoldDir, "last line");
}

TEST_F(SettingsFile, IsReadUpToWhereItIsCutOff) {
    const std::string file = sampleFile();
    const Kept full = read(file);
    const Kept none = read("");
    for (std::size_t cut = 0; cut < file.size(); ++cut) {
        const Kept kept = read(file.substr(0, cut));
        const auto asFull = sameSections(kept, full);
        const auto asNone = sameSections(kept, none);
        for (std::size_t k = 0; k < headers.size(); ++k) {
            const std::size_t begin = file.find(headers[k]);
            const std::size_t end =
                k + 1 < headers.size() ? file.find(headers[k + 1]) : file.size();
            EXPECT_TRUE(k >= 4 || asFull[k] || asNone[k]) << "half a path, cut at " << cut;
            EXPECT_TRUE(cut < end || asFull[k]) << headers[k] << " cut at " << cut;
            EXPECT_TRUE(cut >= begin + headers[k].size() || asNone[k])
                << headers[k] << " cut at " << cut;
        }
    }
}

TEST_F(SettingsFile, IsReadUpToWhereAByteIsDamaged) {
    const std::string file = sampleFile();
    const Kept full = read(file);
    for (std::size_t i = 0; i < file.size(); ++i) {
        const std::string flipped{'"', ',', '\n', '9', '\0', static_cast<char>(~file[i])};
        for (const char damage : flipped) {
            std::string damaged = file;
            damaged[i] = damage;
            const auto asFull = sameSections(read(damaged), full);
            for (std::size_t k = 0; k + 1 < headers.size(); ++k) {
                EXPECT_TRUE(i < file.find(headers[k + 1]) || asFull[k])
                    << headers[k] << " damaged at " << i;
            }
        }
    }
}

TEST_F(SettingsFile, KeepsWhatStoodBeforeANumberThatDoesNotFit) {
    for (const char* number : {"32768", "-32769", "1E999"}) {
        const Kept kept = read("[ene cal]\n1,2,3,"s + number + "\n[pk pos]\n5\n");
        EXPECT_EQ(kept.choice.calDefault, (Calibration{1, 2, 3})) << number;
        EXPECT_TRUE(kept.choice.useFileCalibration) << number;
        EXPECT_EQ(kept.settings.peakSetCount, 0) << number;
    }
    const WindowPlacements windows =
        read("[form pos]\n1,2,3,4\n5,2147483648,7,8\n").settings.windowPlacement;
    EXPECT_EQ(windows[0], (WindowPlacement{1, 2, 3, 4}));
    EXPECT_EQ(windows[1], (WindowPlacement{5, 0, 0, 0}));
}

TEST_F(SettingsFile, TakesAsManyPeakSetsAsTheTableHolds) {
    struct Case {
        const char* count;
        int lines, expected, setsRead;
    };
    for (const auto& [count, lines, expected, setsRead] :
         {Case{"-1", 200, 0, 0}, Case{"0", 200, 0, 0}, Case{"128", 200, 128, 128},
          Case{"129", 200, 128, 129}, Case{"200", 200, 128, 129}, Case{"99999", 200, 0, 0},
          Case{"50", 3, 50, 3}, Case{"", 0, 0, 0}}) {
        std::string file = "[pk pos]\n"s + count + "\n";
        for (int i = 0; i < lines; ++i)
            file += "7,0,0,0,0,0,\"\"\n";
        const Settings settings = read(file).settings;
        EXPECT_EQ(settings.peakSetCount, expected) << count;
        EXPECT_EQ(std::ranges::count(settings.peakSets, 7, &PeakAreaSet::bkg1Low), setsRead)
            << count;
    }
}

TEST_F(SettingsFile, IsLookedAtUpToOneMebibyte) {
    const std::string filler((std::size_t{1} << 20) - 40, ',');
    const Kept kept = read("[marigold dir]\n/m\n" + filler + "[chn dir]\n/seen\n\n\n\n\n" +
                           "[save as dir]\n/beyond\n");
    EXPECT_EQ(kept.settings.marigoldDir, "/m");
    EXPECT_EQ(kept.settings.lastDirectory, "/seen");
    EXPECT_EQ(kept.settings.saveAsDir, "");
}

TEST_F(SettingsFile, WorksForWhoeverHasCopiedIt) {
    Kept kept = read("[system dir]\n" + folder_.file("sub") + "\n[chn dir]\n/c\n");
    EXPECT_EQ(kept.settings.systemDir, folder_.path());
    EXPECT_EQ(kept.settings.lastDirectory, "/c");
    EXPECT_TRUE(written(kept).starts_with("\"[system dir]\"\r\n\"" + folder_.path() + "\"\r\n"));
}

TEST_F(SettingsFile, EndsATextWithoutClosingQuoteWithItsLine) {
    const Kept kept = read(
        "\"[chn dir]\"\r\n\"/c, d\r\n\"[save as dir]\nx\n\"[pk "
        "pos]\"\n1\n1,2,3,4,5,6,\"Cs\"\"\n\n");
    EXPECT_EQ(kept.settings.lastDirectory, "/c, d");
    EXPECT_EQ(kept.settings.saveAsDir, "x");
    EXPECT_EQ(kept.settings.peakSets[0].name, FixedText<24>("Cs\""));
    Kept broken = sample();
    broken.settings.marigoldDir = "a\r\n[chn dir]\nb";
    written(broken);
    EXPECT_EQ(read().settings.marigoldDir, "a  [chn dir] b");
    EXPECT_EQ(read().settings.lastDirectory, folder_.file("sub"));
}

// Two instances that were started from the same file.
TEST_F(SettingsFile, TakesOnlyItsOwnChangesFromEachInstance) {
    written(sample());
    Kept a = read();
    Kept b = read();
    a.settings.peakSets[0].pkHigh = 77;
    writePeakRegions(a.settings, a.choice);
    b.settings.marigoldDir = "/other";
    b.choice.useFileCalibration = true;
    writeSettings(b.settings, b.choice);
    a.settings.windowPlacement[3].left = 5;
    writeSettings(a.settings, a.choice);
    Kept expected = sample();
    expected.settings.peakSets[0].pkHigh = 77;
    expected.settings.marigoldDir = "/other";
    expected.choice.useFileCalibration = true;
    expected.settings.windowPlacement[3].left = 5;
    EXPECT_EQ(folder_.read("kestrel.inf"), written(expected));
    folder_.write("kestrel.inf", "");
    writePeakRegions(a.settings, a.choice);  // as it was
    EXPECT_EQ(folder_.read("kestrel.inf"), "");
    writeSettings(a.settings, a.choice);  // a file that another has lost
    EXPECT_EQ(read().settings.peakSets[0].pkHigh, 77);
}

TEST_F(SettingsFile, MakesTheLastDirectoryCurrentWhereItExists) {
    read("[chn dir]\n" + folder_.file("sub"));
    EXPECT_EQ(fs::current_path(), fs::canonical(folder_.file("sub")));
    EXPECT_EQ(read("[chn dir]\n/no/such/folder").settings.lastDirectory, "/no/such/folder");
    EXPECT_EQ(fs::current_path(), fs::canonical(folder_.file("sub")));
}

TEST_F(SettingsFile, IsMadeTogetherWithItsFolderOnTheFirstExit) {
    Kept kept;
    kept.settings.systemDir = folder_.file("new/config");
    readSettings(kept.settings, kept.choice);
    EXPECT_EQ(kept.settings.systemDir, folder_.file("new/config"));
    writeSettings(kept.settings, kept.choice);
    EXPECT_TRUE(folder_.read("new/config/kestrel.inf").starts_with("\"[system dir]\"\r\n"));
}

TEST_F(SettingsFile, IsReadAndReplacedUnderANameInOtherLetterCase) {
    folder_.write("KESTREL.INF", "[marigold dir]\n/m\n");
    Kept kept = read();
    EXPECT_EQ(kept.settings.marigoldDir, "/m");
    writeSettings(kept.settings, kept.choice);
    EXPECT_EQ(folder_.entries(), 2U);  // with "sub"
    EXPECT_TRUE(folder_.read("KESTREL.INF").ends_with("\"[pk pos]\"\r\n0\r\n"));
}

TEST_F(SettingsFile, StaysAsItWasWhereItCannotBeWritten) {
    Kept kept = sample();
    const std::string path = folder_.write("kestrel.inf", "old");
    fs::permissions(path, fs::perms::owner_read);
    EXPECT_FAULT(writeSettings(kept.settings, kept.choice), Fault::PermissionDenied);
    EXPECT_EQ(folder_.read("kestrel.inf"), "old");

    kept.settings.systemDir = path;
    EXPECT_FAULT(writeSettings(kept.settings, kept.choice), Fault::PathNotFound);
    kept.settings.systemDir = folder_.file("sub");
    fs::create_directory(folder_.file("sub/kestrel.inf"));
    EXPECT_FAULT(writeSettings(kept.settings, kept.choice), Fault::PathAccess);
    EXPECT_EQ(folder_.entries(), 2U);
}

}  // namespace
}  // namespace kestrel
