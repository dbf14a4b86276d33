#include "spectrum/csv_export.h"

#include "chn_bytes.h"
#include "reader_fixture.h"
#include "scripted_dialogs.h"
#include "spectrum/formats/chn_reader.h"

namespace kestrel {
namespace {

using test::padded;

class CsvExport : public test::ReaderTest {
  protected:
    CsvExport() : ReaderTest(FormatId::Chn) {}

    test::ScriptedDialogs dialogs;

    void loadFour() {
        const test::ChnBytes file{.seconds = "37",
                                  .liveTime = 30000,
                                  .counts = {0, 123, 9'999'999, 10'000'000},
                                  .rest = test::trailer(1, 2, 3, "Soil\n1")};
        ASSERT_TRUE(read(file.bytes()));
    }
    std::string lastDirectory = "/somewhere";
};

TEST_F(CsvExport, WritesTheHeaderAndALinePerChannelToTheChosenFile) {
    loadFour();
    spectrum.comment.assign("not this one");
    const std::string path = folder.write("out.csv", "old");
    dialogs.fileAnswer = {.path = path};
    saveAsCsv(spectrum, lastDirectory, dialogs);
    EXPECT_EQ(folder.read("out.csv"), "FILE NAME : " + path +
                                          "\r\nComment   : " + padded("Soil 1", 63) +
                                          "\r\nDate      : 16NOV26 - 12:30:37\r\n"
                                          "Meas. Time: 600 sec\r\n"
                                          "     0,      0\r\n"
                                          "     1,    123\r\n"
                                          "     2,9999999\r\n"
                                          "     3,0000000\r\n");
    EXPECT_EQ(spectrum.filePath, path);
    const FileDialog& dialog = dialogs.fileDialogs.at(0);
    EXPECT_EQ(dialog.folder, "/somewhere");
    ASSERT_EQ(dialog.filters.size(), 1U);
    EXPECT_EQ(dialog.filters[0].text, "csv file(s)");
    EXPECT_EQ(dialog.filters[0].pattern, "*.csv");
    EXPECT_EQ(lastDirectory, std::filesystem::current_path().string());
}

TEST_F(CsvExport, WritesNothingWhenCancelled) {
    loadFour();
    const std::string before = spectrum.filePath;
    saveAsCsv(spectrum, lastDirectory, dialogs);
    EXPECT_EQ(spectrum.filePath, before);
    EXPECT_EQ(folder.entries(), 1U);
}

TEST_F(CsvExport, LeavesTheOldFileWhenItCannotBeWritten) {
    loadFour();
    dialogs.fileAnswer = {.path = folder.file("no/such.csv")};
    EXPECT_FAULT(saveAsCsv(spectrum, lastDirectory, dialogs), Fault::PathNotFound);
    EXPECT_EQ(spectrum.filePath, folder.file("no/such.csv"));
    spectrum.channelCount = 17002;
    dialogs.fileAnswer = {.path = folder.write("out.csv", "old")};
    EXPECT_FAULT(saveAsCsv(spectrum, lastDirectory, dialogs), Fault::SubscriptOutOfRange);
    EXPECT_EQ(folder.read("out.csv"), "old");
}

TEST_F(CsvExport, KeepsTheSignOfANegativeCountAndTheLastFiguresOfALongOne) {
    spectrum.channelCount = 2;
    spectrum.counts[0] = -5;
    spectrum.counts[1] = -2147483647;
    const std::string text = csvText(spectrum);
    EXPECT_NE(text.find("     0,     -5\r\n     1,7483647\r\n"), std::string::npos) << text;
}

TEST(CsvColumns, KnowsWhichCountsHaveRoom) {
    auto spectrum = std::make_unique<Spectrum>();
    spectrum->channelCount = 3;
    spectrum->counts[3] = 2000000000;  // behind the last channel
    for (const auto& [counts, fits] :
         {std::pair{9999999, true}, {10000000, false}, {-999999, true}, {-1000000, false}}) {
        spectrum->counts[2] = counts;
        EXPECT_EQ(countsFitCsv(*spectrum), fits) << counts;
    }
}

}  // namespace
}  // namespace kestrel
