#include "spectrum/open_spectrum.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "chn_bytes.h"
#include "fault_matcher.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

constexpr const char* refusal = "File does not read.\nDifferent format ?!   Check file type !!";

class OpenSpectrum : public testing::Test {
  protected:
    OpenResult open(const std::string& path, int filterIndex = 1) {
        dialogs.fileAnswer = {.path = path, .filterIndex = filterIndex};
        return openSpectrumFile({spectrum, derived, headerLines, notice}, lastDirectory,
                                lastFilterIndex, dialogs);
    }

    OpenResult openPath(const std::string& path) {
        return openSpectrumPath(path, {spectrum, derived, headerLines, notice}, lastDirectory,
                                lastFilterIndex, dialogs);
    }

    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    Spectrum spectrum;
    DerivedArrays derived;
    std::vector<std::string> headerLines;
    Notice notice;
    std::string lastDirectory = "/somewhere";
    int lastFilterIndex = 3;
};

TEST_F(OpenSpectrum, OffersTheEightFiltersAndStartsWhereTheLastDialogEnded) {
    open("");
    const FileDialog& dialog = dialogs.fileDialogs.at(0);
    EXPECT_EQ(dialog.folder, "/somewhere");
    EXPECT_EQ(dialog.filterIndex, 3);
    const char* expected[][2] = {
        {"ORTEC, SEIKO (chn)", "*.chn"},       {"Win Oxford (asc)", "*.asc"},
        {"DOS Oxford (asc)", "*.asc"},         {"Labo (binary)", "*.dat"},
        {"Labo v1.54(binary)", "*.dat"},       {"CANBERRA35+ RS232C (txt)", "*.txt"},
        {"NAIG E-560  RS232C (txt)", "*.txt"}, {"All File", "*.*"},
    };
    ASSERT_EQ(dialog.filters.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(dialog.filters[i].text, expected[i][0]);
        EXPECT_EQ(dialog.filters[i].pattern, expected[i][1]);
    }
}

TEST_F(OpenSpectrum, KeepsFilterAndFolderAlsoWhenCancelled) {
    EXPECT_EQ(open("", 6), OpenResult::Cancelled);
    EXPECT_EQ(lastFilterIndex, 6);
    EXPECT_EQ(lastDirectory, std::filesystem::current_path().string());
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OpenSpectrum, BuildsTheHeaderLinesInTicksAndThenConvertsToSeconds) {
    struct Case {
        std::int32_t ticks;
        std::int32_t seconds;
        const char* line;
    };
    for (const Case& c : {Case{12345, 247, "Live Time:  12345sec"},
                          {12375, 248, "Live Time:  12375sec"},
                          {12325, 246, "Live Time:  12325sec"},
                          {-25, 0, "Live Time: -25sec"}}) {
        const test::ChnBytes file{.realTime = 20025, .liveTime = c.ticks};
        ASSERT_EQ(open(folder.write("a.chn", file.bytes())), OpenResult::Loaded);
        EXPECT_EQ(headerLines.at(3), c.line);
        EXPECT_EQ(spectrum.openedLiveTime.count, c.ticks);
        EXPECT_EQ(spectrum.liveTime.wholeSeconds(), c.seconds);
        EXPECT_EQ(spectrum.realTime.wholeSeconds(), 400);
        EXPECT_EQ(derived.logHeights[2], 600);
    }
}

TEST_F(OpenSpectrum, FindsTheExtensionAnywhereInTheNameAndInAnyLetterCase) {
    for (const char* name : {"SPEC.CHN", "spec.chn.bak", "a.Chn"})
        EXPECT_EQ(open(folder.write(name, test::ChnBytes{}.bytes())), OpenResult::Loaded) << name;
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OpenSpectrum, RefusesWhatTheFilterDoesNotFit) {
    const std::string chn = folder.write("a.chn", test::ChnBytes{}.bytes());
    const std::string other = folder.write("a.txt", test::ChnBytes{}.bytes());
    const std::string text = folder.write("text.chn", "no spectrum");
    int refused = 0;
    for (const auto& [path, filter] :
         {std::pair{chn, 8}, {chn, 0}, {chn, 9}, {chn, 2}, {other, 1}, {text, 1}}) {
        EXPECT_EQ(open(path, filter), OpenResult::Refused) << path << filter;
        ASSERT_EQ(dialogs.messages.size(), static_cast<std::size_t>(++refused));
        EXPECT_EQ(dialogs.messages.back().text, refusal);
        EXPECT_EQ(dialogs.messages.back().title, "Kestrel");
        EXPECT_EQ(dialogs.pointer, Pointer::Default);
    }
    EXPECT_EQ(open(chn), OpenResult::Loaded);
}

