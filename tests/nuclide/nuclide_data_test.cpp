#include "nuclide/nuclide_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fault_matcher.h"
#include "nuclide/nuclide_key.h"
#include "nuclide_fixture.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

TEST(NuclideKey, IsMadeOfATypedNameByTheRuleOfEachDialog) {
    struct Case {
        const char* typed;
        const char* window;  // null: refused
        const char* plot;
    };
    const Case cases[] = {
        {"eu-152m", "Eu-152m", "Eu-152m"},
        {"Eu-152m1", "Eu-152m1", "Eu-152m"},
        {"Eu-152m12", "Eu-152m1", "Eu-152m"},
        {"Co60", "Co- 60g", "Co- 60g"},
        {"co 60", "Co- 60g", "Co- 60g"},
        {"Tc-99m", "Tc- 99m", "Tc- 99m"},
        {"Tc-99m2", "Tc- 99m2", "Tc- 99m"},
        {"h-3", "H -  3g", "H -  3g"},
        {"H 3", "H -  3g", "H -  3g"},
        {"H=3", "H -  3g", "H -  3g"},
        {"h3", "H -  3g", "H -  3g"},
        {"  I-131  ", "I -131g", "I -131g"},
        {"60Co", "60- 60Co", "6 - 60C"},
        {"1H-3", "1H-  1H-", "1H-  1H"},
        {"EU-152", "EU-152g", "EU-152g"},
        {"K40 x", "K - 40 x", "K - 40 "},
        {"Co-123456", "Co-12345g", "Co-123456g"},
        {"Eu", nullptr, nullptr},
        {"152", nullptr, nullptr},
        {"-", nullptr, nullptr},
        {" ", nullptr, nullptr},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(keyFromWindowName(c.typed).value_or("refused"), c.window ? c.window : "refused")
            << c.typed;
        EXPECT_EQ(keyFromPlotName(c.typed).value_or("refused"), c.plot ? c.plot : "refused")
            << c.typed;
    }
}

TEST(NuclideKey, IsAskedForAndRefusedWithAMessage) {
    test::ScriptedDialogs dialogs;
    EXPECT_FALSE(askNuclideKey(keyFromPlotName, dialogs));
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(dialogs.inputs.at(0).prompt, "Input Nuclide (ex.Eu-152m)");
    EXPECT_EQ(dialogs.inputs.at(0).title, "Nuclide");
    dialogs.inputAnswer = "Europium";
    EXPECT_FALSE(askNuclideKey(keyFromPlotName, dialogs));
    EXPECT_EQ(dialogs.messages.at(0).text, "Input Nuclide (ex.Eu-152m)");
    EXPECT_EQ(dialogs.messages.at(0).title, "Error...");
}

class NuclideDataTest : public testing::Test {
  protected:
    bool show(const std::string& key) {
        return showNuclideFromDatabase(data, key, marigoldDir, database, dialogs);
    }
    std::string marigoldDir = KESTREL_TEST_DATA "/jet";
    NuclideDatabase database = test::nuclideDatabase();
    test::ScriptedDialogs dialogs;
    NuclideData data;
    test::TempFolder folder;
};

TEST_F(NuclideDataTest, ShowsAStateAndItsLines) {
    ASSERT_TRUE(show("Co- 60g"));
    EXPECT_THAT(data.summary,
                ElementsAre("Nuclide    : Co- 60g", "Half Life  : 5.2711 Y", "Decay Mode : B-"));
    EXPECT_EQ(data.updateText, "Update : 2003/10/06");
    const auto line = std::ranges::find_if(
        data.rows, [](const NuclideRow& row) { return row.energy == "1332.49"; });
    ASSERT_NE(line, data.rows.end());
    EXPECT_EQ(line->intensity, "99.98");
    EXPECT_EQ(line->definition.substr(0, 2), "G0");
    EXPECT_EQ(line->definition.substr(4), "/B-/");
    EXPECT_EQ(line->intensityColour, 12);
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    EXPECT_FALSE(show("Co- 60g"));
}

