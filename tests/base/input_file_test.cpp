#include "base/input_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <random>

#include "fault_matcher.h"
#include "ordinary_user.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;
using testing::ElementsAre;

constexpr std::size_t blockSize = 65536;

struct RefusedPath {
    std::string path;
    Fault fault;
};

std::string textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(OpeningAFile, SaysWhatIsWrongWithThePath) {
    const TempFolder folder;
    folder.write("plain", "x");
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", folder.file("dangling"));
    fs::create_symlink("loop", folder.file("loop"));
    const RefusedPath cases[] = {
        {folder.file("missing"), Fault::FileNotFound},
        {"missing-in-the-current-folder", Fault::FileNotFound},
        {folder.file("dangling"), Fault::FileNotFound},
        {folder.file("no/such"), Fault::PathNotFound},
        {folder.file("plain/below"), Fault::PathNotFound},
        {folder.path(), Fault::PathAccess},
        {folder.file("pipe"), Fault::PathAccess},
        {"/dev/zero", Fault::PathAccess},
        {folder.file("loop"), Fault::PathAccess},
        {folder.file(std::string(300, 'n')), Fault::PathAccess},
    };
    for (const RefusedPath& refused : cases)
        EXPECT_FAULT(InputFile(refused.path), refused.fault) << refused.path;
}

TEST(OpeningAFile, NeedsTheRightToReadIt) {
    const TempFolder folder;
    const std::string path = folder.write("secret", "x");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(path, fs::perms::none);
    const test::OrdinaryUser user;
    EXPECT_FAULT(InputFile(path), Fault::PathAccess);
}

TEST(ReadingBlocks, DeliversWhatThereIsAtAnyPlace) {
    const TempFolder folder;
    InputFile file(folder.write("a", "0123456789"));
    EXPECT_EQ(file.size(), 10U);
    std::array<std::byte, 4> block{};
    EXPECT_EQ(file.read(8, block), 2U);
    EXPECT_EQ(file.read(2, block), 4U);
    EXPECT_EQ(textOf(block), "2345");
    EXPECT_EQ(file.read(6, block), 4U);
    EXPECT_EQ(textOf(block), "6789");
    EXPECT_EQ(file.read(10, block), 0U);
    EXPECT_EQ(file.read(std::uint64_t{1} << 63, block), 0U);
    EXPECT_EQ(textOf(file.readFront(3)), "012");
    EXPECT_EQ(textOf(file.readFront(1000)), "0123456789");
}

TEST(ReadingBlocks, GoesOnAfterTheFileWasCutBehindItsBack) {
    const TempFolder folder;
    InputFile file(folder.write("a", "0123456789"));
    fs::resize_file(folder.file("a"), 4);
    EXPECT_EQ(textOf(file.readFront(10)), "0123");
    std::array<std::byte, 4> block{};
    EXPECT_EQ(file.read(6, block), 0U);
    EXPECT_EQ(file.read(2, block), 2U);
}

std::vector<std::string> linesOf(const std::string& path) {
    InputFile file(path);
    LineReader reader(file);
    std::vector<std::string> lines;
    for (std::string_view line; reader.next(line);)
        lines.emplace_back(line);
    return lines;
}

// The same by the plainest way: every byte looked at in turn.
std::vector<std::string> expectedLines(const std::string& text) {
    std::vector<std::string> lines;
    bool open = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && i > 0 && text[i - 1] == '\r')
            continue;
        if (!open)
            lines.emplace_back();
        open = text[i] != '\r' && text[i] != '\n';
        if (open && lines.back().size() < LineReader::longestLine)
            lines.back() += text[i];
    }
    return lines;
}

TEST(ReadingLines, TakesEveryKindOfLineEnd) {
    const TempFolder folder;
    EXPECT_THAT(linesOf(folder.write("a", "one\r\ntwo\nthree\rfour")),
                ElementsAre("one", "two", "three", "four"));
    EXPECT_THAT(linesOf(folder.write("a", "\n\r\n\r\r\nx\n")), ElementsAre("", "", "", "", "x"));
    EXPECT_THAT(linesOf(folder.write("a", std::string("a\0b\n", 4))),
                ElementsAre(std::string("a\0b", 3)));
    EXPECT_THAT(linesOf(folder.write("a", "")), ElementsAre());
}

TEST(ReadingLines, DoesNotNoticeWhereBlocksEnd) {
    const TempFolder folder;
    for (const std::size_t length : {blockSize - 2, blockSize - 1, blockSize, blockSize + 1}) {
        const std::string first(length, 'a');
        for (const char* end : {"\r\n", "\n", "\r"})
            EXPECT_TRUE(linesOf(folder.write("a", first + end + "b" + end)) ==
                        expectedLines(first + "\nb"))
                << length;
    }
}

TEST(ReadingLines, AgreesWithThePlainestReaderOnRandomTexts) {
    const TempFolder folder;
    std::mt19937 random(7);
    for (int round = 0; round < 30; ++round) {
        std::string text;
        while (text.size() < 4 * blockSize) {
            const bool longLine = random() % 50 == 0;
            text.append(random() % (longLine ? 3 * blockSize : 3000), 'x');
            for (auto ends = random() % 4; ends > 0; --ends)
                text += random() % 2 == 0 ? '\r' : '\n';
        }
        ASSERT_TRUE(linesOf(folder.write("a", text)) == expectedLines(text)) << round;
    }
}

TEST(ReadingLines, CutsALineOfAHundredMegabytes) {
    const TempFolder folder;
    const std::string path = folder.write("a", "first\n");
    fs::resize_file(path, 100'000'000);
    InputFile file(path);
    LineReader reader(file);
    EXPECT_EQ(reader.require(), "first");
    EXPECT_EQ(reader.require().size(), LineReader::longestLine);
    EXPECT_FAULT(reader.require(), Fault::InputPastEnd);
}

TEST(ReadingLines, StartsAgainAtTheFirstLine) {
    const TempFolder folder;
    InputFile file(folder.write("a", "\none\r\ntwo"));
    LineReader reader(file);
    // Also just after a CR: the LF that the file begins with is then a line of its own.
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(reader.require(), "");
        EXPECT_EQ(reader.require(), "one");
        reader.rewind();
    }
    EXPECT_EQ(reader.require(), "");
}

TEST(FileNames, AreFoundInAnyLetterCaseTheExactNameFirst) {
    const TempFolder folder;
    folder.write("NUC2K.MDB", "");
    EXPECT_EQ(pathIgnoringCase(folder.path(), "nuc2k.mdb"), folder.file("NUC2K.MDB"));
    folder.write("nuc2k.mdb", "");
    EXPECT_EQ(pathIgnoringCase(folder.path(), "nuc2k.mdb"), folder.file("nuc2k.mdb"));
    EXPECT_EQ(pathIgnoringCase(folder.path(), "other"), folder.file("other"));
    EXPECT_EQ(pathIgnoringCase(folder.file("none"), "x"), folder.file("none/x"));
}

TEST(FileNames, ExistOnlyForFiles) {
    const TempFolder folder;
    EXPECT_TRUE(fileExists(folder.write("a", "")));
    EXPECT_FALSE(fileExists(folder.file("b")));
    EXPECT_FALSE(fileExists(folder.path()));
    EXPECT_FALSE(fileExists(""));
}

}  // namespace
}  // namespace kestrel
