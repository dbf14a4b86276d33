#include "spectrum/formats/naig_reader.h"

#include "reader_fixture.h"

namespace kestrel {
namespace {

std::string capture(const std::string& fields, const std::string& text = "SAMPLE A",
                    char status = ' ') {
    return text + '\x7f' + std::string(2303, '\x7f') + status + fields;
}
std::string field(const std::string& value) {
    return std::string(7 - value.size(), ' ') + value;
}

class NaigReader : public test::ReaderTest {
  protected:
    NaigReader() : ReaderTest(FormatId::NaigE560) {}
};

TEST_F(NaigReader, ReadsTimesAndCountsFromTheSameFields) {
    spectrum.counts[3] = 99;
    spectrum.startDate.assign("01JAN001");
    spectrum.startTime.assign("123456");
    spectrum.startSecondsRaw = {5, 6};
    ASSERT_TRUE(read(capture("    300    310     12\r\n     ")));
    EXPECT_EQ(spectrum.channelCount, 4);
    EXPECT_EQ(spectrum.counts[0], 300);
    EXPECT_EQ(spectrum.counts[1], 310);
    EXPECT_EQ(spectrum.counts[2], 12);
    EXPECT_EQ(spectrum.counts[3], 0);
    EXPECT_EQ(spectrum.liveTime.count, 15000);
    EXPECT_EQ(spectrum.realTime.count, 15500);
    EXPECT_EQ(spectrum.comment.trimmed(), "SAMPLE A");
    EXPECT_EQ(spectrum.chnTrailer.sample.trimmed(), "SAMPLE A");
    EXPECT_EQ(spectrum.startDate.trimmed().size() + spectrum.startTime.trimmed().size(), 0U);
    EXPECT_EQ(spectrum.startSecondsRaw[0] + spectrum.startSecondsRaw[1], 0);
    EXPECT_EQ(spectrum.mcaNumber, 560);
    EXPECT_EQ(spectrum.segmentNumber, 1);
    EXPECT_EQ(spectrum.calCurrent, (Calibration{0, 1, 0}));
    EXPECT_EQ(spectrum.calFromFile, (Calibration{0, 1, 0}));
}

TEST_F(NaigReader, EndsAtALineEndInsideAFieldOrAtTheEndOfTheFile) {
    struct Case {
        std::string fields;
        int channels;
        int last;  // count of the last field
    };
    const std::string times = field("3") + field("4");
    const Case cases[] = {
        {times + field("12.5") + field("\r\n"), 4, 12},
        {times + field("13.5") + "\r\n", 4, 14},
        {times + "   7", 4, 7},
        {times + "      \r\n     5", 5, 0},  // a line end across two fields is none
        {times + field("8\n") + field("\r9"), 5, 0},
        {field("3"), 2, 3},
    };
    for (const Case& c : cases) {
        spectrum.realTime = {77};
        ASSERT_TRUE(read(capture(c.fields))) << c.fields;
        EXPECT_EQ(spectrum.channelCount, c.channels) << c.fields;
        EXPECT_EQ(spectrum.counts[c.channels - 2], c.last) << c.fields;
        EXPECT_EQ(spectrum.realTime.count, c.channels == 2 ? 0 : 200);
    }
}

TEST_F(NaigReader, RefusesACaptureWithoutValues) {
    const std::string full = capture(field("1"));
    for (const std::string& bytes :
         {std::string(), std::string("no mark"), std::string("mark\x7f"), full.substr(0, 500),
          full.substr(0, full.size() - 8), full.substr(0, full.size() - 7), capture("\r\n"),
          capture(field("1"), "SAMPLE A", '?')}) {
        spectrum.channelCount = 9;
        spectrum.comment.assign("old");
        EXPECT_FALSE(read(bytes)) << bytes.size();
        EXPECT_EQ(spectrum.channelCount, 0);
        EXPECT_EQ(spectrum.mcaNumber, 560);
        EXPECT_EQ(spectrum.comment.trimmed(), "old");
    }
    EXPECT_FAULT(readPath(folder.file("gone")), Fault::FileNotFound);
}

TEST_F(NaigReader, SaysThatTheFileStaysOpenWhenItHoldsNoSpectrum) {
    EXPECT_FALSE(read(capture("", "", '?')));
    EXPECT_TRUE(result.keepsFileOpen);
    EXPECT_FALSE(read("no mark"));
    EXPECT_FALSE(result.keepsFileOpen);
}

TEST_F(NaigReader, CutsTheHeaderTextToTheWidthsOfTheFields) {
    const std::string text = std::string(63, 'a') + "b" + std::string(100'000, 'c');
    ASSERT_TRUE(read(capture(field("1"), text)));
    EXPECT_EQ(spectrum.comment.view(), std::string(63, 'a') + "b");
    EXPECT_EQ(spectrum.chnTrailer.sample.view(), std::string(63, 'a'));
    ASSERT_TRUE(read(capture(field("1"), std::string("a\0b", 3))));
    EXPECT_EQ(spectrum.comment.trimmed(), "a");
}

TEST_F(NaigReader, TakesAtMost17001ValuesOf32Bits) {
    std::string fields;
    for (int i = 0; i < 17001; ++i)
        fields += field("6");
    ASSERT_TRUE(read(capture(fields)));
    EXPECT_EQ(spectrum.channelCount, 17002);
    EXPECT_FAULT(read(capture(fields + field("6"))), Fault::SubscriptOutOfRange);
    EXPECT_FAULT(read(capture(field("3E9"))), Fault::Overflow);
    EXPECT_FAULT(read(capture(field("43E6"))), Fault::Overflow);
    EXPECT_EQ(spectrum.channelCount, 2);
}

}  // namespace
}  // namespace kestrel