TEST_F(OpenSpectrum, OpensAPathWithTheFilterThatItsNameAndItsMarksCallFor) {
    const std::string samples = KESTREL_SAMPLES "/eu152-co60-cs137-4096";
    const std::string text = "one\ntwo\nLaboratory Equipment\n";
    struct Case {
        std::string path;
        int filter;
        OpenResult result = OpenResult::Loaded;
        std::string message = {};
    };
    const Case cases[] = {
        {samples + ".chn", 1},
        {samples + "-windows.asc", 2},
        {samples + "-dos.asc", 3},
        {samples + "-series35.txt", 6},
        {samples + "-e560.txt", 7},
        {folder.write("A.CHN", test::ChnBytes{}.bytes()), 1},
        {folder.write("a.txt.chn", text), 1, OpenResult::Refused, refusal},
        {folder.write("a.asc", text), 3, OpenResult::Refused, refusal},
        {folder.write("a.dat", text), 4, OpenResult::Refused, refusal},
        {folder.write("a.txt", text), 7, OpenResult::Refused, refusal},
        {folder.file("gone.txt"), 6, OpenResult::Refused, "File does not exist."},
    };
    for (const Case& c : cases) {
        dialogs.messages.clear();
        EXPECT_EQ(openPath(c.path), c.result) << c.path;
        EXPECT_EQ(lastFilterIndex, c.filter) << c.path;
        EXPECT_EQ(spectrum.filePath, c.path);
        EXPECT_EQ(lastDirectory, std::filesystem::path(c.path).parent_path()) << c.path;
        EXPECT_EQ(lastDirectory, std::filesystem::current_path()) << c.path;
        EXPECT_EQ(dialogs.messages.empty() ? "" : dialogs.messages[0].text, c.message) << c.path;
    }
    EXPECT_TRUE(dialogs.fileDialogs.empty());
    std::filesystem::current_path("/");
}

TEST_F(OpenSpectrum, RefusesAPathWhoseNameNoFilterFitsAndChangesNothing) {
    ASSERT_EQ(open(folder.write("a.chn", test::ChnBytes{}.bytes())), OpenResult::Loaded);
    const std::string before = lastDirectory;
    for (const char* name : {"a.chn.bak", "a", "chn", "a.pdf"}) {
        const std::string path = folder.write(name, test::ChnBytes{}.bytes());
        EXPECT_EQ(openPath(path), OpenResult::Refused);
        EXPECT_EQ(dialogs.messages.back().text,
                  "This is no spectrum file by its name, which must end in\n"
                  ".chn, .asc, .dat or .txt.");
        EXPECT_EQ(dialogs.messages.back().details, path);
    }
    EXPECT_EQ(spectrum.filePath, folder.file("a.chn"));
    EXPECT_EQ(lastFilterIndex, 1);
    EXPECT_EQ(lastDirectory, before);
}

std::size_t handlesOn(const std::string& path) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        count += std::filesystem::read_symlink(entry, gone) == path ? 1U : 0U;
    }
    return count;
}

TEST_F(OpenSpectrum, LeavesACaptureOpenThatSaysThatItHoldsNoSpectrum) {
    const std::string path = folder.write("a.txt", '\x7f' + std::string(2303, ' ') + "?      1");
    EXPECT_EQ(open(path, 7), OpenResult::Refused);
    EXPECT_EQ(open(path, 7), OpenResult::Refused);
    EXPECT_EQ(handlesOn(path), 1U);
    spectrum.fileLeftOpen.reset();
    EXPECT_EQ(open(folder.write("b.txt", "no mark"), 7), OpenResult::Refused);
    EXPECT_EQ(handlesOn(folder.file("b.txt")), 0U);
}

