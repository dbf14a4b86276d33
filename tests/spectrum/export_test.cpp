// Export: what is written and read again is the same spectrum, and what is lost is told before.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "fault_matcher.h"
#include "scripted_dialogs.h"
#include "spectrum/export_as.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/formats/export_formats.h"
#include "spectrum/formats/written_record.h"
#include "spectrum/open_any.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

// Any spectrum that every format has a place for.
class RandomSpectrum {
  public:
    explicit RandomSpectrum(unsigned seed) : numbers_(seed) {}

    void fill(Spectrum& spectrum) {
        spectrum.filePath = "a.chn";
        spectrum.channelCount = static_cast<std::int16_t>(upTo(20, 300));
        for (std::int32_t& count : spectrum.counts.span(0, spectrum.channelCount))
            count = upTo(0, 2) == 0 ? upTo(0, 100000000) : upTo(0, 3);
        spectrum.counts[0] = spectrum.counts[1] = 0;
        spectrum.realTime = {upTo(1, 2147483647)};
        spectrum.liveTime = {upTo(0, static_cast<int>(spectrum.realTime.count))};
        const char* const months[] = {"JAN", "FEB", "SEP", "DEC"};
        spectrum.startDate.assign(pair(1, 28) + months[upTo(0, 3)] +
                                  (upTo(0, 1) == 0 ? pair(60, 99) + " " : pair(0, 99) + "1"));
        spectrum.startTime.assign(pair(0, 23) + pair(0, 59) + pair(0, 59));
        if (upTo(0, 9) == 0) {
            spectrum.startDate.assign("");
            spectrum.startTime.assign("");
        }
        const char* const comments[] = {
            "",    "Soil; 1,5 kg \"A\"  <&>", "1 2 3", "=1+1", "$DATA: B\xC3\xB6", "\"", "#,Start",
            "-3.5"};
        spectrum.comment.assign(comments[upTo(0, 7)]);
        spectrum.calCurrent = {real(-5, 5), real(0.01, 3), real(0, 1e-6)};
    }

  private:
    int upTo(int first, int last) { return std::uniform_int_distribution(first, last)(numbers_); }
    double real(double first, double last) {
        return upTo(0, 3) == 0 ? first : std::uniform_real_distribution(first, last)(numbers_);
    }
    std::string pair(int first, int last) {
        const int number = upTo(first, last);
        return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    }

    std::mt19937 numbers_;
};

class Export : public testing::Test {
  protected:
    ~Export() override { std::filesystem::current_path(before); }

    void exportTo(const std::string& name, int format) {
        dialogs.fileAnswer = {.path = folder.file(name), .filterIndex = format};
        exportAs(*spectrum, lastDirectory, lastFormat, dialogs);
    }

    const std::filesystem::path before = std::filesystem::current_path();
    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::string lastDirectory;
    int lastFormat = 1;
};

// Through the program's own recognition. What a format has no place for is what opening the file
// leaves blank.
TEST_F(Export, IsReadAgainAsTheSameSpectrum) {
    const auto opened = std::make_unique<OpenedSpectrum>();
    Notice notice;
    Spectrum* const read = &opened->spectrum;
    const Calibration users{7, 8, 9};
    const OpenTarget target{
        *read, opened->derived, opened->headerLines, notice, {.calDefault = users}};
    for (unsigned seed = 0; seed < 1000; ++seed) {
        RandomSpectrum(seed).fill(*spectrum);
        for (const ExportFormat& format : exportFormats()) {
            const auto about = [&] { return format.name + std::to_string(seed); };
            const std::string path =
                folder.write(std::to_string(seed) + format.name + std::string(format.ending),
                             format.write(*spectrum));
            int filter = 1;
            ASSERT_EQ(openAnyPath(path, target, lastDirectory, filter, dialogs), OpenResult::Loaded)
                << about() << dialogs.messages.back().details;
            const PlacesFor& places = format.placesFor;
            const bool added = read->channelCount != spectrum->channelCount;
            ASSERT_TRUE(std::ranges::equal(spectrum->counts.span(0, spectrum->channelCount),
                                           read->counts.span(0, read->channelCount - added)))
                << about();
            ASSERT_EQ(read->liveTime, spectrum->liveTime) << about();
            ASSERT_EQ(read->realTime, spectrum->realTime) << about();
            ASSERT_EQ(read->startDate, places.start ? spectrum->startDate : FixedText<8>())
                << about();
            ASSERT_EQ(read->startTime, places.start ? spectrum->startTime : FixedText<6>())
                << about();
            const std::string comment(places.comment ? spectrum->comment.trimmed() : "");
            ASSERT_THAT(read->comment.trimmed(), testing::AnyOf(comment, "'" + comment)) << about();
            const Calibration& exact = spectrum->calCurrent;
            const Calibration floats = {static_cast<float>(exact.a), static_cast<float>(exact.b),
                                        static_cast<float>(exact.c)};
            ASSERT_EQ(read->calCurrent, !places.calibration         ? users
                                        : format.shortName == "CHN" ? floats
                                                                    : exact)
                << about();
        }
    }
}

