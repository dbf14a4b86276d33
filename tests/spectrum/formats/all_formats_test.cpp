// What holds for the readers of all formats alike, each through the open command.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "fault_matcher.h"
#include "make_samples/samples.h"
#include "ordinary_user.h"
#include "scripted_dialogs.h"
#include "spectrum/formats.h"
#include "spectrum/open_spectrum.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

constexpr const char* description = "Eu-152 + Co-60 + Cs-137, point sources at 25 cm";

// The same measurement in a file of each format, with what the table says of the format.
struct Form : SpectrumFormat {
    explicit Form(const samples::SampleWriter& writer)
        : SpectrumFormat(formatOf(writer.format)),
          sample(samples::commonSample(writer)),
          path(std::string(KESTREL_SAMPLES) + "/" + sample),
          bytes(test::contentsOf(path)) {}

    int entry() const { return static_cast<int>(id); }
    std::string startTime() const {
        return start == StartOf::None ? "" : start == StartOf::Minute ? "101500" : "101530";
    }

    std::string sample;
    std::string path;
    std::string bytes;
};

std::vector<Form> allForms() {
    const auto writers = samples::sampleWriters();
    return {writers.begin(), writers.end()};
}
const std::vector<Form> forms = allForms();

class AllFormats : public testing::Test {
  protected:
    bool open(int filter, const std::string& path) {
        spectrum->filePath = path;
        return readSpectrumByFormat(
            filter, {*spectrum, *derived, headerLines, notice, {useFileCalibration, users}},
            dialogs);
    }
    // The fault that opening raised, 0 for none.
    int openBytes(int filter, std::string_view bytes) {
        const std::string path = folder.write("a.chn.asc.dat.txt", bytes);
        return test::faultOf([&] { open(filter, path); });
    }

    test::TempFolder folder;
    const Calibration users{7, 8, 9};
    bool useFileCalibration = true;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    std::vector<std::string> headerLines;
    Notice notice;
};

// A format without them would pass all that follows unread.
TEST_F(AllFormats, HaveEachASampleAFuzzTargetAndAChapter) {
    const std::string fuzz = test::contentsOf(KESTREL_SAMPLES "/../fuzz/CMakeLists.txt");
    const std::string chapters = test::contentsOf(KESTREL_SAMPLES "/../docs/file-formats.md");
    const std::string guide = test::contentsOf(KESTREL_SAMPLES "/../docs/user-guide.md");
    std::size_t readers = 1;  // and one for both forms of Labo
    for (const SpectrumFormat& format : spectrumFormats()) {
        EXPECT_NE(guide.find(format.name), std::string::npos) << format.name;
        if (format.read == nullptr)
            continue;
        const bool sampled =
            std::ranges::any_of(forms, [&](const Form& form) { return form.id == format.id; });
        EXPECT_NE(sampled, format.refusesAll) << format.name;
        const std::string chapter = std::string("| `") + std::string(format.ending) + "` | " +
                                    (format.refusesAll ? "refused | | " : "yes | | ") +
                                    std::to_string(static_cast<int>(format.id));
        EXPECT_TRUE(format.id == FormatId::LaboV154 || chapters.find(chapter) != std::string::npos)
            << chapter;
        readers += format.refusesAll ? 0U : 1U;
    }
    std::size_t targets = 0;
    for (std::size_t at = 0; (at = fuzz.find("\nadd_reader_target(", at)) != std::string::npos;
         ++at)
        ++targets;
    EXPECT_EQ(targets, readers);
}

TEST_F(AllFormats, CarryTheSameSpectrum) {
    ASSERT_TRUE(open(1, forms[0].path));
    const auto reference = std::make_unique<Spectrum>(*spectrum);
    for (const Form& form : forms) {
        *spectrum = Spectrum{};
        ASSERT_TRUE(open(form.entry(), form.path));
        const std::int32_t first = form.timesInChannels ? 2 : 0;
        EXPECT_EQ(spectrum->channelCount, form.timesInChannels ? 4097 : 4096) << form.sample;
        for (std::int32_t channel = first; channel < 4096; ++channel)
            ASSERT_EQ(spectrum->counts[channel], reference->counts[channel])
                << form.sample << " " << channel;
        EXPECT_EQ(spectrum->liveTime.wholeSeconds(), 600) << form.sample;
        EXPECT_EQ(spectrum->realTime.wholeSeconds(), 613) << form.sample;
        EXPECT_EQ(spectrum->openedLiveTime.count, 30000) << form.sample;
        EXPECT_EQ(spectrum->startDate.trimmed(), form.start == StartOf::None ? "" : "16NOV261");
        EXPECT_EQ(spectrum->startTime.trimmed(), form.startTime()) << form.sample;
        EXPECT_EQ(spectrum->comment.view().find(description) != std::string_view::npos,
                  form.description);
        EXPECT_EQ(form.description, !spectrum->comment.trimmed().empty());
        EXPECT_EQ(spectrum->calCurrent,
                  form.calibration == CalibrationOf::File   ? reference->calFromFile
                  : form.calibration == CalibrationOf::User ? users
                                                            : Calibration(0, 1, 0))
            << form.sample;
    }
}

