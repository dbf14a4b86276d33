#include "spectrum/win_oxford_reader.h"

#include "reader_fixture.h"

namespace kestrel {
namespace {

using test::changed;

// Labels in no particular order and letter case; the values stand at their columns.
const std::string whole =
    "c =                                                  1.2 keV\r\n"
    "B =                                                  0.5\r\n"
    "A =                                                  0.0001\r\n"
    "ID:Soil 1\r\n"
    "elapsed live time: 300\r\n"
    "ELAPSED REAL TIME: 310.25 sec\r\n"
    "Acquisition Date:   6-Nov-2026  9:05\r\n"
    "Conversion Gain:          3\r\n"
    "\r\n\r\n\r\n\r\n\r\n\r\n\r\n"
    "    0: 5\r\n"
    "    1: 12.5\r\n"
    "    2: 13.5";

class WinOxfordReader : public test::ReaderTest {
  protected:
    WinOxfordReader() : ReaderTest(readWinOxfordFile) {}
};

TEST_F(WinOxfordReader, FindsEveryValueByItsLabelAndColumn) {
    spectrum.fileType = 77;
    ASSERT_TRUE(read(whole));
    EXPECT_EQ(spectrum.channelCount, 3);
    EXPECT_EQ(spectrum.counts[0], 5);
    EXPECT_EQ(spectrum.counts[1], 12);
    EXPECT_EQ(spectrum.counts[2], 14);
    EXPECT_EQ(spectrum.liveTime, 15000);
    EXPECT_EQ(spectrum.realTime, 15512);
    EXPECT_EQ(spectrum.comment.trimmed(), "Soil 1");
    EXPECT_EQ(spectrum.chnTrailer.sample.trimmed(), "Soil 1");
    EXPECT_EQ(spectrum.chnTrailer.sampleLength, 6);
    EXPECT_EQ(spectrum.startDate.view(), " 6Nov261");
    EXPECT_EQ(spectrum.startTime.view(), "090500");
    EXPECT_EQ(spectrum.calCurrent, (Calibration{double{1.2F}, double{0.5F}, double{0.0001F}}));
    EXPECT_EQ(spectrum.calFromFile, spectrum.calCurrent);
    EXPECT_EQ(spectrum.mcaNumber, 444);
    EXPECT_EQ(spectrum.segmentNumber, 1);
    EXPECT_EQ(spectrum.fileType, 77);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(WinOxfordReader, TakesTheFirstLineWithALabel) {
    ASSERT_TRUE(read(changed(whole, "ID:Soil 1\r\n", "Grid:Rock\r\nID:Soil 1") + "\r\nA ="));
    EXPECT_EQ(spectrum.comment.trimmed(), "d:Rock");
    EXPECT_EQ(spectrum.calCurrent.c, double{0.0001F});
}

TEST_F(WinOxfordReader, ReadsDatesAsFarAsTheyMakeSense) {
    struct Case {
        const char* line;
        const char* date;
        const char* time;
    };
    for (const Case& c : {
             Case{"Acquisition Date:  16 NOV-1998 23:59", "16NOV98 ", "235900"},
             Case{"Acquisition Date:  16-NOV-2126 00 00", "16NOV262", "000000"},
             Case{"Acquisition Date: 16  NOV   98", "16NOV98 ", "000000"},
             Case{"Acquisition Date:", "        ", "000000"},
             Case{"Acquisition Date: 6   Nov 20", " 6Nov  1", "000000"},
         }) {
        ASSERT_TRUE(read(changed(whole, "Acquisition Date:   6-Nov-2026  9:05", c.line)));
        EXPECT_EQ(spectrum.startDate.view(), c.date) << c.line;
        EXPECT_EQ(spectrum.startTime.view(), c.time) << c.line;
        EXPECT_EQ(spectrum.startSecondsRaw, (std::array<std::uint8_t, 2>{0, 0}));
    }
}

TEST_F(WinOxfordReader, KeepsWhatItReadBeforeAMissingLabel) {
    ASSERT_TRUE(read(whole));
    const std::string other = changed(changed(whole, "300", "700"), "Soil 1", "Soil 2");
    for (const char* label : {"c =", "B =", "A =", "Acq", "ID:", "ELAPSED", "elapsed", "Conv"}) {
        spectrum.liveTime = 1;
        spectrum.comment.assign("old");
        EXPECT_FALSE(read(changed(other, label, "---"))) << label;
        const bool early = std::string_view(label) == "elapsed" || label[0] == 'C';
        EXPECT_EQ(spectrum.liveTime, early ? 1 : 35000) << label;
        const bool before = early || label[0] == 'E' || label[0] == 'I';
        EXPECT_EQ(spectrum.comment.trimmed(), before ? "old" : "Soil 2") << label;
        EXPECT_EQ(spectrum.channelCount, label[0] == 'C' ? 0 : 3) << label;
    }
}

TEST_F(WinOxfordReader, RaisesTheFaultsOfItsNumbersAndOfAShortTable) {
    const auto gain = [](const char* value) {
        return changed(whole, "Conversion Gain:          3",
                       std::string("Conversion Gain:          ") + value);
    };
    EXPECT_FAULT(read(gain("4")), Fault::InputPastEnd);
    EXPECT_FAULT(read(gain("32767.5")), Fault::Overflow);
    EXPECT_FAULT(read(changed(whole, "300", "43000000")), Fault::Overflow);
    EXPECT_FAULT(read(changed(whole, "1.2", "1e39")), Fault::Overflow);
    EXPECT_FAULT(read(changed(whole, "12.5", "1e10")), Fault::Overflow);
    EXPECT_FALSE(read(gain("0.5")));
    EXPECT_TRUE(read(gain("2.5")));
    EXPECT_EQ(spectrum.channelCount, 2);

    std::string table = gain("17001");
    for (int i = 3; i < 17001; ++i)
        table += "\r\n       7";
    EXPECT_TRUE(read(table));
    EXPECT_EQ(spectrum.counts[17000], 7);
    EXPECT_FAULT(read(changed(table, "17001", "17002") + "\r\n       8"),
                 Fault::SubscriptOutOfRange);
}

TEST_F(WinOxfordReader, PutsOutTheMessageOfAMissingFile) {
    EXPECT_FALSE(readMissing());
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "File does not exist.");
    EXPECT_EQ(dialogs.messages[0].title, "Kestrel");
}

}  // namespace
}  // namespace kestrel
