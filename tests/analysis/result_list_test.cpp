#include "analysis/result_list.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <memory>

#include "analysis/pkm_file.h"
#include "fault_matcher.h"
#include "ordinary_user.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

class Results : public testing::Test {
  protected:
    Results() {
        spectrum->channelCount = 4096;
        spectrum->counts.fill(100);
        spectrum->openedLiveTime = {500};
        spectrum->liveTime = {500};
        spectrum->calCurrent = {0, 0.5, 0};
    }
    void add(int pkLow, int pkHigh, const char* name = "") {
        PeakAreaSet& set = (*sets)[count++];
        set.pkLow = static_cast<std::int16_t>(pkLow);
        set.pkHigh = static_cast<std::int16_t>(pkHigh);
        set.bkg1Low = static_cast<std::int16_t>(pkLow - 20);
        set.bkg1High = static_cast<std::int16_t>(pkLow - 1);
        set.bkg2Low = static_cast<std::int16_t>(pkHigh + 1);
        set.bkg2High = static_cast<std::int16_t>(pkHigh + 20);
        set.name.assign(name);
    }
    std::vector<std::string> list() { return buildResultList(*spectrum, *sets, count); }
    // The first three columns of every line.
    std::vector<std::string> rows() {
        std::vector<std::string> result;
        for (const std::string& line : list())
            result.push_back(line.substr(0, 20));
        return result;
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<PeakAreaTable> sets = std::make_unique<PeakAreaTable>();
    std::int16_t count = 0;
    test::TempFolder folder;
};

using Rows = std::vector<std::string>;

TEST_F(Results, HaveOneLineOfFixedColumnsForASet) {
    spectrum->counts[101] = 12600;
    add(100, 110);
    EXPECT_EQ(list(),
              (Rows{"   1   105.0    52.5  1.2500E+04 1.179E+02  1.2500E+03 1.179E+01   80   99  "
                    "100  110  111  130"}));
    EXPECT_EQ((*sets)[0].net, 12500);
    EXPECT_EQ(list()[0].size(), 94U);
}

TEST_F(Results, StandInTheOrderOfTheirCentres) {
    EXPECT_EQ(rows(), Rows{});
    add(290, 310);
    add(90, 110);
    add(190, 210);
    EXPECT_EQ(rows(),
              (Rows{"   1   100.0    50.0", "   2   200.0   100.0", "   3   300.0   150.0"}));
}

TEST_F(Results, RepeatTheFirstOfSetsWithTheSameCentre) {
    add(90, 110);
    add(195, 205);
    add(190, 210);
    const auto lines = list();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1].substr(4, 16), "   200.0   100.0");
    EXPECT_EQ(lines[2].substr(4), lines[1].substr(4));
    EXPECT_EQ(lines[2].substr(74, 10), "  195  205");
    EXPECT_EQ((*sets)[2].netError, 0);  // never listed, never measured
}

TEST_F(Results, NeverChooseACentreOfZeroUnlessThereIsNoOther) {
    add(90, 110);
    (*sets)[1] = PeakAreaSet{};
    ++count;
    EXPECT_EQ(rows(), (Rows{"   1   100.0    50.0", "   2   100.0    50.0"}));
    std::swap((*sets)[0], (*sets)[1]);
    count = 1;
    EXPECT_EQ(rows(), (Rows{"   1     0.0     0.0"}));
}

TEST_F(Results, TakeTheEnergyOfTheChannelBelowTheCentre) {
    add(95, 106);
    add(96, 107);
    EXPECT_EQ(rows(), (Rows{"   1   100.5    50.0", "   2   101.5    50.5"}));
}

TEST_F(Results, EndInTheFaultThatFits) {
    add(90, 110);
    spectrum->openedLiveTime = {0};
    EXPECT_FAULT(list(), Fault::DivisionByZero);
    (*sets)[0].pkLow = (*sets)[0].pkHigh = 16384;
    EXPECT_FAULT(list(), Fault::Overflow);
}

TEST_F(Results, CutWhatIsWiderThanItsColumn) {
    spectrum->calCurrent = {12345678, 0, 0};
    add(90, 110);
    EXPECT_EQ(rows()[0], "   1   100.012345678");
}

class PkmFile : public Results {
  protected:
    PkmFile() {
        spectrum->filePath = "/data/run.1/sample.2.chn";
        spectrum->mcaNumber = 7;
        spectrum->segmentNumber = -2;
        spectrum->startDate.assign("16NOV261");
        spectrum->startTime.assign("101530");
        // Japanese in code page 932; the second character's second byte is a backslash. The line
        // end would begin a line of the comment's own.
        spectrum->comment.assign("\x93\xfa\x95\x5c\nsample");
        add(90, 110, "\x83\x53\x83\x56");
    }
    void write(const std::string& where) { writePkmFile(*spectrum, where, list()); }
};

TEST_F(PkmFile, IsWrittenByteForByte) {
    folder.write("sample.2.pkm", std::string(5000, 'x'));
    write("  " + folder.path() + "/ ");
    EXPECT_EQ(
        folder.read("sample.2.pkm"),
        "File Name   :/data/run.1/sample.2.chn\r\n"
        "Comment     :\x93\xfa\x95\x5c sample" +
            std::string(53, ' ') +
            "\r\n"
            "Mca & Seg # : 7 &-2 \r\n"
            "Date        :2026/11/16-101530\r\n"
            "Time(sec)   : 10 \r\n" +
            std::string(94, '=') +
            "\r\n"
            "  No    ch    energy     NET       error       cps       error      bkg(L)    peak  "
            "    bkg(H)\r\n" +
            std::string(94, '-') +
            "\r\n"
            "   1   100.0    50.0  9.5367E-05 5.659E+01  9.5367E-06 5.659E+00   70   89   90  110"
            "  111  130\r\n" +
            std::string(94, '=') + "\r\n");
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_F(PkmFile, IsNamedAfterTheSpectrum) {
    for (const auto& [file, name] : {std::pair{"/a/b.chn", "b.pkm"},
                                     {"/a.b/c", "c.pkm"},
                                     {"c.d.CHN", "c.d.pkm"},
                                     {"/x/.chn", ".pkm"}}) {
        spectrum->filePath = file;
        EXPECT_EQ(pkmFileName(*spectrum), name);
    }
}

TEST_F(PkmFile, LeavesNothingHalfWrittenBehind) {
    EXPECT_FAULT(write(folder.file("gone")), Fault::PathNotFound);
    const std::string closed = folder.file("closed");
    std::filesystem::create_directory(closed);
    folder.write("closed/sample.2.pkm", "old");
    std::filesystem::permissions(closed, std::filesystem::perms(0555));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    {
        const test::OrdinaryUser nobody;
        EXPECT_FAULT(write(closed), Fault::PathAccess);
    }
    EXPECT_EQ(folder.read("closed/sample.2.pkm"), "old");
    std::filesystem::permissions(closed, std::filesystem::perms(0755));
    EXPECT_EQ(folder.entries(), 1U);
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(PkmFile, OnAFullDiskEndsInItsFault) {
    folder.write("sample.2.pkm", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int fault = test::faultOf([&] { write(folder.path()); });
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(fault, static_cast<int>(Fault::DiskFull));
    EXPECT_EQ(folder.read("sample.2.pkm"), "old");
    EXPECT_EQ(folder.entries(), 1U);
}

}  // namespace
}  // namespace kestrel