TEST_F(AllFormats, PutTheUserCalibrationInForceWhenTheFilesAreNotToBeUsed) {
    for (const Form& form : forms) {
        useFileCalibration = false;
        ASSERT_TRUE(open(form.entry(), form.path));
        EXPECT_EQ(spectrum->calCurrent, users) << form.sample;
    }
}

// Places all over the table, and then every place of the header. What loads without a word of
// something missing has the times and all counts up to the line that was cut, the others as they
// are or 0.
TEST_F(AllFormats, LoadWhatIsThereOrRefuseWhereverAFileIsCut) {
    constexpr std::int32_t longestLine = 8;  // counts
    for (const Form& form : forms) {
        InputFile whole(form.path);
        const auto reference = std::make_unique<Spectrum>();
        ASSERT_EQ(readAs(form, whole, *reference).end, Reading::Loaded);
        EXPECT_EQ(readAs(form, whole, *reference).missing, "");
        const std::string path = folder.write("cut", form.bytes);
        int ends[3] = {};
        for (std::size_t length = form.bytes.size(); length > 0;) {
            length -= length > 1000 ? 499 : 1;
            std::filesystem::resize_file(path, length);
            InputFile file(path);
            *spectrum = Spectrum{};
            const ReadResult result = readAs(form, file, *spectrum);
            ++ends[static_cast<int>(result.end)];
            EXPECT_EQ(result.reason.empty(), result.end == Reading::Loaded)
                << form.sample << length;
            EXPECT_TRUE(result.end != Reading::Failed || result.fault == Fault::InputPastEnd);
            if (result.end != Reading::Loaded)
                continue;
            const bool complete = result.missing.empty();
            EXPECT_TRUE(!complete || spectrum->liveTime == reference->liveTime) << length;
            EXPECT_LE(spectrum->channelCount, reference->channelCount);
            for (std::int32_t k = 0; k < spectrum->channelCount - longestLine; ++k) {
                const std::int32_t counts = spectrum->counts[k];
                ASSERT_TRUE(counts == reference->counts[k] ||
                            (!complete && counts < reference->counts[k]))
                    << form.sample << length << " " << k;
            }
        }
        EXPECT_GE(ends[static_cast<int>(Reading::Refused)], 2) << form.sample;
        EXPECT_GE(ends[0] + ends[static_cast<int>(Reading::Failed)], 50) << form.sample;
    }
}

TEST_F(AllFormats, ReadTextWithEveryKindOfLineEnd) {
    for (const Form& form : forms) {
        if (form.layout != Layout::Lines)
            continue;
        const std::string& whole = form.bytes;
        for (const char* end : {"\r\n", "\n", "\r"}) {
            std::string text;
            for (std::size_t at = 0, next = 0; at < whole.size(); at = next + 2) {
                next = whole.find("\r\n", at);
                text.append(whole, at, next - at).append(end);
            }
            spectrum->channelCount = 0;
            EXPECT_EQ(openBytes(form.entry(), text), 0);
            EXPECT_EQ(spectrum->channelCount, 4096) << form.sample;
            EXPECT_GT(spectrum->counts[50], 0);
        }
    }
}

TEST_F(AllFormats, PassTextsInAnyEncodingByteForByte) {
    const std::string texts[] = {"\x93\x79\x8f\xeb \x83\x5c\x95\x5c",
                                 "B\xf6"
                                 "den \xb5Sv"};
    for (const Form& form : forms) {
        for (const std::string& text : texts) {
            if (!form.description)
                continue;
            std::string bytes = form.bytes;
            bytes.replace(bytes.find(description), text.size(), text);
            EXPECT_EQ(openBytes(form.entry(), bytes), 0);
            EXPECT_NE(spectrum->comment.view().find(text), std::string::npos) << form.sample;
        }
    }
}

// NAIG captures have no mark of their own: binary files that hold their delimiter may pass for one.
TEST_F(AllFormats, RefuseOneAnother) {
    for (const Form& form : forms) {
        for (const SpectrumFormat& other : spectrumFormats()) {
            if (other.id == FormatId::NaigE560 && form.layout == Layout::Binary)
                continue;
            const std::size_t before = dialogs.messages.size();
            EXPECT_EQ(openBytes(static_cast<int>(other.id), form.bytes), 0) << form.sample;
            EXPECT_EQ(dialogs.messages.size(), before + (other.id == form.id ? 0 : 1))
                << form.sample << other.name;
        }
    }
}

