// Databases that cannot be read: each ends in a message, and the next good one works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nuclide_fixture.h"
#include "ordinary_user.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

constexpr std::size_t pageSize = 4096;
constexpr std::size_t passwordOffset = 0x42;

class DamagedDatabase : public testing::Test {
  protected:
    std::string refusal() const { return test::refusalOf(folder.path()); }
    std::string withPassword(const std::string& password) const {
        // What stands there is masked, so that exclusive-or with the letters masks them too.
        std::string bytes = test::smallJetBytes();
        for (std::size_t i = 0; i < password.size(); ++i)
            bytes[passwordOffset + 2 * i] =
                static_cast<char>(bytes[passwordOffset + 2 * i] ^ password[i]);
        return bytes;
    }
    static std::string wide(const std::string& text) {
        std::string result;
        for (const char c : text)
            result += {c, '\0'};
        return result;
    }
    // A name of the catalogue changed in place.
    static std::string renamed(std::string bytes, const std::string& from, const std::string& to) {
        for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at))
            bytes.replace(at, to.size(), to);
        return bytes;
    }
    test::TempFolder folder;
};

TEST_F(DamagedDatabase, IsRefusedWithItsReason) {
    const std::string good = test::smallJetBytes();
    std::string wrongPage = good;
    // The catalogue's page with the contents of the first data page.
    wrongPage.replace(2 * pageSize, pageSize, good.substr(10 * pageSize, pageSize));
    std::string lostRows = good;
    for (std::size_t page = 12; page < good.size() / pageSize; ++page) {
        if (good[page * pageSize] == 1)
            lostRows.replace(page * pageSize, pageSize, std::string(pageSize, '\0'));
    }
    struct Case {
        const char* name;
        std::string bytes;
        const char* reason;
    };
    const Case cases[] = {
        {"empty", "", "the file is empty"},
        {"text", "a text", "neither an Access nor an SQLite database"},
        {"ten bytes", good.substr(0, 10), "neither an Access nor an SQLite database"},
        {"header only", good.substr(0, 20), "it ends within its first page"},
        {"a page", good.substr(0, pageSize), "damaged"},
        {"cut in half", good.substr(0, good.size() / 2), "damaged"},
        {"wrong page", wrongPage, "damaged"},
        {"rows lost", lostRows, "damaged"},
        {"password", withPassword("secret"), "password"},
        {"without a view", renamed(good, wide("q_nuc"), wide("q_nux")),
         "there is no table or query q_nuc"},
        {"SQLite header only", "SQLite format 3" + std::string(1, '\0'), ""},
        {"not SQLite", "SQLite format 3" + std::string(5000, '\0'), "not a database"},
    };
    for (const Case& c : cases) {
        folder.write("nuc2k.mdb", c.bytes);
        const std::string why = refusal();
        EXPECT_THAT(why, HasSubstr(folder.file("nuc2k.mdb"))) << c.name;
        EXPECT_THAT(why, HasSubstr(c.reason)) << c.name;
        folder.write("nuc2k.mdb", good);
        EXPECT_EQ(refusal(), "") << c.name;
    }
}

TEST_F(DamagedDatabase, IsToldApartFromOneThatIsNotThereOrMayNotBeRead) {
    EXPECT_THAT(refusal(), HasSubstr("File not found"));
    folder.write("nuc2k.mdb", test::smallJetBytes());
    std::filesystem::permissions(folder.path(), std::filesystem::perms::none);
    {
        const test::OrdinaryUser user;
        EXPECT_THAT(refusal(), HasSubstr("Path/File access error"));
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(refusal(), "");
    NuclideDatabase withoutReader("/nonexistent/reader");
    EXPECT_THROW(withoutReader.open(folder.path()), DatabaseError);
    NuclideDatabase withoutFolder = test::nuclideDatabase();
    EXPECT_THROW(withoutFolder.open(""), DatabaseError);
}

// The file cut within every page, and with each page overwritten in turn.
TEST_F(DamagedDatabase, DoesNoHarmHoweverItIsDamaged) {
    const std::string good = test::smallJetBytes();
    int refused = 0;
    for (std::size_t page = 0; page < good.size() / pageSize; ++page) {
        for (const char filler : {'\0', '\1', '\xFF'}) {
            std::string bytes = good;
            bytes.replace(page * pageSize + 1, pageSize - 1, std::string(pageSize - 1, filler));
            folder.write("nuc2k.mdb", bytes);
            refused += refusal().empty() ? 0 : 1;
        }
        folder.write("nuc2k.mdb", good.substr(0, page * pageSize + pageSize / 2));
        EXPECT_NE(refusal(), "") << page;
    }
    EXPECT_GT(refused, 20);
}

}  // namespace
}  // namespace kestrel
