#include "spectrum/dos_oxford_reader.h"

#include "reader_fixture.h"

namespace kestrel {
namespace {

using test::changed;

const std::string whole =
    "Real Time: 310\r\n"
    "acq date: 6 Nov 2026 1:05:37 PM\r\n"
    "ELT: 300.5 sec\r\n"
    "CHN    COUNTS\r\n"
    "    0      5\r\n"
    "    1     12.5\r\n"
    "\r\n"
    "    2  13.5\r\n"
    "END";

class DosOxfordReader : public test::ReaderTest {
  protected:
    DosOxfordReader() : ReaderTest(readDosOxfordFile) {}
};

TEST_F(DosOxfordReader, FindsItsValuesBehindTheirLabels) {
    spectrum.calDefault = {1, 2, 3};
    spectrum.calFromFile = {4, 5, 6};
    spectrum.comment.assign("of another file");
    ASSERT_TRUE(read(whole));
    EXPECT_EQ(spectrum.liveTime, 15025);
    EXPECT_EQ(spectrum.realTime, 15500);
    EXPECT_EQ(spectrum.startDate.view(), " 6Nov261");
    EXPECT_EQ(spectrum.startTime.view(), "130537");
    EXPECT_EQ(spectrum.startSecondsRaw, (std::array<std::uint8_t, 2>{3, 7}));
    EXPECT_EQ(spectrum.channelCount, 3);
    EXPECT_EQ(spectrum.counts[0], 5);
    EXPECT_EQ(spectrum.counts[1], 12);
    EXPECT_EQ(spectrum.counts[2], 14);
    EXPECT_EQ(spectrum.comment.trimmed(), "");
    EXPECT_EQ(spectrum.calCurrent, (Calibration{1, 2, 3}));
    EXPECT_EQ(spectrum.calFromFile, (Calibration{4, 5, 6}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(DosOxfordReader, UnderstandsDatesWithHalfDaysOrLeavesThemBlank) {
    struct Case {
        const char* line;
        const char* date;
        const char* time;
    };
    for (const Case& c : {
             Case{"Acq Date: 16-NOV-98 12:00 am", "16NOV98 ", "000000"},
             Case{"Acq Date 16 NOV 26, 12:30pm", "16NOV261", "123000"},
             Case{"Acq Date: 1 January 1998 9:05:01 am", " 1Jan98 ", "090501"},
             Case{"Acq Date: 16/NOV/2026 23:59", "16NOV261", "235900"},
             Case{"No Acq Date", "        ", "      "},
             Case{"Acq Date: none", "        ", "      "},
             Case{"Acq Date: 11/16/2026 10:00 am", "        ", "      "},
             Case{"Acq Date: 16 NOV 2026 10:61 am", "        ", "      "},
             Case{"Acq Date: 16 NOV 2026", "        ", "      "},
             Case{"Acq Date: 32 NOV 2026 10:00 am", "        ", "      "},
             Case{"nothing", "        ", "      "},
         }) {
        spectrum.startDate.assign("01JAN001");
        ASSERT_TRUE(read(changed(whole, "acq date: 6 Nov 2026 1:05:37 PM", c.line))) << c.line;
        EXPECT_EQ(spectrum.startDate.trimmed(), FixedText<8>(c.date).trimmed()) << c.line;
        EXPECT_EQ(spectrum.startTime.view(), c.time) << c.line;
    }
}

TEST_F(DosOxfordReader, RefusesWhatLacksALabelOrCountsItsChannelsWithAGap) {
    for (const char* label : {"ELT:", "Real Time:", "CHN    COUNTS", "    1     12.5"})
        EXPECT_FALSE(read(changed(whole, label, "other"))) << label;
    EXPECT_FALSE(read(whole + "\r\n    4  1"));
    EXPECT_FALSE(read(changed(whole, "    0      5", "    7      5")));
    EXPECT_FALSE(read(whole.substr(0, whole.find("    0"))));
    EXPECT_FALSE(readMissing());
    EXPECT_EQ(dialogs.messages.at(0).text, "File does not exist.");
    EXPECT_TRUE(read(
        changed(changed(changed(whole, "    2", "    3"), "    1", "    2"), "    0", "    1")));
    EXPECT_EQ(spectrum.counts[0], 5);
}

TEST_F(DosOxfordReader, TakesAtMost17001Channels) {
    std::string table = "Elt: 1\rReal Time: 1\rChn    Counts\r";
    for (int i = 1; i <= 17001; ++i)
        table += std::to_string(i) + " 4\r";
    ASSERT_TRUE(read(table));
    EXPECT_EQ(spectrum.channelCount, 17001);
    EXPECT_FAULT(read(table + "17002 4"), Fault::SubscriptOutOfRange);
}

}  // namespace
}  // namespace kestrel