// What a format does not speak of stays as it was, what was read stays as far as it came.
TEST_F(OpenSpectrum, LeavesInTheRecordWhatWasReadOfARefusedFile) {
    struct Case {
        int filter;
        std::string bytes;
        const char* startTime;
        std::int16_t mca;
        std::int32_t seconds;
        std::string reason;
    };
    const Case cases[] = {
        {1,
         std::string("This is not.............12\0"
                     "34",
                     29),
         "12", 29545, 774778414, "A CHN file begins with the number -1, this one with 26708."},
        {3, "Elt: 7\nReal Time: 8\n", "", 444, 350,
         "There is no line with \"Chn    Counts\", the heading of the counts."},
        {7, "no mark", "old", 560, 10,
         "There is nothing behind a byte 127, which ends the header text."},
    };
    for (const Case& c : cases) {
        spectrum.startTime.assign("old");
        spectrum.liveTime = {500};
        spectrum.comment.assign("comment");
        EXPECT_EQ(open(folder.write("a.chn.asc.txt", c.bytes), c.filter), OpenResult::Refused);
        EXPECT_EQ(spectrum.startTime.trimmed(), c.startTime);
        EXPECT_EQ(spectrum.comment.trimmed(), "comment");
        EXPECT_EQ(spectrum.mcaNumber, c.mca);
        EXPECT_EQ(spectrum.liveTime.wholeSeconds(), c.seconds);
        EXPECT_EQ(dialogs.messages.back().details, c.reason + "\n" + spectrum.filePath);
    }
}

TEST_F(OpenSpectrum, TellsWhatARefusalLeftAndBringsBackWhatWasThereBefore) {
    const std::string good = folder.write("good.chn", test::ChnBytes{}.bytes());
    const std::string halfWay =
        " failed half-way: what is shown mixes two spectra. Open a spectrum before you measure.";
    const std::string cut = test::ChnBytes{.channelCount = 4096}.bytes();
    struct Case {
        std::string path;
        std::string notice;
        bool faults = false;
    };
    for (const Case& c :
         {Case{folder.write("a.asc", "x"),
               "a.asc was refused; the name in results and printouts is the refused file's until "
               "another is opened."},
          Case{folder.write("junk.chn", std::string(2000, 'n')), "Reading junk.chn" + halfWay},
          Case{folder.write("long.chn", test::ChnBytes{.channelCount = 17002}.bytes()),
               "Reading long.chn" + halfWay, true}}) {
        ASSERT_EQ(open(good), OpenResult::Loaded);
        EXPECT_EQ(notice.text(), "");
        const auto before = std::make_unique<Spectrum>(spectrum);
        // The second time, too, the way back is to the good one.
        for (int times = 0; times < 2; ++times) {
            if (c.faults)
                EXPECT_FAULT(open(c.path), Fault::SubscriptOutOfRange);
            else
                EXPECT_EQ(open(c.path), OpenResult::Refused);
            EXPECT_EQ(notice.text(), c.notice);
        }
        restoreBefore({spectrum, derived, headerLines, notice});
        EXPECT_TRUE(spectrum == *before) << c.path;
        EXPECT_EQ(notice.text(), "");
    }
    EXPECT_EQ(open(folder.write("cut.chn", cut)), OpenResult::Loaded);
    EXPECT_EQ(notice.text(),
              "The file ends before its counts: channels 4 to 4095 are missing and shown as 0.");
    EXPECT_EQ(notice.before, nullptr);
}

TEST_F(OpenSpectrum, GoesOnAfterAFault) {
    EXPECT_FAULT(open(folder.file("gone.chn")), Fault::FileNotFound);
    EXPECT_FAULT(open(folder.write("long.chn", test::ChnBytes{.channelCount = 17002}.bytes())),
                 Fault::SubscriptOutOfRange);
    EXPECT_EQ(open(folder.write("a.chn", test::ChnBytes{}.bytes())), OpenResult::Loaded);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

}  // namespace
}  // namespace kestrel
