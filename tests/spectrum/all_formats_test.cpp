// What holds for the readers of all formats alike, each through the open command.
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>

#include "fault_matcher.h"
#include "ordinary_user.h"
#include "scripted_dialogs.h"
#include "spectrum/open_spectrum.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

// The same measurement in a file of each format.
struct Form {
    const char* sample;
    const char* startTime;
    const char* comment;
    int filter;
    bool times = true;  // of measurement; counts 0 and 1 stand in their place otherwise
};
constexpr const char* description = "Eu-152 + Co-60 + Cs-137, point sources at 25 cm";
const Form forms[] = {
    {"eu152-co60-cs137-4096.chn", "101530", description, 1},
    {"eu152-co60-cs137-4096-windows.asc", "101500", description, 2},
    {"eu152-co60-cs137-4096-dos.asc", "101530", "", 3},
    {"eu152-co60-cs137-4096-series35.txt", "101500",
     "TAG NO. = Eu-152 + Co-60 + Cs-137, point sources at 25 cm", 6},
    {"eu152-co60-cs137-4096-e560.txt", "", description, 7, false},
};

std::string sampleBytes(const Form& form) {
    return test::contentsOf(std::string(KESTREL_SAMPLES) + "/" + form.sample);
}

class AllFormats : public testing::Test {
  protected:
    bool open(int filter, const std::string& path) {
        spectrum->filePath = path;
        return readSpectrumByFormat(filter, {*spectrum, *derived, headerLines}, dialogs);
    }
    // The fault that opening raised, 0 for none.
    int openBytes(int filter, std::string_view bytes) {
        const std::string path = folder.write("a.chn.asc.dat.txt", bytes);
        return test::faultOf([&] { open(filter, path); });
    }

    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    std::vector<std::string> headerLines;
};

TEST_F(AllFormats, CarryTheSameSpectrum) {
    ASSERT_TRUE(open(1, std::string(KESTREL_SAMPLES) + "/" + forms[0].sample));
    const auto reference = std::make_unique<Spectrum>(*spectrum);
    for (const Form& form : forms) {
        *spectrum = Spectrum{};
        ASSERT_TRUE(open(form.filter, std::string(KESTREL_SAMPLES) + "/" + form.sample));
        EXPECT_EQ(spectrum->channelCount, form.times ? 4096 : 4097) << form.sample;
        for (std::int32_t channel = form.times ? 0 : 2; channel < 4096; ++channel)
            ASSERT_EQ(spectrum->counts[channel], reference->counts[channel])
                << form.sample << " " << channel;
        EXPECT_EQ(spectrum->liveTime, 600) << form.sample;
        EXPECT_EQ(spectrum->realTime, 613) << form.sample;
        EXPECT_EQ(spectrum->liveTimeTicks, 30000) << form.sample;
        EXPECT_EQ(spectrum->startDate.trimmed(), form.times ? "16NOV261" : "") << form.sample;
        EXPECT_EQ(spectrum->startTime.trimmed(), form.startTime) << form.sample;
        EXPECT_EQ(spectrum->comment.trimmed(), form.comment) << form.sample;
        if (form.filter <= 2) {
            EXPECT_EQ(spectrum->calFromFile, reference->calFromFile);
        }
    }
}

TEST_F(AllFormats, PutTheUserCalibrationInForceWhenTheFilesAreNotToBeUsed) {
    for (const Form& form : forms) {
        spectrum->useFileCalibration = 0;
        spectrum->calDefault = {7, 8, 9};
        ASSERT_TRUE(open(form.filter, std::string(KESTREL_SAMPLES) + "/" + form.sample));
        EXPECT_EQ(spectrum->calCurrent, spectrum->calDefault) << form.sample;
    }
}

// Places all over the table, and then every place of the header.
TEST_F(AllFormats, LoadRefuseOrFaultWhereverAFileIsCut) {
    for (const Form& form : forms) {
        const std::string path = folder.write("cut.chn.asc.txt", sampleBytes(form));
        const std::size_t before = dialogs.messages.size();
        for (std::size_t length = std::filesystem::file_size(path); length > 0;) {
            length -= length > 1000 ? 499 : 1;
            std::filesystem::resize_file(path, length);
            const int fault = test::faultOf([&] { open(form.filter, path); });
            EXPECT_TRUE(fault == 0 || fault == 62) << form.sample << length << " " << fault;
        }
        EXPECT_GE(dialogs.messages.size(), before + 2) << form.sample;
    }
}

