// The readers of text formats that find their values by labels: the two Oxford forms and the
// Series 35+ capture.
#include "base/text.h"
#include "reader_fixture.h"
#include "scripted_dialogs.h"
#include "spectrum/open_spectrum.h"

namespace kestrel {
namespace {

using test::changed;

// In every file the labels stand in no particular order and letter case.
struct Form {
    FormatId id;
    const char* start;  // what the file says of the date and time
    std::string file;
};

const Form winOxford = {FormatId::WinOxford, "Acquisition Date:   6-Nov-2026  9:05",
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
                        "    2: 13.5"};

const Form dosOxford = {FormatId::DosOxford, "acq date: 6 Nov 2026 1:05:37 PM",
                        "Real Time: 310\r\n"
                        "acq date: 6 Nov 2026 1:05:37 PM\r\n"
                        "ELT: 300.5 sec\r\n"
                        "CHN    COUNTS\r\n"
                        "    0      5\r\n"
                        "    1     12.5\r\n"
                        "\r\n"
                        "    2  13.5\r\n"
                        "END"};

// A line of a Series 35+ table with the channel number and counts of 10 * number + 0 to 7.
std::string tableLine(int number, int counts = 8) {
    std::string line = " " + rightAligned(std::to_string(number), 5) + "     ";
    for (int i = 0; i < counts; ++i)
        line += rightAligned(std::to_string(10 * number + i), 7) + "  ";
    return line + "\r\n";
}

const std::string canberraHeader =
    "                LIVE TIME=600        TRUE TIME=610.5\r\n"
    "MEMORY=1/4                                                 6 NOV 26   9: 5\r\n"
    "TAG NO. = 17, soil\r\n"
    "Series 35+  V-2.00\r\n"
    "CHANNEL#\r\n";
const Form canberra35 = {FormatId::Canberra35, " 6 NOV 26   9: 5",
                         canberraHeader + tableLine(0) + tableLine(8)};

class TextReaders : public test::ReaderTest {
  protected:
    TextReaders() : ReaderTest(FormatId::WinOxford) {}