TEST_F(NuclideDataTest, TakesAllIsomersForAnyMarkButG) {
    const auto lines = [this](const char* key) {
        data = {};
        show(key);
        return data.rows.size();
    };
    const std::size_t ground = lines("Eu-152g");
    const std::size_t isomers = lines("Eu-152m");
    EXPECT_NE(ground, isomers);
    EXPECT_EQ(data.summary[2], "Decay Mode : B-,EC/IT");
    EXPECT_EQ(data.summary[1], "Half Life  : 9.3116 H");
    for (const char* key : {"Eu-152m1", "Eu-152m2", "Eu-152x", "EU-152m"})
        EXPECT_EQ(lines(key), isomers) << key;
    for (const char* key : {"Eu-152G", "eu-152g", "Eu-152mg"})
        EXPECT_EQ(lines(key), ground) << key;
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(NuclideDataTest, IgnoresKeysOfAnotherShape) {
    for (const char* key : {"", "Co-60g", "Co 60gg", "Coo-160g"})
        EXPECT_FALSE(show(key)) << key;
    EXPECT_FALSE(database.isOpen());
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(NuclideDataTest, TellsOfAStateThatIsNotThere) {
    show("Co- 60g");
    // H-3 has no strongest line, not even of intensity 0, in this database.
    for (const char* key : {"Xx-100g", "H -  3g", "A'-  1g"}) {
        dialogs.messages.clear();
        EXPECT_TRUE(show(key));
        ASSERT_EQ(dialogs.messages.size(), 1U);
        EXPECT_EQ(dialogs.messages[0].text, "This nucl. does not exist on DB!");
        EXPECT_EQ(dialogs.messages[0].title, "ERROR");
        EXPECT_EQ(dialogs.messages[0].icon, Icon::Exclamation);
        EXPECT_EQ(data.summary[0], std::string("Nuclide    : ") + key);
        EXPECT_EQ(data.summary[1], "Half Life  : ");
        EXPECT_EQ(data.updateText, "Update : ");
        EXPECT_EQ(data.rows.size(), 2U);
        EXPECT_EQ(data.rows[0].energy, "");
        EXPECT_EQ(dialogs.pointer, Pointer::Default);
    }
    EXPECT_EQ(data.summary[2], "Decay Mode : ");
}

TEST_F(NuclideDataTest, TakesFiveStatesAndFaultsOnASixth) {
    marigoldDir = folder.path();
    NuclideTables tables;
    for (std::int32_t i = 1; i <= 6; ++i)
        tables.nuclides.push_back({i, "Eu", 63, i < 6 ? 150 : 152, i, "1 H", 3600, "IT", 0, 0, ""});
    for (std::int32_t i = 1; i <= 6; ++i)
        tables.nuclides.push_back({10 + i, "Ho", 67, 166, i, "1 H", 3600, "IT", 0, 0, ""});
    test::writeDatabase(folder, tables);
    EXPECT_TRUE(show("Eu-150m"));
    EXPECT_EQ(data.summary[2], "Decay Mode : IT/IT/IT/IT/IT");
    ASSERT_EQ(data.rows.size(), 1U);
    EXPECT_EQ(data.rows[0].energy, "No data");
    EXPECT_FAULT(show("Ho-166m"), Fault::SubscriptOutOfRange);
    EXPECT_FALSE(show("Ho-166m"));
}

TEST_F(NuclideDataTest, TellsOnceOfADatabaseThatCannotBeUsed) {
    marigoldDir = folder.path();
    EXPECT_TRUE(show("Co- 60g"));
    EXPECT_FALSE(show("Co- 60g"));
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].title, "ERROR: NuclDB");
    data.forgetFailure();
    EXPECT_TRUE(show("Co- 60g"));
    marigoldDir = KESTREL_TEST_DATA "/jet";
    EXPECT_TRUE(show("Co- 60g"));
    EXPECT_EQ(data.summary[1], "Half Life  : 5.2711 Y");
    EXPECT_EQ(dialogs.messages.size(), 2U);
}

}  // namespace
}  // namespace kestrel
