#include "spectrum/formats/chn_reader.h"

#include "chn_bytes.h"
#include "reader_fixture.h"

namespace kestrel {
namespace {

using test::ChnBytes;
using test::extension;
using test::padded;
using test::trailer;

class ChnReader : public test::ReaderTest {
  protected:
    ChnReader() : ReaderTest(FormatId::Chn) {}
};

TEST_F(ChnReader, ReadsHeaderCountsAndCommentOfTheFirstKind) {
    spectrum.calFromFile = {4, 5, 6};
    ASSERT_TRUE(read(ChnBytes{.rest = padded("Soil 1", 64)}.bytes()));
    EXPECT_EQ(spectrum.mcaNumber, 7);
    EXPECT_EQ(spectrum.segmentNumber, 2);
    EXPECT_EQ(spectrum.realTime.count, 15500);
    EXPECT_EQ(spectrum.liveTime.count, 15000);
    EXPECT_EQ(spectrum.startDate.view(), "16NOV261");
    EXPECT_EQ(spectrum.startTime.view(), "1230  ");
    EXPECT_EQ(spectrum.counts[2], 1000);
    EXPECT_EQ(spectrum.comment.view(), padded("Soil 1", 64));
    EXPECT_FALSE(result.tellsCalibration);
    EXPECT_EQ(spectrum.calFromFile, (Calibration{4, 5, 6}));
}

TEST_F(ChnReader, TakesTheCalibrationOfTheExtensionAndOfTheTrailer) {
    const std::string second = padded("Two", 64) + extension(-0.25, 0.5, 1e-7);
    ASSERT_TRUE(read(ChnBytes{.rest = second}.bytes()));
    EXPECT_EQ(spectrum.calCurrent, (Calibration{-0.25, 0.5, 1e-7}));
    EXPECT_EQ(spectrum.comment.trimmed(), "Two");

    const ChnBytes third{.seconds = "37", .rest = trailer(1.1F, 0.6F, 1e-8F, "Soil 1")};
    ASSERT_TRUE(read(third.bytes()));
    EXPECT_EQ(spectrum.calCurrent, (Calibration{double{1.1F}, double{0.6F}, double{1e-8F}}));
    EXPECT_EQ(spectrum.calFromFile, spectrum.calCurrent);
    EXPECT_EQ(spectrum.comment.view(), padded("Soil 1", 64));
    EXPECT_EQ(spectrum.chnTrailer.detector.trimmed(), "HPGe");
    EXPECT_EQ(spectrum.startTime.view(), "123037");
}

// Four channels: 32 + 16 + 64 + 2 bytes decide between the first and the second kind.
TEST_F(ChnReader, TellsTheKindsApartByTheSecondsAndTheLength) {
    struct Case {
        std::string seconds;
        std::size_t length;
        const char* startTime;
        double slope;  // 0.5 of the user's, 3 of an extension, 2 where nothing is set
    };
    const std::string zero(1, '\0');
    const Case cases[] = {
        {zero + zero, 113, "1230  ", 0.5},   {zero + zero, 114, "1230  ", 0.5},
        {zero + zero, 115, "1230  ", 0.0},   {"\x05" + zero, 113, "123005", 0.5},
        {"\x05" + zero, 114, "123005", 0.0}, {zero + "\x05", 300, "1230  ", 2.0},
        {"\x3b" + zero, 300, "123059", 3.0}, {" \x01", 48, "1230-1", 0.0},
    };
    for (const Case& c : cases) {
        spectrum.calCurrent = {0, 2, 0};
        ChnBytes file{.seconds = c.seconds, .rest = padded("", 64) + extension(0, 3, 0)};
        ASSERT_TRUE(read(padded(file.bytes(), c.length, '\0')));
        EXPECT_EQ(spectrum.startTime.view(), c.startTime) << c.length;
        EXPECT_EQ(result.tellsCalibration ? spectrum.calCurrent.b : 0.5, c.slope)
            << c.length << " " << c.startTime;
    }
}

TEST_F(ChnReader, CutsTextsAtTheirFirstNul) {
    const std::string comment = std::string("Soil\0 old text", 14);
    ASSERT_TRUE(
        read(ChnBytes{.date = std::string("16NO\0xxx", 8), .rest = padded(comment, 64)}.bytes()));
    EXPECT_EQ(spectrum.comment.view(), padded("Soil", 64));
    EXPECT_EQ(spectrum.startDate.view(), "16NO    ");
}

TEST_F(ChnReader, RefusesAnotherFirstWord) {
    spectrum.counts[0] = 5;
    EXPECT_FALSE(read("This is not a spectrum, but a text of some length."));
    EXPECT_EQ(spectrum.fileType, 0x6854);
    EXPECT_EQ(spectrum.counts[0], 5);
    EXPECT_EQ(result.reason, "A CHN file begins with the number -1, this one with 26708.");
    EXPECT_FALSE(read(""));
}

TEST_F(ChnReader, TakesAtMost17001Channels) {
    ChnBytes file{.channelCount = 17001, .counts = std::vector<std::int32_t>(17001, 3)};
    EXPECT_TRUE(read(file.bytes()));
    EXPECT_EQ(spectrum.counts[17000], 3);
    file.channelCount = 17002;
    file.counts.assign(17002, 4);
    EXPECT_FAULT(read(file.bytes()), Fault::SubscriptOutOfRange);
    EXPECT_EQ(spectrum.counts[17000], 4);
    EXPECT_EQ(spectrum.channelCount, 17002);
    file.channelCount = -5;
    file.counts.clear();
    EXPECT_TRUE(read(file.bytes()));
}

TEST_F(ChnReader, KeepsCountsBeyondAShorterSpectrum) {
    ASSERT_TRUE(read(ChnBytes{}.bytes()));
    ASSERT_TRUE(read(ChnBytes{.channelCount = 2, .counts = {1, 2}}.bytes()));
    EXPECT_EQ(spectrum.counts[2], 1000);
    EXPECT_EQ(spectrum.countsAt(2), 0);
}

TEST_F(ChnReader, ReadsZeroesPastTheEndOfAFileThatWasCut) {
    const std::string whole = ChnBytes{.seconds = "37", .rest = trailer(1, 2, 3, "Soil 1")}.bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const bool loaded = read(whole.substr(0, length));
        EXPECT_EQ(loaded, length >= 2) << length;
    }
    ASSERT_TRUE(read(whole.substr(0, 40)));
    EXPECT_EQ(spectrum.counts[1], 10);
    EXPECT_EQ(spectrum.counts[2], 0);
    EXPECT_EQ(spectrum.calCurrent, Calibration{});
    EXPECT_EQ(result.missing,
              "The file ends before its counts: channels 2 to 3 are missing and shown as 0.");
    ASSERT_TRUE(read(whole.substr(0, 31)));
    EXPECT_EQ(result.missing, "The file ends in its header: there are no counts.");
    ASSERT_TRUE(read(whole.substr(0, whole.size() - 1)));
    EXPECT_TRUE(result.missing.starts_with("The file ends before its calibration"));
}

TEST_F(ChnReader, SurvivesEveryHeaderByteFlipped) {
    const std::string whole = ChnBytes{.seconds = "37", .rest = trailer(1, 2, 3, "Soil 1")}.bytes();
    for (std::size_t i = 0; i < 32; ++i) {
        std::string damaged = whole;
        damaged[i] = static_cast<char>(~damaged[i]);
        const int fault = test::faultOf([&] { read(damaged); });
        EXPECT_TRUE(fault == 0 || fault == 9) << i << ": " << fault;
    }
}

TEST_F(ChnReader, RaisesTheFileFaultsOfMissingFilesAndFolders) {
    EXPECT_FAULT(readPath(folder.file("gone")), Fault::FileNotFound);
    EXPECT_FAULT(readPath(folder.file("gone/a.chn")), Fault::PathNotFound);
    EXPECT_FAULT(readPath(folder.path()), Fault::PathAccess);
}

}  // namespace
}  // namespace kestrel