    bool read(const Form& form, std::string_view bytes) {
        format = &formatOf(form.id);
        return ReaderTest::read(bytes);
    }
    bool readChanged(const Form& form, std::string_view from, std::string_view to) {
        return read(form, changed(form.file, from, to));
    }
    // By the open command; the reason that the user is told.
    std::string reasonOf(const Form& form, std::string_view from, std::string_view to) {
        test::ScriptedDialogs dialogs;
        const auto derived = std::make_unique<DerivedArrays>();
        std::vector<std::string> headerLines;
        Notice notice;
        spectrum.filePath = folder.write("file.asc.txt", changed(form.file, from, to));
        EXPECT_FALSE(readSpectrumByFormat(static_cast<int>(form.id),
                                          {spectrum, *derived, headerLines, notice}, dialogs));
        const std::string& details = dialogs.messages.back().details;
        return details.substr(0, details.find('\n'));
    }
    std::vector<std::int32_t> counts() {
        const auto all = spectrum.counts.span(0, spectrum.channelCount);
        return {all.begin(), all.end()};
    }
};

TEST_F(TextReaders, FindEveryValueByItsLabelAndPlace) {
    struct Case {
        const Form& form;
        std::int16_t mca;
        std::int32_t liveTime, realTime;
        const char* date;
        const char* time;
        const char* comment;
        std::vector<std::int32_t> counts;
        Calibration current, fromFile;
    };
    const Calibration before{4, 5, 6};
    const Calibration coefficients{double{1.2F}, double{0.5F}, double{0.0001F}};
    const Calibration none{0, 1, 0};
    const std::vector<std::int32_t> three{5, 12, 14};
    const std::vector<std::int32_t> sixteen{0, 1, 2, 3, 4, 5, 6, 7, 80, 81, 82, 83, 84, 85, 86, 87};
    for (const Case& c :
         {Case{winOxford, 444, 15000, 15512, " 6Nov261", "090500", "Soil 1", three, coefficients,
               coefficients},
          Case{dosOxford, 444, 15025, 15500, " 6Nov261", "130537", "", three, before, before},
          Case{canberra35, 445, 30000, 30525, " 6NOV261", "090500", "TAG NO. = 17, soil", sixteen,
               none, none}}) {
        spectrum.calCurrent = spectrum.calFromFile = before;
        spectrum.comment.assign("of another file");
        spectrum.fileType = 77;
        spectrum.segmentNumber = 0;
        ASSERT_TRUE(read(c.form, c.form.file));
        EXPECT_EQ(spectrum.mcaNumber, c.mca);
        EXPECT_EQ(spectrum.segmentNumber, 1);
        EXPECT_EQ(spectrum.fileType, 77);
        EXPECT_EQ(spectrum.liveTime.count, c.liveTime);
        EXPECT_EQ(spectrum.realTime.count, c.realTime);
        EXPECT_EQ(spectrum.startDate.view(), c.date);
        EXPECT_EQ(spectrum.startTime.view(), c.time);
        EXPECT_EQ(spectrum.startSecondsRaw[0], c.time[4] - '0');
        EXPECT_EQ(spectrum.startSecondsRaw[1], c.time[5] - '0');
        EXPECT_EQ(spectrum.comment.trimmed(), c.comment);
        EXPECT_EQ(spectrum.chnTrailer.sample.trimmed(), c.comment);
        EXPECT_EQ(spectrum.chnTrailer.sampleLength, std::string_view(c.comment).size());
        EXPECT_EQ(counts(), c.counts);
        EXPECT_EQ(result.tellsCalibration, c.current != before);
        EXPECT_EQ(spectrum.calCurrent, c.current);
        EXPECT_EQ(spectrum.calFromFile, c.fromFile);
    }
}

TEST_F(TextReaders, ReadDatesAsFarAsTheyMakeSense) {
    struct Case {
        const Form& form;
        const char* line;
        const char* date;
        const char* time;
    };
    for (const Case& c :
         {Case{winOxford, "Acquisition Date:  16 NOV-1998 23:59", "16NOV98", "235900"},
          Case{winOxford, "Acquisition Date:  16-NOV-2126 00 00", "16NOV262", "000000"},
          Case{winOxford, "Acquisition Date: 16  NOV   98", "16NOV98", "000000"},
          Case{winOxford, "Acquisition Date:", "", "000000"},
          Case{winOxford, "Acquisition Date: 6   Nov 20", " 6Nov  1", "000000"},
          Case{dosOxford, "Acq Date: 16-NOV-98 12:00 am", "16NOV98", "000000"},
          Case{dosOxford, "Acq Date 16 NOV 26, 12:30pm", "16NOV261", "123000"},
          Case{dosOxford, "Acq Date: 1 January 1998 9:05:01 am", " 1Jan98", "090501"},
          Case{dosOxford, "Acq Date: 16/NOV/2026 23:59", "16NOV261", "235900"},
          Case{dosOxford, "No Acq Date", "", ""},
          Case{dosOxford, "Acq Date: none", "", ""},
          Case{dosOxford, "Acq Date: 11/16/2026 10:00 am", "", ""},
          Case{dosOxford, "Acq Date: 16 NOV 2026 10:61 am", "", ""},
          Case{dosOxford, "Acq Date: 16 NOV 2026", "", ""},
          Case{dosOxford, "Acq Date: 32 NOV 2026 10:00 am", "", ""},
          Case{dosOxford, "nothing", "", ""},
          Case{canberra35, " 6 NOV 03", " 6NOV031", "000000"},
          Case{canberra35, " 6 NOV 69", " 6NOV691", "000000"},
          Case{canberra35, " 6 NOV 70", " 6NOV70", "000000"},
          Case{canberra35, " 6 NOV 98   9: 5", " 6NOV98", "090500"},
          Case{canberra35, " 6          9: 5", "", "090500"},
          Case{canberra35, "", "", "000000"}}) {
        spectrum.startDate.assign("01JAN001");
        ASSERT_TRUE(readChanged(c.form, c.form.start, c.line)) << c.line;
        EXPECT_EQ(spectrum.startDate.view(), FixedText<8>(c.date).view()) << c.line;
        EXPECT_EQ(spectrum.startTime.view(), FixedText<6>(c.time).view()) << c.line;
    }
}

TEST_F(TextReaders, KeepWhatTheyReadBeforeAMissingLabel) {
    struct Case {
        const Form& form;
        const char* label = "";
        bool liveTime = false;  // taken before it
        bool comment = false;
        int channels = 0;
    };
    for (const Case& c :
         {Case{winOxford, "Conv", false, false}, Case{winOxford, "elapsed", false, false, 3},
          Case{winOxford, "ELAPSED", true, false, 3}, Case{winOxford, "ID:", true, false, 3},
          Case{winOxford, "Acq", true, true, 3}, Case{winOxford, "A =", true, true, 3},
          Case{winOxford, "B =", true, true, 3}, Case{winOxford, "c =", true, true, 3},
          Case{dosOxford, "ELT:", false, false}, Case{dosOxford, "Real Time:", true, false},
          Case{dosOxford, "CHN    COUNTS", true, false},
          Case{canberra35, "Series 35+  V-2.00", false, false},
          Case{canberra35, "LIVE", false, false}, Case{canberra35, "TRUE", true, false},
          Case{canberra35, "TAG NO.", true, false}, Case{canberra35, "MEMORY", true, true},
          Case{canberra35, "CHANNEL#", true, true}}) {
        spectrum.liveTime = {1};
        spectrum.comment.assign("old");
        const std::string reason = reasonOf(c.form, c.label, "---");
        EXPECT_TRUE(containsIgnoringCase(reason, std::string("There is no line with \"") + c.label))
            << reason;
        EXPECT_EQ(spectrum.liveTime.count != 1, c.liveTime) << c.label;
        EXPECT_EQ(spectrum.comment.trimmed() != "old", c.comment) << c.label;
        EXPECT_EQ(spectrum.channelCount, c.channels) << c.label;
    }
}

TEST_F(TextReaders, RaiseTheFaultsOfTheirNumbersAndOfAShortTable) {
    struct Case {
        const Form& form;
        const char* from;
        const char* to;
        Fault fault;
        const char* place;
    };
    for (const Case& c :
         {Case{winOxford, "Gain:          3", "Gain:          4", Fault::InputPastEnd, "Line 18"},
          Case{winOxford, "Gain:          3", "Gain:          32767.5", Fault::Overflow,
               "Line 8, \"Conversion Gain:\""},
          Case{winOxford, "300", "43000000", Fault::Overflow, "Line 5, \"Elapsed Live Time:\""},
          Case{winOxford, "1.2", "1e39", Fault::Overflow, "Line 1, \"C =\""},
          Case{winOxford, "12.5", "1e10", Fault::Overflow, "Line 17"},
          Case{dosOxford, "12.5", "1e10", Fault::Overflow, "Line 6"},
          Case{canberra35, "  7  ", "9E9  ", Fault::Overflow, "Line 6"}}) {
        EXPECT_FAULT(readChanged(c.form, c.from, c.to), c.fault) << c.from << " " << c.to;
        EXPECT_TRUE(result.reason.starts_with(std::string(c.place) + ": ")) << result.reason;
    }
    EXPECT_FAULT(read(canberra35, canberraHeader), Fault::InputPastEnd);
    // Rounds to the largest single-precision number.
    EXPECT_TRUE(readChanged(winOxford, "1.2", "3.40282350e38"));
}

TEST_F(TextReaders, TakeAtMost17001Channels) {
    std::string win = changed(winOxford.file, "Gain:          3", "Gain:          17001");
    std::string dos = "Elt: 1\rReal Time: 1\rChn    Counts\r";
    for (int i = 1; i <= 17001; ++i) {
        win += i > 3 ? "\r\n       7" : "";
        dos += std::to_string(i) + " 7\r";
    }
    std::string canberra = canberraHeader;
    for (int line = 0; line < 2125; ++line)
        canberra += tableLine(line);
    for (const auto& [form, file] :
         {std::pair{&winOxford, win}, {&dosOxford, dos}, {&canberra35, canberra}}) {
        ASSERT_TRUE(read(*form, file));
        EXPECT_EQ(spectrum.channelCount, form == &canberra35 ? 17000 : 17001);
        EXPECT_EQ(counts().back(), form == &canberra35 ? 21247 : 7);
    }
    win = changed(win, "17001", "17002") + "\r\n       8";
    EXPECT_FAULT(read(winOxford, win), Fault::SubscriptOutOfRange);
    EXPECT_FAULT(read(dosOxford, dos + "17002 8"), Fault::SubscriptOutOfRange);
    EXPECT_FAULT(read(canberra35, canberra + tableLine(3000)), Fault::SubscriptOutOfRange);
    EXPECT_EQ(spectrum.counts[17000], 30000);
}

TEST_F(TextReaders, TakeTheFirstLineWithALabel) {
    ASSERT_TRUE(readChanged(winOxford, "ID:Soil 1\r\n", "Grid:Rock\r\nID:Soil 1"));
    EXPECT_EQ(spectrum.comment.trimmed(), "d:Rock");
    ASSERT_TRUE(read(winOxford, winOxford.file + "\r\nA ="));
    EXPECT_EQ(spectrum.calCurrent.c, double{0.0001F});
}

TEST_F(TextReaders, TakeAnyLengthOfAWindowsTableButNone) {
    EXPECT_FALSE(readChanged(winOxford, "Gain:          3", "Gain:          0.5"));
    for (const auto& [length, channels] : {std::pair{"2.5", 2}, {"-5", -5}}) {
        EXPECT_TRUE(
            readChanged(winOxford, "Gain:          3", std::string("Gain:          ") + length));
        EXPECT_EQ(spectrum.channelCount, channels);
    }
}

TEST_F(TextReaders, RefuseADosTableWithAGapOrWithoutCounts) {
    EXPECT_FALSE(readChanged(dosOxford, "    1     12.5", "other"));
    EXPECT_FALSE(readChanged(dosOxford, "    0      5", "    7      5"));
    EXPECT_FALSE(read(dosOxford, dosOxford.file + "\r\n    4  1"));
    EXPECT_FALSE(read(dosOxford, dosOxford.file.substr(0, dosOxford.file.find("    0"))));
    for (const char* line :
         {"0: 5", "0,5,6", "0,1,234", "0", "0 Total", "0x5", "0 5cps", "0 .", "0,"})
        EXPECT_FALSE(readChanged(dosOxford, "    0      5", line)) << line;
    for (const char* line : {"0\t5", "0,5", "0 , 5", "0 \t5 \tcps", "000 +5.0"}) {
        ASSERT_TRUE(readChanged(dosOxford, "    0      5", line)) << line;
        EXPECT_EQ(spectrum.counts[0], 5) << line;
    }
    ASSERT_TRUE(read(dosOxford, "Elt: 1\rReal Time: 1\rChn    Counts\r1 5\r2 6\r"));
    EXPECT_EQ(counts(), (std::vector<std::int32_t>{5, 6}));
}

TEST_F(TextReaders, TakeTheLineBelowTheSeries35HeadingAndThenThoseWithANumber) {
    const std::string between = "\r\n CHANNEL#\r\n     0  page 2  5\r\n    -8     1\r\n -\r\n";
    ASSERT_TRUE(read(canberra35, canberraHeader + "no numbers\r\n" + between + tableLine(24, 3) +
                                     between + "END"));
    EXPECT_EQ(counts(), (std::vector<std::int32_t>{0, 0, 0, 0, 0, 0, 0, 0,  //
                                                   240, 241, 242, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(readChanged(canberra35, "35+  V", "35+ V"));
}

}  // namespace
}  // namespace kestrel
