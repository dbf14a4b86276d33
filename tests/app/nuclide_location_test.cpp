#include "app/nuclide_location.h"

#include <gtest/gtest.h>

#include "app/module1.h"
#include "app/places.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

class NuclideLocation : public testing::Test {
  protected:
    void check() { checkNuclideDatabase(marigoldDir, folder.path(), dialogs); }
    test::TempFolder folder;
    test::ScriptedDialogs dialogs;
    std::string marigoldDir = "/before";
};

TEST_F(NuclideLocation, IsTheFolderOfTheFileThatTheUserChooses) {
    struct Case {
        const char* name;
        bool exists;
        bool right;
    };
    for (const Case& c : {Case{"nuc2k.mdb", true, true},
                          {"NUC2K.MDB", true, true},
                          {"nuc2k.mdb", false, false},
                          {"my-nuc2k.mdb", true, true},
                          {"other.mdb", true, false}}) {
        const test::TempFolder chosen;
        if (c.exists)
            chosen.write(c.name, "");
        dialogs.fileAnswer.path = chosen.file(c.name);
        marigoldDir = "/before";
        EXPECT_EQ(locateNuclideDatabase(marigoldDir, folder.path(), dialogs), c.right) << c.name;
        EXPECT_EQ(marigoldDir, c.right ? chosen.path() : "") << c.name;
    }
    const FileDialog& dialog = dialogs.fileDialogs.at(0);
    EXPECT_EQ(dialog.title, "OPEN NuclDB file(nuc2k.mdb)");
    EXPECT_EQ(dialog.filters.at(0).text, "NuclDB file(nuc2k.mdb)");
    EXPECT_EQ(dialog.filters.at(0).pattern, "*.mdb");
    EXPECT_EQ(dialog.folder, folder.path());
    EXPECT_EQ(dialog.fileName, "nuc2k.mdb");
}

TEST_F(NuclideLocation, IsAskedForAtTheStartOnlyWhenTheDatabaseIsMissing) {
    check();
    EXPECT_EQ(marigoldDir, "/before");
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text,
              "Set NuclDB file(nuc2k.mdb) Dir\non option of Main window(Kestrel).");
    EXPECT_EQ(dialogs.messages[0].title, "ERROR: NuclDB");
    marigoldDir.clear();
    dialogs.fileAnswer.path = folder.write("Nuc2k.mdb", "");
    check();
    EXPECT_EQ(marigoldDir, folder.path());
    EXPECT_EQ(dialogs.fileDialogs.size(), 2U);
    check();
    EXPECT_EQ(dialogs.fileDialogs.size(), 2U);
    EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(NuclideLocation, IsCheckedAfterTheSettingsAreReadAndBeforeTheFolderIsMadeCurrent) {
    folder.write("kestrel.inf", "[marigold dir]\n/m\n[chn dir]\n" + folder.path() + "\n");
    std::string seen;
    std::filesystem::path current;
    const auto module = std::make_unique<Module1>();
    startModule1(*module, folder.path(), [&](std::string& dir) {
        seen = dir;
        dir = "/found";
        current = std::filesystem::current_path();
    });
    EXPECT_EQ(seen, "/m");
    EXPECT_EQ(module->settings.marigoldDir, "/found");
    EXPECT_NE(current, std::filesystem::current_path());
    std::filesystem::current_path("/");
}

TEST(Places, AreFoundInABuildFolderAndUnderAPrefix) {
    const test::TempFolder folder;
    const auto make = [&](const char* path) {
        std::filesystem::create_directories(std::filesystem::path(folder.file(path)).parent_path());
        folder.write(path, "");
    };
    EXPECT_EQ(findPlaces(folder.file("bin")).nuclideData, folder.file("share/kestrel"));
    make("src/kestrel-mdb2sql");
    make("data/nuc2k.mdb");
    EXPECT_EQ(findPlaces(folder.file("src")).nuclideData, folder.file("data"));
    EXPECT_EQ(findPlaces(folder.file("src")).jetReader, folder.file("src/kestrel-mdb2sql"));
    make("libexec/kestrel/kestrel-mdb2sql");
    make("share/kestrel/nuc2k.mdb");
    EXPECT_EQ(findPlaces(folder.file("bin")).nuclideData, folder.file("share/kestrel"));
    EXPECT_EQ(findPlaces(folder.file("bin")).jetReader,
              folder.file("libexec/kestrel/kestrel-mdb2sql"));
}

}  // namespace
}  // namespace kestrel