TEST_F(Export, TellsWhatIsLostBeforeItIsLost) {
    RandomSpectrum(1).fill(*spectrum);
    spectrum->startDate.assign("16NOV261");
    spectrum->channelCount = 66;
    spectrum->counts[1] = 7;
    spectrum->realTime = {0};
    spectrum->comment.assign("=\xB5$");
    spectrum->chnTrailer.detector.assign("HPGe");
    spectrum->details = {{"GPS", "1 2"}};
    const std::pair<int, std::vector<const char*>> formats[] = {
        {1, {"N42 keeps no numbers of analyser and segment.", "six lines", "as those of Latin-1"}},
        {2, {"SPE keeps no detector and no numbers of", "six lines"}},
        {3, {"CHN keeps only the first six lines", "CHN keeps seven figures"}},
        {4,
         {"TKA keeps no date, no calibration, no comment, no detector and no numbers", "six lines",
          "their 7 counts", "a last channel", "may take the file for a table"}},
        {5, {"A table keeps no detector and", "six lines", "taken for a formula"}},
    };
    dialogs.messageAnswer = false;
    for (const auto& [format, sentences] : formats) {
        exportTo("a", format);
        const std::string& told = dialogs.messages.back().details;
        EXPECT_EQ(std::ranges::count(told, '\n') + 1, std::ssize(sentences)) << told;
        for (const char* sentence : sentences)
            EXPECT_THAT(told, HasSubstr(sentence));
    }
    EXPECT_EQ(folder.entries(), 0U) << "each was cancelled";
    EXPECT_EQ(lastFormat, 5);

    spectrum->startDate.assign("31FEB261");
    spectrum->calCurrent = {0, -1, 0};
    spectrum->counts[5] = -2;
    spectrum->liveTime = {-50};
    spectrum->channelCount = 6;
    exportTo("a", 1);
    EXPECT_FAULT(writtenCount(*spectrum, 17001), Fault::SubscriptOutOfRange);
    EXPECT_FAULT(Ticks::ofSeconds(42949673), Fault::Overflow);
    EXPECT_FAULT(Ticks{std::int64_t{50} << 31}.wholeSeconds(), Fault::Overflow);
    for (const char* sentence : {"no time of the calendar", "do not rise", "Counts below 0",
                                 "Times below 0", "Fewer than 8 channels"})
        EXPECT_THAT(dialogs.messages.back().details, HasSubstr(sentence));
}

TEST_F(Export, GoesByTheNameAndElseByTheEntryOfTheDialog) {
    exportTo("a", 1);
    EXPECT_EQ(dialogs.messages.back().text, "There is no spectrum to export.");
    RandomSpectrum(2).fill(*spectrum);
    spectrum->calCurrent = {0, 0.5, 0};
    spectrum->mcaNumber = 0;
    spectrum->segmentNumber = 1;
    dialogs.messages.clear();
    exportTo("a.TKA", 2);
    EXPECT_THAT(folder.read("a.TKA"), testing::Not(HasSubstr("$DATA:")));
    dialogs.messages.clear();
    exportTo("b", 2);
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_THAT(folder.read("b.spe"), HasSubstr("$DATA:\r\n0 "));
    EXPECT_EQ(dialogs.fileDialogs.back().filters.at(1).pattern, "*.spe");
    EXPECT_EQ(spectrum->filePath, "a.chn");

    folder.write("b.spe", "old");
    dialogs.messageAnswer = false;
    exportTo("b", 2);
    EXPECT_EQ(folder.read("b.spe"), "old") << "not to be replaced";
    exportTo("none/b.spe", 2);
    EXPECT_THAT(dialogs.messages.back().text, HasSubstr("could not be written: Path not found"));
    EXPECT_EQ(dialogs.messages.back().details, folder.file("none/b.spe"));
}

}  // namespace
}  // namespace kestrel