TEST_F(AllFormats, ReadTextWithEveryKindOfLineEnd) {
    for (const Form& form : {forms[1], forms[2], forms[3]}) {
        const std::string whole = sampleBytes(form);
        for (const char* end : {"\r\n", "\n", "\r"}) {
            std::string text;
            for (std::size_t at = 0, next = 0; at < whole.size(); at = next + 2) {
                next = whole.find("\r\n", at);
                text.append(whole, at, next - at).append(end);
            }
            spectrum->channelCount = 0;
            EXPECT_EQ(openBytes(form.filter, text), 0);
            EXPECT_EQ(spectrum->channelCount, 4096) << form.sample;
            EXPECT_GT(spectrum->counts[50], 0);
        }
    }
}

TEST_F(AllFormats, PassTextsInAnyEncodingByteForByte) {
    const std::string texts[] = {"\x93\x79\x8f\xeb \x83\x5c\x95\x5c",
                                 "B\xf6"
                                 "den \xb5Sv"};
    for (const Form& form : {forms[1], forms[3], forms[4]}) {
        for (const std::string& text : texts) {
            std::string bytes = sampleBytes(form);
            bytes.replace(bytes.find(description), std::string_view(description).size(), text);
            EXPECT_EQ(openBytes(form.filter, bytes), 0);
            EXPECT_NE(spectrum->comment.view().find(text), std::string::npos) << form.sample;
        }
    }
}

// NAIG captures have no mark of their own: binary files that hold their delimiter may pass for one.
TEST_F(AllFormats, RefuseOneAnother) {
    for (const Form& form : forms) {
        for (const int filter : {1, 2, 3, 4, 5, 6, 7, 8}) {
            if (filter == 7 && form.filter == 1)
                continue;
            const std::size_t before = dialogs.messages.size();
            EXPECT_EQ(openBytes(filter, sampleBytes(form)), 0) << form.sample << filter;
            EXPECT_EQ(dialogs.messages.size(), before + (filter == form.filter ? 0 : 1))
                << form.sample << filter;
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
    for (int filter = 1; filter <= 7; ++filter) {
        EXPECT_EQ(openBytes(filter, ""), 0);
        // A capture of nothing but fields is too long; the others lack their marks.
        const int fault = test::faultOf([&] { EXPECT_FALSE(open(filter, huge)) << filter; });
        EXPECT_EQ(fault, filter == 7 ? 9 : 0);
        EXPECT_FALSE(open(filter, longLines)) << filter;
    }
    EXPECT_EQ(dialogs.messages.size(), 3U * 7 - 1);
    std::filesystem::resize_file(huge, 1'000'000'000'000);
    for (const int textFilter : {2, 3, 6, 7})
        EXPECT_EQ(test::faultOf([&] { open(textFilter, huge); }), 75) << textFilter;
    // Of the processor: how long the disk takes is no matter of the readers.
    EXPECT_LT(std::clock() - begin, 10 * CLOCKS_PER_SEC);
}

TEST_F(AllFormats, LoadAFileWithOneEndlessLine) {
    for (const Form& form : {forms[1], forms[3], forms[4]}) {
        std::string bytes = sampleBytes(form);
        bytes.insert(bytes.find(description) + std::string_view(description).size(),
                     tenMegabytesOf('x'));
        EXPECT_EQ(openBytes(form.filter, bytes), 0);
        EXPECT_TRUE(spectrum->comment.view().starts_with(form.comment)) << form.sample;
        EXPECT_GT(spectrum->counts[50], 0) << form.sample;
        spectrum->counts[50] = 0;
    }
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(AllFormats, SayThatAFileIsMissing) {
    for (const int filter : {2, 3, 4, 5, 6}) {
        dialogs.messages.clear();
        EXPECT_FALSE(open(filter, folder.file("gone.asc.dat.txt")));
        ASSERT_EQ(dialogs.messages.size(), 2U);
        EXPECT_EQ(dialogs.messages[0].text, "File does not exist.");
        EXPECT_EQ(dialogs.messages[0].title, "Kestrel");
        EXPECT_EQ(dialogs.messages[1].details, "");
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
        EXPECT_EQ(dialogs.messages[0].details,
                  "This is a Labo file. How it holds its counts is not known.");
        EXPECT_EQ(dialogs.messages[1].details, "There is no text \"Laboratory Equipment\" in it.");
        EXPECT_EQ(dialogs.messages[2].text, dialogs.messages[0].text);
        EXPECT_EQ(dialogs.messages[2].details, "The file cannot be read.");
    }
}

}  // namespace
}  // namespace kestrel
