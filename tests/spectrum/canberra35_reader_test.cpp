#include "spectrum/canberra35_reader.h"

#include "reader_fixture.h"

namespace kestrel {
namespace {

using test::changed;

const std::string header =
    "                LIVE TIME=600        TRUE TIME=610.5\r\n"
    "MEMORY=1/4                                                 6 NOV 26   9: 5\r\n"
    "TAG NO. = 17, soil\r\n"
    "Series 35+  V-2.00\r\n"
    "CHANNEL#\r\n";
// A table line with the channel number and counts of 10 * number + 0 to 7.
std::string tableLine(int number, int counts = 8) {
    std::string line = " " + std::string(5 - std::to_string(number).size(), ' ') +
                       std::to_string(number) + "     ";
    for (int i = 0; i < counts; ++i) {
        const std::string count = std::to_string(10 * number + i);
        line += std::string(7 - count.size(), ' ') + count + "  ";
    }
    return line + "\r\n";
}

class Canberra35Reader : public test::ReaderTest {
  protected:
    Canberra35Reader() : ReaderTest(readCanberra35File) {}
};

TEST_F(Canberra35Reader, FindsEveryValueByItsLabelAndColumn) {
    ASSERT_TRUE(read(header + tableLine(0) + tableLine(8)));
    EXPECT_EQ(spectrum.liveTime, 30000);
    EXPECT_EQ(spectrum.realTime, 30525);
    EXPECT_EQ(spectrum.comment.trimmed(), "TAG NO. = 17, soil");
    EXPECT_EQ(spectrum.chnTrailer.sample.trimmed(), "TAG NO. = 17, soil");
    EXPECT_EQ(spectrum.startDate.view(), " 6NOV261");
    EXPECT_EQ(spectrum.startTime.view(), "090500");
    EXPECT_EQ(spectrum.channelCount, 16);
    EXPECT_EQ(spectrum.counts[7], 7);
    EXPECT_EQ(spectrum.counts[8], 80);
    EXPECT_EQ(spectrum.counts[15], 87);
    EXPECT_EQ(spectrum.mcaNumber, 445);
    EXPECT_EQ(spectrum.calCurrent, (Calibration{0, 1, 0}));
    EXPECT_EQ(spectrum.calFromFile, (Calibration{0, 1, 0}));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(Canberra35Reader, TakesTheLineBelowTheHeadingAndThenThoseWithANumber) {
    const std::string between = "\r\n CHANNEL#\r\n     0  page 2  5\r\n    -8     1\r\n -\r\n";
    ASSERT_TRUE(read(header + "no numbers\r\n" + between + tableLine(24, 3) + between + "END"));
    EXPECT_EQ(spectrum.channelCount, 16);
    EXPECT_EQ(spectrum.counts[0], 0);
    EXPECT_EQ(spectrum.counts[10], 242);
    EXPECT_EQ(spectrum.counts[11], 0);
}

TEST_F(Canberra35Reader, SplitsTheCenturiesAt70) {
    struct Case {
        const char* digits;
        const char* date;
    };
    for (const Case& c :
         {Case{"03", " 6NOV031"}, {"69", " 6NOV691"}, {"70", " 6NOV70 "}, {"98", " 6NOV98 "}}) {
        ASSERT_TRUE(read(changed(header, " 26 ", std::string(" ") + c.digits + " ") + "\n"));
        EXPECT_EQ(spectrum.startDate.view(), c.date);
    }
    ASSERT_TRUE(read(changed(header, " 6 NOV 26   9: 5", "") + "\n"));
    EXPECT_EQ(spectrum.startDate.view(), "        ");
}

TEST_F(Canberra35Reader, RefusesAFileThatLacksItsMarkerALabelOrTheTable) {
    for (const char* label : {"Series 35+  V-2.00", "LIVE", "TRUE", "TAG NO.", "MEMORY"}) {
        spectrum.liveTime = 1;
        EXPECT_FALSE(read(changed(header, label, "other") + tableLine(0))) << label;
        EXPECT_EQ(spectrum.liveTime, label[0] == 'S' || label[0] == 'L' ? 1 : 30000) << label;
        EXPECT_EQ(spectrum.channelCount, 0);
    }
    EXPECT_FALSE(read(changed(header, "CHANNEL#", "CHANNELS")));
    EXPECT_FALSE(read(changed(header, "35+  V", "35+ V") + tableLine(0)));
    EXPECT_FAULT(read(header), Fault::InputPastEnd);
    EXPECT_FALSE(readMissing());
    EXPECT_EQ(dialogs.messages.at(0).text, "File does not exist.");
}

TEST_F(Canberra35Reader, FaultsAtChannel17001) {
    std::string table = header;
    for (int line = 0; line < 2125; ++line)
        table += tableLine(line);
    ASSERT_TRUE(read(table));
    EXPECT_EQ(spectrum.channelCount, 17000);
    EXPECT_FAULT(read(table + tableLine(3000)), Fault::SubscriptOutOfRange);
    EXPECT_EQ(spectrum.counts[17000], 30000);
    EXPECT_FAULT(read(header + changed(tableLine(0), "  7  ", "9E9  ")), Fault::Overflow);
}

}  // namespace
}  // namespace kestrel