std::string tenMegabytesOf(char c) {
    std::string text;
    text.resize(10'000'000, c);
    return text;
}

TEST_F(AllFormats, AnswerEmptyHugeAndEndlessFilesAtOnce) {
    const std::clock_t begin = std::clock();
    const std::string huge = folder.write("huge.chn.asc.dat.txt", "\x7f");
    std::filesystem::resize_file(huge, 100'000'000);
    const std::string longLines =
        folder.write("long.chn.asc.dat.txt", tenMegabytesOf(' ') + '\n' + tenMegabytesOf('9'));
    for (const SpectrumFormat& format : spectrumFormats()) {
        const int entry = static_cast<int>(format.id);
        EXPECT_EQ(openBytes(entry, ""), 0);
        // A capture of nothing but fields is too long; the others lack their marks.
        const int fault = test::faultOf([&] { EXPECT_FALSE(open(entry, huge)) << format.name; });
        EXPECT_EQ(fault, format.layout == Layout::Fields ? 9 : 0);
        EXPECT_FALSE(open(entry, longLines)) << format.name;
    }
    EXPECT_EQ(dialogs.messages.size(), 3U * spectrumFormats().size() - 1);
    std::filesystem::resize_file(huge, 1'000'000'000'000);
    for (const Form& form : forms) {
        if (form.layout == Layout::Binary)
            continue;
        EXPECT_EQ(test::faultOf([&] { open(form.entry(), huge); }), 75) << form.name;
    }
    // Of the processor: how long the disk takes is no matter of the readers.
    EXPECT_LT(std::clock() - begin, 10 * CLOCKS_PER_SEC);
}

TEST_F(AllFormats, LoadAFileWithOneEndlessLine) {
    for (const Form& form : forms) {
        if (!form.description || form.layout == Layout::Binary)
            continue;
        std::string bytes = form.bytes;
        bytes.insert(bytes.find(description) + std::string_view(description).size(),
                     tenMegabytesOf('x'));
        EXPECT_EQ(openBytes(form.entry(), bytes), 0);
        EXPECT_NE(spectrum->comment.view().find(description), std::string_view::npos);
        EXPECT_GT(spectrum->counts[50], 0) << form.sample;
        spectrum->counts[50] = 0;
    }
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(AllFormats, SayThatAFileIsMissing) {
    for (const SpectrumFormat& format : spectrumFormats()) {
        dialogs.messages.clear();
        const auto openMissing = [&] {
            return open(static_cast<int>(format.id), folder.file("gone.chn.asc.dat.txt"));
        };
        if (format.read == nullptr)
            continue;
        if (!format.saysThatFileIsMissing) {
            EXPECT_FAULT(openMissing(), Fault::FileNotFound);
            continue;
        }
        EXPECT_FALSE(openMissing());
        ASSERT_EQ(dialogs.messages.size(), 2U);
        EXPECT_EQ(dialogs.messages[0].text, "File does not exist.");
        EXPECT_EQ(dialogs.messages[0].title, "Kestrel");
    }
}

TEST_F(AllFormats, SayOfALaboFileThatItsLayoutIsNotKnown) {
    const std::string beforeBorder(65536 - 10, 'x');
    const std::string marked = "\1\2 Laboratory Equipment";
    for (const int filter : {4, 5}) {
        dialogs.messages.clear();
        EXPECT_EQ(openBytes(filter, beforeBorder + marked), 0);
        EXPECT_EQ(openBytes(filter, "other"), 0);
        {
            const std::string unreadable = folder.file("a.chn.asc.dat.txt");
            std::filesystem::permissions(folder.path(), std::filesystem::perms{0755});
            std::filesystem::permissions(unreadable, {});
            const test::OrdinaryUser user;
            EXPECT_FALSE(open(filter, unreadable));
        }
        std::filesystem::remove(folder.file("a.chn.asc.dat.txt"));
        ASSERT_EQ(dialogs.messages.size(), 3U);
        EXPECT_EQ(dialogs.messages[0].text,
                  "File does not read.\nDifferent format ?!   Check file type !!");
        const std::string where = '\n' + folder.file("a.chn.asc.dat.txt");
        EXPECT_EQ(dialogs.messages[0].details,
                  "This is a Labo file. How it holds its counts is not known." + where);
        EXPECT_EQ(dialogs.messages[1].details,
                  "There is no text \"Laboratory Equipment\" in it." + where);
        EXPECT_EQ(dialogs.messages[2].text, dialogs.messages[0].text);
        EXPECT_EQ(dialogs.messages[2].details, "The file cannot be read." + where);
    }
}

}  // namespace
}  // namespace kestrel
